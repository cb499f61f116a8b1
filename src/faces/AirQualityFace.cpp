#include "faces/AirQualityFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "faces/WeatherNotice.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>

#include <array>
#include <cmath>

namespace tw {

namespace {

using Band = WxAirQuality::Band;

constexpr std::array kBands{Band::good, Band::fair,     Band::moderate,
                            Band::poor, Band::veryPoor, Band::extreme};

// The band's colour made legible as text: darkened on light glass, lightened on dark glass.
QColor bandInk(Band band, const FaceContext& context) {
    const QColor c = AirQualityFace::bandColor(band).toHsl();
    const float lightness =
        context.glass.darkInk() ? std::min(c.lightnessF(), 0.36F) : std::max(c.lightnessF(), 0.64F);
    return QColor::fromHslF(c.hslHueF(), c.hslSaturationF(), lightness);
}

QString advice(Band band) {
    switch (band) {
    case Band::good:
        return L("airquality.advice.good",
                 QStringLiteral("The air is clean. Enjoy your usual time outdoors."));
    case Band::fair:
        return L("airquality.advice.fair",
                 QStringLiteral("The air is fine for your usual time outdoors."));
    case Band::moderate:
        return L("airquality.advice.moderate",
                 QStringLiteral("Sensitive people may want less strenuous activity outdoors."));
    case Band::poor:
        return L("airquality.advice.poor",
                 QStringLiteral("Take it easier outdoors if you notice symptoms."));
    case Band::veryPoor:
        return L("airquality.advice.veryPoor",
                 QStringLiteral("Cut down on physical activity outdoors."));
    case Band::extreme:
        break;
    }
    return L("airquality.advice.extreme", QStringLiteral("Avoid physical activity outdoors."));
}

QString unit() {
    return QStringLiteral("\u00b5g/m\u00b3");
}

// What the tile shows: the place of the forecast and its air, which may be absent.
struct Shown {
    QString place;
    std::optional<WxAirQuality> air;

