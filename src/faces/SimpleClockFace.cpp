#include "faces/SimpleClockFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QLocale>
#include <QPainter>

namespace tw {

std::optional<TimeGrain> SimpleClockFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

void SimpleClockFace::paint(QPainter& painter, const QRectF& rect,
                            const FaceContext& context) const {
    const QDateTime now = FaceKit::zoned(context);
    const bool h24 = FaceKit::uses24Hour(context);
    const QString time = FaceKit::hoursMinutes(now.time(), h24);
    const QLocale locale;

    if (context.size == WidgetSize::small) {
        // Hours over minutes: two digits a line read far larger than four in a row.
        const QString hours = time.section(QLatin1Char(':'), 0, 0);
        const QString minutes = time.section(QLatin1Char(':'), 1, 1);
        const QRectF top(rect.left(), rect.top(), rect.width(), rect.height() / 2);
        const QRectF bottom(rect.left(), rect.center().y(), rect.width(), rect.height() / 2);
        FaceKit::drawFitted(painter, context, top, hours, QFont::Bold, context.primary(),
                            Qt::AlignCenter, top.height() * 1.1);
        FaceKit::drawFitted(painter, context, bottom, minutes, QFont::Bold, context.accent(),
                            Qt::AlignCenter, bottom.height() * 1.1);
        return;
    }
    if (context.size == WidgetSize::wide || context.size == WidgetSize::banner) {
        // One row: the time, and on a banner the date beside it.
        QRectF timeRect = rect;
        if (context.size == WidgetSize::banner) {
            timeRect.setWidth(rect.width() * 0.6);
            const QRectF dateRect(timeRect.right() + 8, rect.top(),
                                  rect.right() - timeRect.right() - 8, rect.height());
            const qreal line = dateRect.height() / 2;
            FaceKit::drawFitted(
                painter, context,
                QRectF(dateRect.left(), dateRect.top() + line * 0.25, dateRect.width(), line * 0.7),
                locale.toString(now.date(), QStringLiteral("dddd")), QFont::DemiBold,
                context.accent(), Qt::AlignLeft | Qt::AlignVCenter, 20);
            FaceKit::drawFitted(
                painter, context,
                QRectF(dateRect.left(), dateRect.top() + line * 1.0, dateRect.width(), line * 0.7),
                locale.toString(now.date(), QStringLiteral("d MMMM")), QFont::Normal,
                context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, 18);
        }
        FaceKit::drawFitted(painter, context, timeRect, time, QFont::Bold, context.primary(),
                            context.size == WidgetSize::banner ? Qt::AlignLeft | Qt::AlignVCenter
                                                               : Qt::AlignCenter,
                            timeRect.height() * 1.15);
        return;
    }
    // Tall enough for the time over the weekday and date.
    const qreal dateHeight = rect.height() * 0.2;
    const QRectF timeRect(rect.left(), rect.top(), rect.width(), rect.height() - dateHeight * 1.2);
    const QRectF used =
        FaceKit::drawFitted(painter, context, timeRect, time, QFont::Bold, context.primary(),
                            Qt::AlignHCenter | Qt::AlignBottom, timeRect.height() * 0.9);
    const QRectF dateRect(rect.left(), used.bottom(), rect.width(), dateHeight);
    FaceKit::drawFitted(painter, context, dateRect,
                        locale.toString(now.date(), QStringLiteral("dddd, d MMMM")), QFont::Medium,
                        context.secondary(), Qt::AlignHCenter | Qt::AlignTop, dateHeight * 0.6);
}

} // namespace tw
