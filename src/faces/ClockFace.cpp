#include "faces/ClockFace.h"

#include "faces/AnalogDial.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

namespace tw {

namespace {

// The small text beside the time, for a time font whose line is `lineHeight` high.
QFont sideFont(qreal lineHeight) {
    return FaceKit::font(std::max<qreal>(9, lineHeight * 0.3), QFont::Medium);
}

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

// Where the big time of a digital clock sits, with the seconds and the day half beside it.
struct ClockFace::TimeRow {
    QString time;
    QString half;
    bool seconds = false;
    qreal captionHeight = 0;
    QRectF area;
    qreal pixelSize = 0;
    qreal left = 0;
    qreal timeWidth = 0;
    qreal sideWidth = 0;
};

ClockFace::TimeRow ClockFace::timeRow(const QRectF& rect, const FaceContext& context,
                                      const QTime& clockTime) {
    TimeRow row;
    const bool h24 = FaceKit::uses24Hour(context);
    row.seconds = showsSeconds(context.size, context.settings);
    row.time = FaceKit::hoursMinutes(clockTime, h24);
    row.half = h24 ? QString() : FaceKit::dayHalf(clockTime);
    const bool oneRow = rect.height() < 100;
    const QString& time = row.time;
    const QString& half = row.half;
    const bool seconds = row.seconds;

    // The time takes most of the height; seconds and the day half sit beside it, smaller.
    row.captionHeight = oneRow ? rect.height() * 0.24 : std::min<qreal>(rect.height() * 0.14, 22);
    const QRectF timeArea =
        rect.adjusted(0, row.captionHeight, 0, oneRow ? 0 : -row.captionHeight * 1.3);
    row.area = timeArea;
    const qreal maxSize = oneRow ? timeArea.height() * 1.2 : timeArea.height();
    // Digits are tabular, so one sample measures every second.
    const QString secondsSample = QStringLiteral(":00");
    // The side column grows with the time, so both are fitted together: shrink the time until
    // the time and its column share the width.
    const auto fit = [&] {
        qreal size = FaceKit::fittingPixelSize(time, timeArea.size(), QFont::Light, maxSize);
        for (int pass = 0; pass < 4 && size > 6; ++pass) {
            const QFontMetricsF metrics(FaceKit::font(size, QFont::Light));
            const QFontMetricsF side(sideFont(metrics.height()));
            const qreal sideWidth =
                2 + std::max(seconds ? side.horizontalAdvance(secondsSample) : 0.0,
                             half.isEmpty() ? 0.0 : side.horizontalAdvance(half));
            const qreal total = metrics.horizontalAdvance(time) + sideWidth;
            if (total <= timeArea.width()) {
                break;
            }
            size *= timeArea.width() / total * 0.98;
        }
        return size;
    };
    // Everything measured here changes once a minute at most, so it is kept with the pictures.
    const QString key = QStringLiteral("clock|%1|%2|%3|%4x%5")
                            .arg(time, half)
                            .arg(seconds)
                            .arg(timeArea.width())
                            .arg(timeArea.height());
    const auto cached = [&](const QString& part, auto compute) {
        return context.pictures == nullptr ? compute()
                                           : context.pictures->fittedSize(key + part, compute);
    };
    row.pixelSize = cached(QStringLiteral("|size"), fit);
    const QFont timeFont = FaceKit::font(row.pixelSize, QFont::Light);
    const QFont smallFont = sideFont(QFontMetricsF(timeFont).height());
    row.timeWidth = cached(QStringLiteral("|time"),
                           [&] { return QFontMetricsF(timeFont).horizontalAdvance(time); });
    row.sideWidth = cached(QStringLiteral("|side"), [&] {
        const QFontMetricsF side(smallFont);
        return (seconds || !half.isEmpty())
                   ? 2 + std::max(seconds ? side.horizontalAdvance(secondsSample) : 0.0,
                                  side.horizontalAdvance(half))
                   : 0.0;
    });
    row.left = oneRow ? timeArea.left()
                      : timeArea.left() + (timeArea.width() - row.timeWidth - row.sideWidth) / 2;
    return row;
}

QRectF ClockFace::changedRect(const QRectF& rect, const FaceContext& context,
                              const QDateTime& before, const QDateTime& after) const {
    if (isAnalog(context.settings) || context.size == WidgetSize::small ||
        !showsSeconds(context.size, context.settings) || !before.isValid() || !after.isValid()) {
        return rect;
    }
    FaceContext at = context;
    at.now = before;
    const QDateTime from = FaceKit::zoned(at);
    at.now = after;
    const QDateTime to = FaceKit::zoned(at);
    if (from.date() != to.date() || from.time().hour() != to.time().hour() ||
        from.time().minute() != to.time().minute()) {
        return rect;
    }
    // From the end of the hours and minutes to the right edge, over the height of the time: the
    // seconds, whatever the width of their digits.
    const TimeRow row = timeRow(rect, at, to.time());
    const qreal start = row.left + row.timeWidth;
    return QRectF(start, row.area.top(), rect.right() - start, row.area.height());
}

ClockFace::SmallLines ClockFace::smallLines(const QDateTime& now, bool h24, const QString& city) {
    const QLocale locale;
    // Under the weekday the date needs no weekday of its own; under a city it does.
    const QString date = city.isEmpty() ? locale.toString(now.date(), QStringLiteral("d MMMM"))
                                        : locale.toString(now.date(), QStringLiteral("ddd d MMM"));
    return {
        .top = city.isEmpty() ? locale.toString(now.date(), QStringLiteral("dddd")) : city,
        .time = FaceKit::hoursMinutes(now.time(), h24),
        .bottom = h24 ? date : FaceKit::dayHalf(now.time()) + QLatin1Char(' ') + date,
    };
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
        const SmallLines lines = smallLines(now, h24, city);
        const QRectF top(rect.left(), rect.top(), rect.width(), rect.height() * 0.22);
        const QRectF middle(rect.left(), rect.top() + rect.height() * 0.22, rect.width(),
                            rect.height() * 0.5);
        const QRectF bottom(rect.left(), rect.bottom() - rect.height() * 0.22, rect.width(),
                            rect.height() * 0.22);
        FaceKit::drawFitted(painter, context, top, lines.top, QFont::DemiBold, context.accent(),
                            Qt::AlignLeft | Qt::AlignVCenter, 13);
        FaceKit::drawFitted(painter, context, middle, lines.time, QFont::Light, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 40);
        FaceKit::drawFitted(painter, context, bottom, lines.bottom, QFont::Normal,
                            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, 12);
        return;
    }

    const TimeRow row = timeRow(rect, context, now.time());
    const qreal captionHeight = row.captionHeight;
    const QFont timeFont = FaceKit::font(row.pixelSize, QFont::Light);
    const QFont smallFont = sideFont(QFontMetricsF(timeFont).height());
    const QRectF used = FaceKit::drawText(
        painter, context, QRectF(row.left, row.area.top(), row.timeWidth + 1, row.area.height()),
        Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, time, timeFont, context.primary());

    const QRectF side(used.right() + 2, used.top(), row.sideWidth, used.height() * 0.86);
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
