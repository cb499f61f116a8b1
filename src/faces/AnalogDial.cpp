#include "faces/AnalogDial.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"

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

namespace {

// The still part of the dial, centred on the origin: face, marks and numbers.
void paintDial(QPainter& painter, qreal side, const QColor& face, const FaceContext& context,
               AnalogDial::Detail detail) {
    const qreal r = side / 2;
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

    if (detail == AnalogDial::Detail::Numbered && side >= 120) {
        painter.setFont(FaceKit::font(r * 0.2, QFont::Medium));
        painter.setPen(context.primary());
        for (int n = 3; n <= 12; n += 3) {
            const qreal angle = qDegreesToRadians(n * 30.0);
            const QPointF at(std::sin(angle) * r * 0.6, -std::cos(angle) * r * 0.6);
            const QRectF box(at.x() - r * 0.2, at.y() - r * 0.14, r * 0.4, r * 0.28);
            painter.drawText(box, Qt::AlignCenter, QString::number(n));
        }
    }
}

} // namespace

void AnalogDial::draw(QPainter& painter, const QRectF& rect, const QTime& time,
                      const FaceContext& context, Hands hands, Detail detail, Daylight daylight) {
    const qreal side = std::min(rect.width(), rect.height());
    const qreal r = side / 2;
    const QPointF centre = rect.center();
    const bool isDay = time.hour() >= 6 && time.hour() < 18;

    QColor face = context.elevated();
    if (daylight == Daylight::Shade) {
        face = isDay ? context.primary() : context.separator();
        face.setAlphaF(isDay ? 0.16F : 0.5F);
    }
    // The dial stands still; only the hands move, so it is drawn once and copied after.
    const QRectF square(centre.x() - r, centre.y() - r, side, side);
    const auto still = [&](QPainter& p) {
        p.translate(r, r);
        paintDial(p, side, face, context, detail);
    };
    if (context.pictures != nullptr) {
        const QString key = QStringLiteral("dial|%1|%2|%3|%4|%5|%6")
                                .arg(face.rgba())
                                .arg(context.separator().rgba())
                                .arg(context.primary().rgba())
                                .arg(context.secondary().rgba())
                                .arg(static_cast<int>(detail))
                                .arg(side);
        context.pictures->draw(painter, square, key, context.devicePixelRatio * context.scale,
                               still);
    } else {
        painter.save();
        painter.translate(square.topLeft());
        still(painter);
        painter.restore();
    }

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(centre);
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
