// A drawing made by someone else's painter code, shown at the card's width in a fixed aspect.
#pragma once

#include <QWidget>

#include <functional>

namespace tw {

class PanePicture final : public QWidget {
    Q_OBJECT
public:
    using Paint = std::function<void(QPainter&, const QRectF&)>;

    PanePicture(Paint paint, QSizeF aspect, QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Paint m_paint;
    QSizeF m_aspect;
};

} // namespace tw
