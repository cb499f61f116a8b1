// One kind in the gallery: a live preview of its tile at its default size on a piece of desktop,
// its name and size, and the Add button.
#pragma once

#include "model/WidgetMetadata.h"

#include <QDateTime>
#include <QWidget>

class QPushButton;

namespace tw {

class GalleryPreviewSource;

class GalleryCard final : public QWidget {
    Q_OBJECT
public:
    GalleryCard(WidgetMetadata metadata, const GalleryPreviewSource& source,
                QWidget* parent = nullptr);

    const WidgetMetadata& metadata() const { return m_metadata; }
    // Repaints only when the preview's face shows something that changed between the two times.
    void timeMoved(const QDateTime& before, const QDateTime& after);
    void setAddEnabled(bool enabled);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr qreal maxPreviewWidth = 270;

Q_SIGNALS:
    void addClicked(const QString& kind);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    qreal previewScale() const;
    QRectF stageRect() const;

    WidgetMetadata m_metadata;
    const GalleryPreviewSource& m_source;
    QPushButton* m_add;
};

} // namespace tw
