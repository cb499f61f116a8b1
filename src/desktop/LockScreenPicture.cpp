#include "desktop/LockScreenPicture.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "lockscreen/LockScreenLayout.h"
#include "lockscreen/LockScreenSystemUI.h"
#include "text/L.h"

#include <QLinearGradient>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tw {

namespace {

// Darker towards the top and the bottom, as lock screens are, so that the system's white time
// and controls read over a light picture; the middle stays as it is.
QImage darkened(const QImage& wallpaper) {
    QImage image = wallpaper.convertToFormat(QImage::Format_RGB32);
    if (image.isNull()) {
        return image;
    }
    QPainter painter(&image);
    const double height = image.height();
    QLinearGradient shade(0, 0, 0, height);
    shade.setColorAt(0, QColor(0, 0, 0, 100));
    shade.setColorAt(0.45, QColor(0, 0, 0, 0));
    shade.setColorAt(0.78, QColor(0, 0, 0, 0));
    shade.setColorAt(1, QColor(0, 0, 0, 90));
    painter.fillRect(image.rect(), shade);
    return image;
}

// White text with a soft shadow under it.
void shadowedText(QPainter& painter, const QRectF& rect, int flags, const QString& text,
                  const QColor& ink) {
    painter.setPen(QColor(0, 0, 0, 60));
    painter.drawText(rect.translated(0, painter.font().pixelSize() * 0.03 + 1), flags, text);
    painter.setPen(ink);
    painter.drawText(rect, flags, text);
}

QRectF regionRect(const QString& id, const QSizeF& display) {
    for (const LockScreenSystemUI::Region& region : LockScreenSystemUI::all()) {
        if (region.id == id) {
            const QRectF& unit = region.rect;
            return {unit.x() * display.width(), unit.y() * display.height(),
                    unit.width() * display.width(), unit.height() * display.height()};
        }
    }
    return {};
}

void paintClock(QPainter& painter, const QRectF& region, const FaceContext& base) {
    const QColor ink(255, 255, 255, 240);
    const double dateSize = region.height() * 0.13;
    painter.setFont(FaceKit::font(dateSize, QFont::DemiBold));
    const QRectF dateRect(region.x(), region.y(), region.width(), dateSize * 1.6);
    shadowedText(painter, dateRect, Qt::AlignHCenter | Qt::AlignBottom,
                 QLocale().toString(base.now.date(), QStringLiteral("dddd d MMMM")), ink);
    painter.setFont(FaceKit::font(region.height() * 0.62, QFont::DemiBold));
    painter.drawText(
        QRectF(region.x(), dateRect.bottom(), region.width(), region.bottom() - dateRect.bottom()),
        Qt::AlignHCenter | Qt::AlignVCenter,
        FaceKit::hoursMinutes(base.now.time(), FaceKit::uses24Hour(base)));
}

void paintLogin(QPainter& painter, const QRectF& region) {
    const double avatar = region.height() * 0.3;
    const QRectF circle(region.center().x() - avatar / 2, region.y() + region.height() * 0.22,
                        avatar, avatar);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(16, 18, 28, 60));
    painter.drawEllipse(circle);
    // A head and shoulders, as on any sign-in screen.
    painter.setBrush(QColor(255, 255, 255, 200));
    const double head = avatar * 0.34;
    painter.drawEllipse(
        QRectF(circle.center().x() - head / 2, circle.y() + avatar * 0.2, head, head));
    QPainterPath shoulders;
    shoulders.addEllipse(QRectF(circle.center().x() - avatar * 0.32, circle.y() + avatar * 0.6,
                                avatar * 0.64, avatar * 0.5));
    QPainterPath round;
    round.addEllipse(circle);
    painter.drawPath(shoulders.intersected(round));

    const QRectF field(region.center().x() - region.width() * 0.3, circle.bottom() + avatar * 0.4,
                       region.width() * 0.6, avatar * 0.36);
    painter.setBrush(QColor(16, 18, 28, 70));
    painter.setPen(QPen(QColor(255, 255, 255, 60), 1));
    painter.drawRoundedRect(field, field.height() / 2, field.height() / 2);
    painter.setPen(QColor(255, 255, 255, 200));
    painter.setFont(FaceKit::font(field.height() * 0.42));
    painter.drawText(field, Qt::AlignCenter,
                     L("lock.preview.password", QStringLiteral("Enter Password")));
}

