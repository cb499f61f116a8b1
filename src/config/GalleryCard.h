// One kind in the gallery: a live preview of its tile at the chosen size on a piece of desktop,
// its full name, a caption, the size picker, how many may stand on the desktop, and Add.
#pragma once

#include "model/WidgetMetadata.h"

#include <QDateTime>
#include <QFrame>

class QLabel;
class QPushButton;

namespace tw {

class GalleryPreviewSource;
class SizePicker;

class GalleryCard final : public QFrame {
    Q_OBJECT
public:
    GalleryCard(WidgetMetadata metadata, const QString& caption, const GalleryPreviewSource& source,
                QWidget* parent = nullptr);

    const WidgetMetadata& metadata() const { return m_metadata; }
    // The size the preview shows and Add asks for; the default size at first.
    WidgetSize size() const;
    void setSize(WidgetSize size);
    SizePicker* sizePicker() const { return m_picker; }
    QPushButton* addButton() const { return m_add; }

    // How many of the kind stand on the desktop already; at the kind's limit the card says so and
    // Add is off.
    void setPlaced(int placed, int limit);
    void setAddEnabled(bool enabled);
    // The line under the name about the limit; empty when there is nothing to say.
    QString limitNote() const;
    // The preview's tile in card coordinates.
    QRectF previewRect() const;

    // Repaints only when the preview's face shows something that changed between the two times.
    void timeMoved(const QDateTime& before, const QDateTime& after);

    static constexpr int minimumWidth = 226;

Q_SIGNALS:
    void addClicked(const QString& kind);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF stageRect() const;
    qreal previewScale() const;
    void updateAddButton();

    WidgetMetadata m_metadata;
    const GalleryPreviewSource& m_source;
    QWidget* m_stage;
    SizePicker* m_picker;
    QLabel* m_limit;
    QPushButton* m_add;
    bool m_addEnabled = true;
    bool m_atLimit = false;
};

} // namespace tw
