#include "config/OnboardingPicture.h"

#include <QKeySequence>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace tw::OnboardingPicture {

namespace {

bool isDark(const QPalette& colours) {
    return colours.color(QPalette::Window).lightness() < 128;
}

// A piece of desktop: a soft wallpaper in the window's shade, its corners rounded like a card's.
void paintDesktop(QPainter& painter, const QRectF& rect, const QPalette& colours) {
    QLinearGradient wallpaper(rect.topLeft(), rect.bottomRight());
    if (isDark(colours)) {
        wallpaper.setColorAt(0, QColor(0x1d, 0x3b, 0x6e));
        wallpaper.setColorAt(1, QColor(0x4a, 0x2c, 0x6b));
    } else {
        wallpaper.setColorAt(0, QColor(0x9c, 0xc4, 0xf2));
        wallpaper.setColorAt(1, QColor(0xf4, 0xc7, 0xb0));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(wallpaper);
    painter.drawRoundedRect(rect, 12, 12);
}

// A glass tile: translucent white with a bright rim, lifted by a faint shadow.
void paintTile(QPainter& painter, const QRectF& tile, qreal opacity = 1) {
    painter.save();
    painter.setOpacity(opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawRoundedRect(tile.translated(0, 3), 14, 14);
    painter.setBrush(QColor(255, 255, 255, 70));
    painter.setPen(QPen(QColor(255, 255, 255, 150), 1));
    painter.drawRoundedRect(tile, 14, 14);
    painter.restore();
}

void paintText(QPainter& painter, const QRectF& rect, const QString& text, qreal pixels,
               int flags = Qt::AlignCenter) {
    QFont font = painter.font();
    font.setPixelSize(static_cast<int>(pixels));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(rect, flags, text);
}

// The status item's icon: four small tiles in a rounded square.
void paintIcon(QPainter& painter, const QRectF& icon, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    const qreal gap = icon.width() / 7;
    const qreal cell = (icon.width() - 3 * gap) / 2;
    for (int i = 0; i < 4; ++i) {
        const QPointF at(icon.left() + gap + (i % 2) * (cell + gap),
                         icon.top() + gap + (i / 2) * (cell + gap));
        painter.drawRoundedRect(QRectF(at, QSizeF(cell, cell)), cell / 4, cell / 4);
    }
}

// A menu of three items, as grey lines on a card.
void paintMenu(QPainter& painter, const QRectF& menu, const QPalette& colours) {
    painter.setPen(QPen(colours.color(QPalette::Mid), 1));
    painter.setBrush(colours.color(QPalette::AlternateBase));
    painter.drawRoundedRect(menu, 8, 8);
    painter.setPen(Qt::NoPen);
    const qreal widths[] = {0.7, 0.55, 0.35};
    for (int i = 0; i < 3; ++i) {
        const QRectF line(menu.left() + 12, menu.top() + 12 + i * 16,
                          (menu.width() - 24) * widths[i], 6);
        painter.setBrush(i == 0 ? colours.color(QPalette::Highlight)
                                : colours.color(QPalette::PlaceholderText));
        painter.drawRoundedRect(line, 3, 3);
    }
}

void paintTiles(QPainter& painter) {
    const QRectF clock(36, 54, 72, 72);
    paintTile(painter, clock);
    paintText(painter, clock, QStringLiteral("10:09"), 19);

    const QRectF weather(122, 54, 156, 72);
    paintTile(painter, weather);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xff, 0xc8, 0x3d));
    painter.drawEllipse(QPointF(weather.left() + 40, weather.center().y()), 17, 17);
    paintText(painter, weather.adjusted(70, 0, -12, 0), QStringLiteral("21°"), 28);

    const QRectF gauge(292, 54, 72, 72);
    paintTile(painter, gauge);
    const QRectF ring = gauge.adjusted(16, 16, -16, -16);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 70), 6, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(ring);
    painter.setPen(QPen(QColor(0x5e, 0xe0, 0x9a), 6, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, 90 * 16, -250 * 16);
}

// The mouse pointer, tip at `tip`.
void paintPointer(QPainter& painter, QPointF tip) {
    QPainterPath arrow;
    arrow.moveTo(tip);
    arrow.lineTo(tip + QPointF(0, 19));
    arrow.lineTo(tip + QPointF(4.5, 14.5));
    arrow.lineTo(tip + QPointF(8, 22));
    arrow.lineTo(tip + QPointF(11, 20.5));
    arrow.lineTo(tip + QPointF(7.5, 13.5));
    arrow.lineTo(tip + QPointF(13.5, 13.5));
    arrow.closeSubpath();
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(Qt::black);
    painter.drawPath(arrow);
}

void paintMoving(QPainter& painter, const QRectF& rect, const QPalette& colours) {
    // The invisible grid tiles snap to, made visible.
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 60));
    for (qreal x = 24; x < rect.right(); x += 20) {
        for (qreal y = 20; y < rect.bottom(); y += 20) {
            painter.drawEllipse(QPointF(x, y), 1.2, 1.2);
        }
    }
    paintTile(painter, QRectF(24, 54, 72, 72));
    // Where the dragged tile will land: the free cell beside, never on top.
    const QRectF landing(108, 54, 72, 72);
    painter.setBrush(QColor(255, 255, 255, 30));
    painter.setPen(QPen(colours.color(QPalette::Highlight), 2, Qt::DashLine));
    painter.drawRoundedRect(landing, 14, 14);
    const QRectF dragged = landing.translated(16, -18);
    paintTile(painter, dragged, 0.85);
    paintPointer(painter, dragged.center());

    // A stack: tiles of one size behind each other, turned by scrolling.
    const QRectF front(258, 60, 72, 72);
    paintTile(painter, front.translated(12, -12), 0.5);
    paintTile(painter, front.translated(6, -6), 0.75);
    paintTile(painter, front);
    painter.setPen(QPen(Qt::white, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const qreal x = 360;
    painter.drawLine(QPointF(x, 70), QPointF(x, 112));
    painter.drawPolyline(QList<QPointF>{{x - 6, 76}, {x, 70}, {x + 6, 76}});
    painter.drawPolyline(QList<QPointF>{{x - 6, 106}, {x, 112}, {x + 6, 106}});

    // The undo keys, as a keycap.
    const QString undo = QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText);
    QFont font = painter.font();
    font.setPixelSize(12);
    font.setWeight(QFont::DemiBold);
    const qreal width = QFontMetricsF(font).horizontalAdvance(undo) + 18;
    const QRectF cap(rect.right() - width - 14, rect.bottom() - 34, width, 22);
    painter.setPen(QPen(QColor(255, 255, 255, 150), 1));
    painter.setBrush(QColor(0, 0, 0, 60));
    painter.drawRoundedRect(cap, 6, 6);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(cap, Qt::AlignCenter, undo);
}

