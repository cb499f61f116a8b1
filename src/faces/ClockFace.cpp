#include "faces/ClockFace.h"

#include "faces/AnalogDial.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QLocale>
#include <QPainter>

namespace tw {

namespace {

QString zoneTitle(const FaceContext& context) {
    const QString id = context.setting(QStringLiteral("zone"));
    return id.isEmpty() ? QString() : FaceKit::cityName(id);
}

} // namespace

bool ClockFace::isAnalog(const WidgetSettings& settings) {
    return settings.value(QStringLiteral("style")) == QLatin1String("analog");
}

bool ClockFace::showsSeconds(WidgetSize size, const WidgetSettings& settings) {
    if (settings.value(QStringLiteral("seconds")) == QLatin1String("false")) {
        return false;
    }
    // A small digital clock has room for hours and minutes only.
    return isAnalog(settings) || size != WidgetSize::small;
}

std::optional<TimeGrain> ClockFace::grain(WidgetSize size, const WidgetSettings& settings) const {
    return showsSeconds(size, settings) ? TimeGrain::Seconds : TimeGrain::Minutes;
}

void ClockFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    if (isAnalog(context.settings)) {
        paintAnalog(painter, rect, context);
    } else {
        paintDigital(painter, rect, context);
    }
}

void ClockFace::paintDigital(QPainter& painter, const QRectF& rect, const FaceContext& context) {
    const QDateTime now = FaceKit::zoned(context);
    const bool h24 = FaceKit::uses24Hour(context);
    const bool seconds = showsSeconds(context.size, context.settings);
    const QString time = FaceKit::hoursMinutes(now.time(), h24);
    const QString secondsText =
        QStringLiteral(":%1").arg(now.time().second(), 2, 10, QLatin1Char('0'));
    const QString half = h24 ? QString() : FaceKit::dayHalf(now.time());
    const QString city = zoneTitle(context);
    const QLocale locale;
    const QString date = locale.toString(now.date(), QStringLiteral("dddd, d MMMM"));
    const QString shortDate = locale.toString(now.date(), QStringLiteral("ddd d MMM"));
    const bool oneRow = rect.height() < 100;

    if (context.size == WidgetSize::small) {
        const QRectF top(rect.left(), rect.top(), rect.width(), rect.height() * 0.22);
        const QRectF middle(rect.left(), rect.top() + rect.height() * 0.22, rect.width(),
                            rect.height() * 0.5);
        const QRectF bottom(rect.left(), rect.bottom() - rect.height() * 0.22, rect.width(),
                            rect.height() * 0.22);
        FaceKit::drawFitted(
            painter, context, top,
            city.isEmpty() ? locale.toString(now.date(), QStringLiteral("dddd")) : city,
            QFont::DemiBold, context.accent(), Qt::AlignLeft | Qt::AlignVCenter, 13);
        FaceKit::drawFitted(painter, context, middle, time, QFont::Light, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 40);
        FaceKit::drawFitted(painter, context, bottom,
                            h24 ? shortDate : half + QLatin1Char(' ') + shortDate, QFont::Normal,
                            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, 12);
        return;
    }

    // The time takes most of the height; seconds sit beside it, smaller, on the same baseline.
    const qreal captionHeight =
        oneRow ? rect.height() * 0.24 : std::min<qreal>(rect.height() * 0.14, 22);
    QRectF timeArea = rect.adjusted(0, captionHeight, 0, oneRow ? 0 : -captionHeight * 1.3);
    if (seconds || !half.isEmpty()) {
        timeArea.setWidth(timeArea.width() * 0.8);
    }
    const Qt::Alignment align = oneRow ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter;
    if (!oneRow) {
        timeArea.moveLeft(rect.left() + (rect.width() - timeArea.width()) / 2 -
                          ((seconds || !half.isEmpty()) ? rect.width() * 0.06 : 0));
    }
    const qreal maxSize = oneRow ? timeArea.height() * 1.2 : timeArea.height();
    const QRectF used = FaceKit::drawFitted(painter, context, timeArea, time, QFont::Light,
                                            context.primary(), align, maxSize);

    const qreal small = std::max<qreal>(9, used.height() * 0.3);
    QRectF side(used.right() + 2, used.top(), rect.right() - used.right() - 2,
                used.height() * 0.86);
    const QFont smallFont = FaceKit::font(small, QFont::Medium);
    if (seconds) {
        FaceKit::drawText(painter, context, side, Qt::AlignLeft | Qt::AlignBottom, secondsText,
                          smallFont, context.accent());
    }
    if (!half.isEmpty()) {
        FaceKit::drawText(painter, context, side.adjusted(0, used.height() * 0.12, 0, 0),
                          Qt::AlignLeft | Qt::AlignTop, half, smallFont, context.secondary());
    }

    const QRectF caption(rect.left(), rect.top(), rect.width(), captionHeight);
    const QString header =
        city.isEmpty() ? (oneRow ? date : locale.toString(now.date(), QStringLiteral("dddd")))
                       : city;
    FaceKit::drawElided(painter, context, caption, header,
                        FaceKit::font(captionHeight * 0.72, QFont::DemiBold), context.accent(),
                        oneRow ? Qt::AlignLeft | Qt::AlignVCenter
                               : Qt::AlignHCenter | Qt::AlignVCenter);
    if (oneRow) {
        if (!city.isEmpty()) {
            FaceKit::drawElided(painter, context, caption, shortDate,
                                FaceKit::font(captionHeight * 0.66), context.secondary(),
                                Qt::AlignRight | Qt::AlignVCenter);
        }
        return;
    }
    const QRectF footer(rect.left(), rect.bottom() - captionHeight * 1.1, rect.width(),
                        captionHeight);
    FaceKit::drawElided(painter, context, footer,
                        city.isEmpty() ? locale.toString(now.date(), QStringLiteral("d MMMM yyyy"))
                                       : date,
                        FaceKit::font(captionHeight * 0.7), context.secondary(), Qt::AlignCenter);
}

