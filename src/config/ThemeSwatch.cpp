#include "config/ThemeSwatch.h"

#include "faces/FaceContext.h"

#include <QPainter>
#include <QPainterPath>

namespace tw {

ThemeSwatch::ThemeSwatch(const Theme& theme, QWidget* parent)
    : QAbstractButton(parent)
    , m_theme(theme) {
    setCheckable(true);
    setAutoExclusive(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(theme.name);
    setAccessibleName(theme.name);
}

void ThemeSwatch::setTheme(const Theme& theme) {
    m_theme = theme;
    setToolTip(theme.name);
    update();
}

QSize ThemeSwatch::sizeHint() const {
    return {104, 110};
}

void ThemeSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled()) {
        painter.setOpacity(0.45);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QPalette& p = palette();
    const QRectF tile(4, 4, width() - 8, height() - 44);
    // A soft backdrop under the tile, so that its glass reads as glass.
    QLinearGradient backdrop(tile.topLeft(), tile.bottomRight());
    const QColor accent = FaceContext::color(m_theme.accent);
    backdrop.setColorAt(0, accent.darker(260));
    backdrop.setColorAt(1, accent.darker(150));
    QPainterPath shape;
    shape.addRoundedRect(tile, 12, 12);
    painter.fillPath(shape, backdrop);
    painter.fillPath(shape, FaceContext::color(m_theme.surface));
    painter.setPen(FaceContext::color(m_theme.textPrimary));
    QFont time = font();
    time.setPixelSize(20);
    time.setWeight(QFont::DemiBold);
    painter.setFont(time);
    painter.drawText(tile.adjusted(10, 6, -10, -18), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("10:09"));
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawRoundedRect(QRectF(tile.left() + 10, tile.bottom() - 16, tile.width() * 0.45, 5),
                            2.5, 2.5);
    QColor second = FaceContext::color(m_theme.textSecondary);
    painter.setBrush(second);
    painter.drawRoundedRect(
        QRectF(tile.left() + 10 + tile.width() * 0.5, tile.bottom() - 16, tile.width() * 0.25, 5),
        2.5, 2.5);
    if (isChecked() || hasFocus()) {
        QPen ring(p.color(QPalette::Highlight), isChecked() ? 2.5 : 1.5);
        painter.setPen(ring);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(tile.adjusted(-2.5, -2.5, 2.5, 2.5), 14, 14);
    }
    painter.setPen(isChecked() ? p.color(QPalette::WindowText)
                               : p.color(QPalette::PlaceholderText));
    QFont name = font();
    name.setPixelSize(11);
    name.setWeight(isChecked() ? QFont::DemiBold : QFont::Normal);
    painter.setFont(name);
    // Two lines, so that no name is cut.
    painter.drawText(QRectF(0, tile.bottom() + 4, width(), height() - tile.bottom() - 4),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_theme.name);
}

} // namespace tw
