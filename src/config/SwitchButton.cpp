#include "config/SwitchButton.h"

#include <QPainter>
#include <QPainterPath>

namespace tw {

SwitchButton::SwitchButton(QWidget* parent)
    : QAbstractButton(parent) {
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SwitchButton::sizeHint() const {
    return {38, 22};
}

void SwitchButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
    const QPalette& p = palette();
    QColor off = p.color(QPalette::WindowText);
    off.setAlphaF(0.18F);
    QColor fill = isChecked() ? p.color(QPalette::Highlight) : off;
    if (!isEnabled()) {
        fill.setAlphaF(fill.alphaF() * 0.5F);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const double knob = track.height() - 4;
    const double x = isChecked() ? track.right() - 2 - knob : track.left() + 2;
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(QRectF(x, track.top() + 2.6, knob, knob));
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(x, track.top() + 2, knob, knob));
    if (hasFocus()) {
        QPen ring(p.color(QPalette::Highlight), 2);
        painter.setPen(ring);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), height() / 2.0,
                                height() / 2.0);
    }
}

} // namespace tw