void ClockFace::paintAnalog(QPainter& painter, const QRectF& rect, const FaceContext& context) {
    const QDateTime now = FaceKit::zoned(context);
    const AnalogDial::Hands hands = showsSeconds(context.size, context.settings)
                                        ? AnalogDial::Hands::WithSeconds
                                        : AnalogDial::Hands::HoursMinutes;
    const bool square = rect.width() < rect.height() * 1.4;
    if (square) {
        AnalogDial::draw(painter, rect, now.time(), context, hands, AnalogDial::Detail::Numbered);
        return;
    }
    // Wide tiles: the dial on the left, the city, digital time and date beside it.
    const qreal side = rect.height();
    AnalogDial::draw(painter, QRectF(rect.left(), rect.top(), side, side), now.time(), context,
                     hands, AnalogDial::Detail::Numbered);
    const QRectF text(rect.left() + side + side * 0.18, rect.top(), rect.width() - side * 1.18,
                      rect.height());
    const QString city = zoneTitle(context);
    const QLocale locale;
    const qreal line = text.height() / 4;
    FaceKit::drawFitted(painter, context,
                        QRectF(text.left(), text.top() + line * 0.2, text.width(), line * 0.9),
                        city.isEmpty() ? locale.toString(now.date(), QStringLiteral("dddd")) : city,
                        QFont::DemiBold, context.accent(), Qt::AlignLeft | Qt::AlignVCenter, 16);
    const bool h24 = FaceKit::uses24Hour(context);
    QString time = FaceKit::hoursMinutes(now.time(), h24);
    if (!h24) {
        time += QLatin1Char(' ') + FaceKit::dayHalf(now.time());
    }
    FaceKit::drawFitted(
        painter, context, QRectF(text.left(), text.top() + line * 1.1, text.width(), line * 1.7),
        time, QFont::Light, context.primary(), Qt::AlignLeft | Qt::AlignVCenter, 44);
    FaceKit::drawFitted(painter, context,
                        QRectF(text.left(), text.top() + line * 2.9, text.width(), line * 0.9),
                        locale.toString(now.date(), QStringLiteral("ddd d MMMM")), QFont::Normal,
                        context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, 14);
}

} // namespace tw
