#include "config/PanePicture.h"

#include <QPainter>

#include <cmath>

namespace tw {

PanePicture::PanePicture(Paint paint, QSizeF aspect, QWidget* parent)
    : QWidget(parent)
    , m_paint(std::move(paint))
    , m_aspect(aspect) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int PanePicture::heightForWidth(int width) const {
    return static_cast<int>(std::lround(width * m_aspect.height() / m_aspect.width()));
}

QSize PanePicture::sizeHint() const {
    return m_aspect.toSize();
}

void PanePicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The drawing is made for its own size; it is scaled to the space it has.
    const double scale = width() / m_aspect.width();
    painter.scale(scale, scale);
    m_paint(painter, QRectF(QPointF(0, 0), m_aspect));
}

} // namespace tw