void paintFooter(QPainter& painter, const QRectF& region) {
    const struct {
        const char* key;
        const char* english;
    } controls[] = {{"lock.preview.sleep", "Sleep"},
                    {"lock.preview.restart", "Restart"},
                    {"lock.preview.shutdown", "Shut Down"}};
    const double button = region.height() * 0.36;
    const double spacing = button * 2.6;
    const double left = region.center().x() - spacing;
    for (int i = 0; i < 3; ++i) {
        const QPointF centre(left + i * spacing, region.y() + region.height() * 0.34);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(16, 18, 28, 70));
        painter.drawEllipse(centre, button / 2, button / 2);
        QPen glyph(QColor(255, 255, 255, 220), std::max(1.0, button * 0.07), Qt::SolidLine,
                   Qt::RoundCap);
        painter.setPen(glyph);
        painter.setBrush(Qt::NoBrush);
        const double r = button * 0.22;
        const QRectF ring(centre.x() - r, centre.y() - r, 2 * r, 2 * r);
        if (i == 0) {
            // A crescent: a circle with a bite taken out.
            QPainterPath moon;
            moon.addEllipse(ring);
            QPainterPath bite;
            bite.addEllipse(ring.translated(r * 0.7, -r * 0.5));
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(255, 255, 255, 220));
            painter.drawPath(moon.subtracted(bite));
        } else if (i == 1) {
            painter.drawArc(ring, 100 * 16, 300 * 16);
            painter.drawLine(QPointF(centre.x() + r * 0.05, centre.y() - r),
                             QPointF(centre.x() + r * 0.55, centre.y() - r * 1.35));
        } else {
            painter.drawArc(ring, 120 * 16, 300 * 16);
            painter.drawLine(QPointF(centre.x(), centre.y() - r * 1.25),
                             QPointF(centre.x(), centre.y() - r * 0.2));
        }
        painter.setPen(QColor(255, 255, 255, 200));
        painter.setFont(FaceKit::font(button * 0.32));
        painter.drawText(
            QRectF(centre.x() - spacing / 2, centre.y() + button * 0.6, spacing, button * 0.6),
            Qt::AlignHCenter | Qt::AlignTop,
            L(controls[i].key, QString::fromLatin1(controls[i].english)));
    }
}

} // namespace

LockScreenPicture::LockScreenPicture(const QImage& wallpaper, const QSizeF& display,
                                     qreal devicePixelRatio)
    : m_scene(darkened(wallpaper), display, devicePixelRatio) {}

QList<QRectF> LockScreenPicture::paint(QPainter& painter, const QList<WidgetInstance>& widgets,
                                       const FaceContext& base, const FaceRegistry& faces) {
    const QSizeF& screen = display();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    m_scene.paintPicture(painter);
    paintClock(painter, regionRect(QStringLiteral("clock"), screen), base);
    paintLogin(painter, regionRect(QStringLiteral("login"), screen));
    paintFooter(painter, regionRect(QStringLiteral("footer"), screen));
    QList<QRectF> tiles;
    for (const auto& [id, centre] : LockScreenLayout::resolvedPositions(widgets, screen)) {
        const auto widget =
            std::find_if(widgets.begin(), widgets.end(),
                         [&wanted = id](const WidgetInstance& w) { return w.id == wanted; });
        if (widget == widgets.end()) {
            continue;
        }
        WidgetInstance shown = *widget;
        shown.size = LockScreenLayout::size(*widget);
        const QSizeF size = shown.pixelSize();
        const QRectF tile = m_scene.paintWidget(
            painter, centre - QPointF(size.width() / 2, size.height() / 2), shown, base, faces);
        if (!tile.isEmpty()) {
            tiles << tile;
        }
    }
    painter.restore();
    return tiles;
}

} // namespace tw
