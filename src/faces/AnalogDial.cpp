#include "faces/AnalogDial.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>

namespace tw {

namespace {

void hand(QPainter& painter, qreal angleDegrees, qreal length, qreal tail, qreal width,
          const QColor& color) {
    painter.save();
    painter.rotate(angleDegrees);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, tail), QPointF(0, -length));
    painter.restore();
}

} // namespace

void AnalogDial::draw(QPainter& painter, const QRectF& rect, const QTime& time,
                      const FaceContext& context, Hands hands, Detail detail, Daylight daylight) {
    const qreal side = std::min(rect.width(), rect.height());
    const qreal r = side / 2;
    const QPointF centre = rect.center();
    const bool isDay = time.hour() >= 6 && time.hour() < 18;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(centre);

    QColor face = context.elevated();
    if (daylight == Daylight::Shade) {
        face = isDay ? context.primary() : context.separator();
        face.setAlphaF(isDay ? 0.16F : 0.5F);
    }
    painter.setPen(QPen(context.separator(), std::max<qreal>(0.75, side / 120)));
    painter.setBrush(face);
    painter.drawEllipse(QPointF(0, 0), r - 0.5, r - 0.5);

    const bool fine = side >= 110;
    for (int i = 0; i < 60; ++i) {
        const bool hourMark = i % 5 == 0;
        if (!hourMark && !fine) {
            continue;
        }
        const bool quarter = i % 15 == 0;
        const qreal outer = r * 0.9;
        const qreal inner = outer - (quarter ? r * 0.13 : hourMark ? r * 0.09 : r * 0.04);
        const qreal width = quarter ? side / 55 : hourMark ? side / 80 : side / 170;
        painter.save();
        painter.rotate(i * 6.0);
        painter.setPen(QPen(hourMark ? context.primary() : context.secondary(),
                            std::max<qreal>(0.6, width), Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -inner), QPointF(0, -outer));
        painter.restore();
    }

    if (detail == Detail::Numbered && side >= 120) {
        painter.setFont(FaceKit::font(r * 0.2, QFont::Medium));
        painter.setPen(context.primary());
        for (int n = 3; n <= 12; n += 3) {
            const qreal angle = qDegreesToRadians(n * 30.0);
            const QPointF at(std::sin(angle) * r * 0.6, -std::cos(angle) * r * 0.6);
            const QRectF box(at.x() - r * 0.2, at.y() - r * 0.14, r * 0.4, r * 0.28);
            painter.drawText(box, Qt::AlignCenter, QString::number(n));
        }
    }

    const qreal seconds = time.second();
    const qreal minutes = time.minute() + seconds / 60.0;
    const qreal hours = (time.hour() % 12) + minutes / 60.0;
    hand(painter, hours * 30.0, r * 0.5, r * 0.08, std::max<qreal>(1.6, side / 26),
         context.primary());
    hand(painter, minutes * 6.0, r * 0.76, r * 0.08, std::max<qreal>(1.2, side / 40),
         context.primary());
    if (hands == Hands::WithSeconds) {
        hand(painter, seconds * 6.0, r * 0.82, r * 0.18, std::max<qreal>(0.8, side / 110),
             context.accent());
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(hands == Hands::WithSeconds ? context.accent() : context.primary());
    painter.drawEllipse(QPointF(0, 0), std::max<qreal>(1.5, side / 40),
                        std::max<qreal>(1.5, side / 40));
    painter.restore();
}

} // namespace tw