void paintTray(QPainter& painter, const QRectF& rect, const QPalette& colours) {
    const QRectF panel(rect.left(), rect.top(), rect.width(), 28);
    QPainterPath top;
    top.addRoundedRect(rect, 12, 12);
    painter.save();
    painter.setClipPath(top);
    painter.fillRect(panel, QColor(0, 0, 0, 120));
    painter.restore();
    const QColor dim(255, 255, 255, 110);
    for (int i = 0; i < 3; ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(dim);
        painter.drawEllipse(QPointF(rect.right() - 150 + i * 22, panel.center().y()), 5, 5);
    }
    const QRectF icon(rect.right() - 92, panel.top() + 5, 18, 18);
    painter.setPen(QPen(colours.color(QPalette::Highlight), 2));
    painter.setBrush(QColor(255, 255, 255, 40));
    painter.drawRoundedRect(icon.adjusted(-4, -3, 4, 3), 6, 6);
    paintIcon(painter, icon, Qt::white);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dim);
    painter.drawRoundedRect(QRectF(rect.right() - 58, panel.center().y() - 4, 40, 8), 4, 4);
    paintMenu(painter, QRectF(icon.center().x() - 70, panel.bottom() + 8, 140, 68), colours);
    paintTile(painter, QRectF(30, 78, 72, 72), 0.8);
}

void paintMenuBar(QPainter& painter, const QRectF& rect, const QPalette& colours) {
    // This window, small, with its own menu bar.
    const QRectF window(rect.left() + 44, rect.top() + 18, rect.width() - 88, rect.height() - 18);
    painter.setPen(QPen(colours.color(QPalette::Mid), 1));
    painter.setBrush(colours.color(QPalette::Window));
    painter.drawRoundedRect(window, 10, 10);
    const QRectF bar(window.left(), window.top() + 24, window.width(), 24);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.color(QPalette::Mid));
    painter.drawRect(QRectF(window.left(), window.top() + 24, window.width(), 1));
    painter.drawRect(QRectF(window.left(), bar.bottom(), window.width(), 1));
    for (int i = 0; i < 3; ++i) {
        painter.drawEllipse(QPointF(window.left() + 16 + i * 14, window.top() + 12), 4, 4);
    }
    QFont font = painter.font();
    font.setPixelSize(12);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    const QString name = QStringLiteral("Tarnwick");
    const QRectF item(bar.left() + 10, bar.top() + 3,
                      QFontMetricsF(font).horizontalAdvance(name) + 18, bar.height() - 5);
    painter.setBrush(colours.color(QPalette::Highlight));
    painter.drawRoundedRect(item, 5, 5);
    painter.setPen(colours.color(QPalette::HighlightedText));
    painter.drawText(item, Qt::AlignCenter, name);
    paintMenu(painter, QRectF(item.left(), bar.bottom() + 4, 140, 68), colours);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.color(QPalette::AlternateBase));
    painter.drawRoundedRect(QRectF(window.right() - 110, bar.bottom() + 14, 94, 70), 8, 8);
}

} // namespace

void paint(QPainter& painter, const QRectF& rect, int step, OnboardingView::StatusPlace place,
           const QPalette& colours) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintDesktop(painter, rect, colours);
    painter.translate(rect.topLeft());
    const QRectF local(QPointF(0, 0), rect.size());
    switch (step) {
    case 0:
        paintTiles(painter);
        break;
    case 1:
        paintMoving(painter, local, colours);
        break;
    default:
        if (place == OnboardingView::StatusPlace::tray) {
            paintTray(painter, local, colours);
        } else {
            paintMenuBar(painter, local, colours);
        }
        break;
    }
    painter.restore();
}

void paintDots(QPainter& painter, const QRectF& rect, int step, const QPalette& colours) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal diameter = rect.height();
    const qreal gap = diameter;
    const qreal width =
        OnboardingView::stepCount * diameter + (OnboardingView::stepCount - 1) * gap;
    qreal x = rect.center().x() - width / 2;
    for (int i = 0; i < OnboardingView::stepCount; ++i, x += diameter + gap) {
        painter.setBrush(i == step ? colours.color(QPalette::Highlight)
                                   : colours.color(QPalette::Mid));
        painter.drawEllipse(QRectF(x, rect.top(), diameter, diameter));
    }
    painter.restore();
}

} // namespace tw::OnboardingPicture