    QString index() const { return air ? QLocale().toString(air->index) : ReadingText::missing(); }
    QString bandTitle() const {
        return air ? WxAirQuality::title(air->band())
                   : L("airquality.none", QStringLiteral("No air data"));
    }
    QColor bandColour(const FaceContext& context) const {
        return air ? bandInk(air->band(), context) : context.secondary();
    }
    QString adviceText() const {
        return air ? advice(air->band())
                   : L("airquality.none.detail",
                       QStringLiteral("There is no air-quality reading for this place."));
    }
};

// Six segments in the bands' colours, with a knob where the index stands; no knob without one.
void drawScale(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const Shown& shown, bool labelled) {
    const qreal labelHeight = labelled ? std::min(rect.height() * 0.5, 12.0) : 0;
    const QRectF track(rect.left(), rect.top(), rect.width(), rect.height() - labelHeight);
    const qreal knob = track.height();
    const qreal barHeight = std::max<qreal>(3, knob * 0.45);
    const QRectF bar(track.left() + knob / 2, track.center().y() - barHeight / 2,
                     track.width() - knob, barHeight);
    const qreal gap = std::max<qreal>(1.5, bar.width() / 150);
    const qreal step = (bar.width() + gap) / static_cast<qreal>(kBands.size());
    painter.save();
    painter.setPen(Qt::NoPen);
    for (std::size_t i = 0; i < kBands.size(); ++i) {
        QColor fill = AirQualityFace::bandColor(kBands.at(i));
        if (!shown.air) {
            fill.setAlphaF(0.35F);
        }
        painter.setBrush(fill);
        painter.drawRoundedRect(
            QRectF(bar.left() + static_cast<qreal>(i) * step, bar.top(), step - gap, bar.height()),
            bar.height() / 2, bar.height() / 2);
    }
    if (shown.air) {
        const QPointF at(bar.left() + bar.width() * AirQualityFace::scalePosition(shown.air->index),
                         bar.center().y());
        painter.setBrush(AirQualityFace::bandColor(shown.air->band()));
        painter.setPen(QPen(QColor(255, 255, 255, 235), std::max<qreal>(1.5, knob * 0.16)));
        const qreal r = knob / 2 - painter.pen().widthF() / 2;
        painter.drawEllipse(at, r, r);
    }
    painter.restore();
    if (labelled) {
        const QFont font = FaceKit::font(labelHeight * 0.82);
        for (std::size_t i = 0; i < kBands.size(); ++i) {
            const qreal x = bar.left() + static_cast<qreal>(i) * step;
            const QRectF label(x - step / 2, track.bottom(), step, labelHeight);
            const bool first = i == 0;
            FaceKit::drawText(
                painter, context, first ? label.translated(step / 2, 0) : label,
                static_cast<int>((first ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignBottom),
                QString::number(i * 20), font, context.secondary());
        }
    }
}

// The name of the place, faint, with the kind's symbol where there is room for it.
void drawPlace(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const Shown& shown, bool withSymbol) {
    QRectF text = rect;
    if (withSymbol) {
        const qreal side = rect.height();
        FaceKit::drawSymbol(painter, context, QStringLiteral("aqi.medium"),
                            QRectF(rect.left(), rect.top(), side, side), context.accent(),
                            QStringLiteral("A"));
        text.setLeft(rect.left() + side * 1.25);
    }
    FaceKit::drawElided(
        painter, context, text, shown.place, FaceKit::font(rect.height() * 0.82, QFont::DemiBold),
        withSymbol ? context.primary() : context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
}

// The index, large, with "AQI" beside it; returns where the number ended.
QRectF drawIndex(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const Shown& shown) {
    const QRectF used = FaceKit::drawFitted(
        painter, context, rect.adjusted(0, 0, -rect.height() * 0.9, 0), shown.index(), QFont::Light,
        context.primary(), Qt::AlignLeft | Qt::AlignVCenter, rect.height() * 1.05);
    const qreal label = rect.height() * 0.24;
    FaceKit::drawFitted(
        painter, context,
        QRectF(used.right() + label * 0.3, used.bottom() - label * 1.9, rect.height() * 0.9, label),
        QStringLiteral("AQI"), QFont::DemiBold, context.secondary(),
        Qt::AlignLeft | Qt::AlignVCenter, label);
    return used;
}

// The band's title in its colour.
void drawBand(QPainter& painter, const FaceContext& context, const QRectF& rect, const Shown& shown,
              Qt::Alignment alignment) {
    FaceKit::drawFitted(painter, context, rect, shown.bandTitle(), QFont::DemiBold,
                        shown.bandColour(context), alignment | Qt::AlignVCenter, rect.height());
}

// Words broken over as many lines as fit, shrunk down to a floor, then elided.
void drawWrapped(QPainter& painter, const QRectF& rect, const QString& text, const QColor& color,
                 qreal most) {
    constexpr qreal least = 9;
    qreal size = most;
    const int flags = static_cast<int>(Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap);
    while (size > least &&
           QFontMetricsF(FaceKit::font(size)).boundingRect(rect, flags, text).height() >
               rect.height()) {
        size -= 0.5;
    }
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.setFont(FaceKit::font(size));
    painter.setPen(color);
    painter.drawText(rect, flags, text);
    painter.restore();
}

struct Particle {
    QString name;
    double value;
};

QList<Particle> particlesOf(const Shown& shown) {
    const double missing = std::nan("");
    return {{QStringLiteral("PM2.5"), shown.air ? shown.air->pm25 : missing},
            {QStringLiteral("PM10"), shown.air ? shown.air->pm10 : missing}};
}

// One line per particle: the name at the left, the figure and unit at the right.
void drawParticleLines(QPainter& painter, const FaceContext& context, const QRectF& rect,
                       const Shown& shown) {
    const QList<Particle> all = particlesOf(shown);
    const qreal line = rect.height() / static_cast<qreal>(all.size());
    for (qsizetype i = 0; i < all.size(); ++i) {
        const QRectF row(rect.left(), rect.top() + static_cast<qreal>(i) * line, rect.width(),
                         line);
        const QRectF value = FaceKit::drawFitted(
            painter, context, row.adjusted(row.width() * 0.4, 0, 0, 0),
            AirQualityFace::particles(all.at(i).value) + QChar(0x2009) + unit(), QFont::Medium,
            context.primary(), Qt::AlignRight | Qt::AlignVCenter, line * 0.62);
        FaceKit::drawFitted(painter, context,
                            QRectF(row.left(), row.top(), value.left() - row.left() - 4, line),
                            all.at(i).name, QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 0.56);
    }
}

// A card per particle, side by side or one above the other: the name, the figure large, the unit.
void drawParticleCards(QPainter& painter, const FaceContext& context, const QRectF& rect,
                       const Shown& shown, Qt::Orientation orientation) {
    const QList<Particle> all = particlesOf(shown);
    const qreal gap = 8;
    const auto n = static_cast<qreal>(all.size());
    const bool across = orientation == Qt::Horizontal;
    const QSizeF card(across ? (rect.width() - gap * (n - 1)) / n : rect.width(),
                      across ? rect.height() : (rect.height() - gap * (n - 1)) / n);
    for (qsizetype i = 0; i < all.size(); ++i) {
        const qreal shift = static_cast<qreal>(i) * ((across ? card.width() : card.height()) + gap);
        const QRectF box(
            QPointF(rect.left() + (across ? shift : 0), rect.top() + (across ? 0 : shift)), card);
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.elevated());
        painter.drawRoundedRect(box, 10, 10);
        painter.restore();
        const QRectF inside = box.adjusted(9, 6, -9, -6);
        const qreal label = std::min(inside.height() * 0.28, 13.0);
        FaceKit::drawFitted(painter, context,
                            QRectF(inside.topLeft(), QSizeF(inside.width(), label)), all.at(i).name,
                            QFont::DemiBold, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                            label);
        const QRectF figure(inside.left(), inside.top() + label, inside.width(),
                            inside.height() - label);
        const QRectF used = FaceKit::drawFitted(
            painter, context, figure.adjusted(0, 0, -figure.width() * 0.38, 0),
            AirQualityFace::particles(all.at(i).value), QFont::Normal, context.primary(),
            Qt::AlignLeft | Qt::AlignBottom, figure.height() * 0.8);
        FaceKit::drawFitted(painter, context,
                            QRectF(used.right() + 3, figure.bottom() - label * 1.3,
                                   inside.right() - used.right() - 3, label * 1.1),
                            unit(), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, label * 0.9);
    }
}

void paintSmall(QPainter& painter, const FaceContext& context, const QRectF& r,
                const Shown& shown) {
    const qreal h = r.height();
    FaceKit::drawFitted(painter, context, QRectF(r.left(), r.top(), r.width(), h * 0.18),
                        QStringLiteral("AQI"), QFont::DemiBold, context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, h * 0.16);
    FaceKit::drawFitted(painter, context, QRectF(r.left(), r.top() + h * 0.16, r.width(), h * 0.44),
                        shown.index(), QFont::Normal, context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter, h * 0.46);
    drawBand(painter, context, QRectF(r.left(), r.top() + h * 0.6, r.width(), h * 0.19), shown,
             Qt::AlignLeft);
    drawScale(painter, context, QRectF(r.left(), r.bottom() - h * 0.13, r.width(), h * 0.13), shown,
              false);
}

// Wide and banner: the place and the index at the left, the band and the particles at the
// right, the scale along the bottom; the banner gives the band its own column.
void paintStrip(QPainter& painter, const FaceContext& context, const QRectF& r,
                const Shown& shown) {
    const bool banner = context.size == WidgetSize::banner;
    const qreal h = r.height();
    const qreal scaleHeight = h * 0.15;
    const QRectF body(r.left(), r.top(), r.width(), h - scaleHeight - h * 0.08);
    const qreal leftWidth = body.width() * (banner ? 0.32 : 0.48);
    drawPlace(painter, context, QRectF(body.left(), body.top(), leftWidth, body.height() * 0.26),
              shown, false);
    drawIndex(
        painter, context,
        QRectF(body.left(), body.top() + body.height() * 0.26, leftWidth, body.height() * 0.74),
        shown);
    QRectF right(body.left() + leftWidth + 8, body.top(), body.width() - leftWidth - 8,
                 body.height());
    if (banner) {
        const QRectF middle(right.left(), right.top(), right.width() * 0.45, right.height());
        drawBand(painter, context,
                 QRectF(middle.left(), middle.top() + h * 0.1, middle.width() - 6, h * 0.26), shown,
                 Qt::AlignLeft);
        FaceKit::drawFitted(
            painter, context,
            QRectF(middle.left(), middle.top() + h * 0.38, middle.width() - 6, h * 0.18),
            L("airquality.scale", QStringLiteral("European AQI")), QFont::Normal,
            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, h * 0.16);
        right.setLeft(middle.right() + 6);
        drawParticleLines(painter, context, right.adjusted(0, h * 0.04, 0, 0), shown);
    } else {
        drawBand(painter, context, QRectF(right.left(), right.top(), right.width(), h * 0.22),
                 shown, Qt::AlignRight);
        drawParticleLines(painter, context, right.adjusted(0, h * 0.3, 0, 0), shown);
    }
    drawScale(painter, context, QRectF(r.left(), r.bottom() - scaleHeight, r.width(), scaleHeight),
              shown, false);
}

void paintLarge(QPainter& painter, const FaceContext& context, const QRectF& r,
                const Shown& shown) {
    const qreal h = r.height();
    drawPlace(painter, context, QRectF(r.left(), r.top(), r.width(), h * 0.1), shown, true);
    const QRectF hero(r.left(), r.top() + h * 0.13, r.width(), h * 0.3);
    const QRectF number =
        drawIndex(painter, context, hero.adjusted(0, 0, -hero.width() * 0.35, 0), shown);
    Q_UNUSED(number)
    drawBand(painter, context, QRectF(r.left(), hero.bottom(), r.width(), h * 0.1), shown,
             Qt::AlignLeft);
    drawScale(painter, context, QRectF(r.left(), hero.bottom() + h * 0.13, r.width(), h * 0.14),
              shown, true);
    drawParticleCards(painter, context,
                      QRectF(r.left(), r.bottom() - h * 0.28, r.width(), h * 0.28), shown,
                      Qt::Horizontal);
}

void paintWideTall(QPainter& painter, const FaceContext& context, const QRectF& r,
                   const Shown& shown) {
    const qreal h = r.height();
    const qreal scaleHeight = h * 0.15;
    const QRectF left(r.left(), r.top(), r.width() * 0.6, r.height() - scaleHeight - 8);
    drawPlace(painter, context, QRectF(left.left(), left.top(), left.width(), h * 0.1), shown,
              true);
    drawIndex(painter, context, QRectF(left.left(), left.top() + h * 0.12, left.width(), h * 0.3),
              shown);
    drawBand(painter, context, QRectF(left.left(), left.top() + h * 0.44, left.width(), h * 0.11),
             shown, Qt::AlignLeft);
    drawWrapped(painter,
                QRectF(left.left(), left.top() + h * 0.57, left.width() - 8,
                       left.bottom() - left.top() - h * 0.57),
                shown.adviceText(), context.secondary(), 12);
    drawParticleCards(
        painter, context,
        QRectF(left.right() + 4, r.top(), r.right() - left.right() - 4, left.height()), shown,
        Qt::Vertical);
    drawScale(painter, context, QRectF(r.left(), r.bottom() - scaleHeight, r.width(), scaleHeight),
              shown, true);
}

} // namespace

std::optional<TimeGrain> AirQualityFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

bool AirQualityFace::showsWeather(const WidgetSettings&) const {
    return true;
}

double AirQualityFace::scalePosition(int index) {
    constexpr double top = 120;
    return std::clamp(index / top, 0.0, 1.0);
}

QColor AirQualityFace::bandColor(WxAirQuality::Band band) {
    switch (band) {
    case Band::good:
        return {0x50, 0xf0, 0xe6};
    case Band::fair:
        return {0x50, 0xcc, 0xaa};
    case Band::moderate:
        return {0xf0, 0xe6, 0x41};
    case Band::poor:
        return {0xff, 0x50, 0x50};
    case Band::veryPoor:
        return {0x96, 0x00, 0x32};
    case Band::extreme:
        break;
    }
    return {0x7d, 0x21, 0x81};
}

QString AirQualityFace::particles(double value) {
    if (!std::isfinite(value) || value < 0) {
        return ReadingText::missing();
    }
    return QLocale().toString(value, 'f', value < 9.95 ? 1 : 0);
}

void AirQualityFace::paint(QPainter& painter, const QRectF& rect,
                           const FaceContext& context) const {
    const WeatherPlace* place =
        context.weather == nullptr ? nullptr : context.weather->place(context.settings);
    const WxLive* live = WeatherNotice::forecast(place);
    if (live == nullptr) {
        const WeatherNotice notice = WeatherNotice::of(place);
        ReadingKit::drawNotice(painter, context, rect, notice.symbol, notice.title, notice.detail);
        return;
    }
    const Shown shown{live->city, live->air};
    switch (context.size) {
    case WidgetSize::small:
        paintSmall(painter, context, rect, shown);
        break;
    case WidgetSize::large:
        paintLarge(painter, context, rect, shown);
        break;
    case WidgetSize::wideTall:
        paintWideTall(painter, context, rect, shown);
        break;
    default:
        paintStrip(painter, context, rect, shown);
        break;
    }
}

} // namespace tw
