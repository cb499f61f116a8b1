#include "faces/BatteryFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ProgressText.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

const QString kRing = QStringLiteral("ring");

struct Charge {
    // Null for a battery not yet read.
    const BatterySnapshot* battery;
    double fraction; // -1 when unknown
    QString percent;
    QColor hue;
};

Charge chargeOf(const FaceContext& context) {
    const BatterySnapshot* battery = context.readings != nullptr && context.readings->battery
                                         ? &*context.readings->battery
                                         : nullptr;
    if (battery == nullptr || battery->percent < 0) {
        return {battery, -1, ReadingText::missing(), context.accent()};
    }
    const int percent = std::min(battery->percent, 100);
    return {battery, percent / 100.0, ProgressText::percent(percent / 100.0, 0),
            percent <= BatteryFace::lowPercent ? ReadingKit::warning(context) : context.accent()};
}

// The bolt beside the figure while charging, the plug while plugged in and not charging.
QString stateSymbol(const BatterySnapshot* battery) {
    if (battery == nullptr || !battery->hasBattery) {
        return {};
    }
    if (battery->isCharging) {
        return QStringLiteral("bolt.fill");
    }
    return battery->isPluggedIn ? QStringLiteral("powerplug") : QString();
}

QString detailText(const BatterySnapshot* battery) {
    if (battery == nullptr) {
        return {};
    }
    const QString time = BatteryFace::timeText(*battery);
    return time.isEmpty() ? BatteryFace::stateText(*battery) : time;
}

// The charge in its battery or ring, the percentage inside the ring.
void drawGauge(QPainter& painter, const FaceContext& context, const QRectF& square,
               const Charge& charge, bool ring) {
    if (ring) {
        const qreal side = std::min(square.width(), square.height());
        const QRectF r(square.center().x() - side / 2, square.center().y() - side / 2, side, side);
        FaceKit::drawRing(painter, r, side * 0.1, charge.fraction, charge.hue,
                          ReadingKit::track(context));
        const QRectF inner = r.adjusted(side * 0.2, side * 0.3, -side * 0.2, -side * 0.3);
        const QString symbol = stateSymbol(charge.battery);
        if (!symbol.isEmpty()) {
            const qreal s = side * 0.16;
            FaceKit::drawSymbol(painter, context, symbol,
                                QRectF(r.center().x() - s / 2, inner.top() - s * 0.95, s, s),
                                charge.hue, symbol);
        }
        FaceKit::drawFitted(painter, context, inner, charge.percent, QFont::DemiBold,
                            context.primary(), Qt::AlignCenter, side * 0.3);
        return;
    }
    ReadingKit::drawBattery(painter, square, charge.fraction, charge.hue, context.secondary());
}

void paintNoBattery(QPainter& painter, const QRectF& rect, const FaceContext& context) {
    ReadingKit::drawNotice(painter, context, rect, QStringLiteral("powerplug"),
                           L("battery.none", QStringLiteral("No battery")),
                           L("battery.mains", QStringLiteral("On mains power")));
}

} // namespace

std::optional<TimeGrain> BatteryFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds BatteryFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::battery;
}

QStringList BatteryFace::styles() const {
    return {QStringLiteral("battery"), kRing};
}

QString BatteryFace::stateText(const BatterySnapshot& battery) {
    if (!battery.hasBattery) {
        return L("battery.none", QStringLiteral("No battery"));
    }
    if (battery.isCharging) {
        return L("battery.charging", QStringLiteral("Charging"));
    }
    if (battery.isPluggedIn) {
        return battery.percent >= 100 ? L("battery.full", QStringLiteral("Fully charged"))
                                      : L("battery.notCharging", QStringLiteral("Not charging"));
    }
    return L("battery.onBattery", QStringLiteral("On battery"));
}

QString BatteryFace::timeText(const BatterySnapshot& battery) {
    if (!battery.hasBattery) {
        return L("battery.mains", QStringLiteral("On mains power"));
    }
    if (battery.isCharging) {
        return battery.timeToFull > 0 ? L("battery.fullIn", QStringLiteral("Full in %1"))
                                            .arg(ReadingText::duration(battery.timeToFull))
                                      : QString();
    }
    if (!battery.isPluggedIn && battery.timeToEmpty > 0) {
        return L("battery.left", QStringLiteral("%1 left"))
            .arg(ReadingText::duration(battery.timeToEmpty));
    }
    return {};
}

void BatteryFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Charge charge = chargeOf(context);
    if (charge.battery != nullptr && !charge.battery->hasBattery) {
        paintNoBattery(painter, rect, context);
        return;
    }
    const bool ring = context.setting(QStringLiteral("style")) == kRing;
    const QString detail = detailText(charge.battery);
    const QString state = charge.battery != nullptr ? stateText(*charge.battery) : QString();
    const QString symbol = stateSymbol(charge.battery);

    if (context.size == WidgetSize::small) {
        if (ring) {
            drawGauge(painter, context, rect.adjusted(0, 0, 0, -rect.height() * 0.2), charge, true);
            FaceKit::drawFitted(painter, context,
                                QRectF(rect.left(), rect.bottom() - rect.height() * 0.16,
                                       rect.width(), rect.height() * 0.16),
                                detail, QFont::Medium, context.secondary(), Qt::AlignCenter,
                                rect.height() * 0.15);
            return;
        }
        // The battery and its state at the top, the charge as the hero, the time at the foot.
        const qreal h = rect.height();
        const QRectF glyph(rect.left(), rect.top(), h * 0.46, h * 0.22);
        drawGauge(painter, context, glyph, charge, false);
        if (!symbol.isEmpty()) {
            FaceKit::drawSymbol(painter, context, symbol,
                                QRectF(rect.right() - h * 0.22, rect.top(), h * 0.22, h * 0.22),
                                charge.hue, symbol);
        }
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top() + h * 0.26, rect.width(), h * 0.5),
                            charge.percent, QFont::DemiBold, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, h * 0.48);
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.bottom() - h * 0.2, rect.width(), h * 0.2),
            detail, QFont::Medium, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, h * 0.16);
        return;
    }

    if (context.size == WidgetSize::wide) {
        // The gauge at the left; the charge, the state and the time beside it.
        const qreal h = rect.height();
        const QRectF gauge(rect.left(), rect.top(), ring ? h : h * 0.9, h);
        drawGauge(painter, context, ring ? gauge : gauge.adjusted(0, h * 0.25, 0, -h * 0.25),
                  charge, ring);

        const QRectF text(gauge.right() + h * 0.2, rect.top(),
                          rect.right() - gauge.right() - h * 0.2, h);
        const QString hero =
            ring ? (charge.battery != nullptr ? state : ReadingText::missing()) : charge.percent;
        // Before the first reading the dash stands alone, in the middle.
        const qreal heroHeight = charge.battery == nullptr ? h : h * 0.56;
        const QRectF heroRect =
            FaceKit::drawFitted(painter, context,
                                QRectF(text.left(), text.top(),
                                       text.width() - (symbol.isEmpty() ? 0 : h * 0.3), heroHeight),
                                hero, QFont::DemiBold, context.primary(),
                                Qt::AlignLeft | Qt::AlignVCenter, ring ? h * 0.3 : h * 0.5);

        if (!ring && !symbol.isEmpty()) {
            const qreal s = h * 0.24;
            FaceKit::drawSymbol(
                painter, context, symbol,
                QRectF(heroRect.right() + s * 0.2, heroRect.center().y() - s / 2, s, s), charge.hue,
                symbol);
        }
        const QString first = ring ? detail : state;
        const QString second = ring || detail == state ? QString() : detail;
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + h * 0.58, text.width(), h * 0.2),
                            first, QFont::Medium, ring ? context.secondary() : context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, h * 0.17);
        if (!second.isEmpty()) {
            FaceKit::drawFitted(painter, context,
                                QRectF(text.left(), text.top() + h * 0.8, text.width(), h * 0.2),
                                second, QFont::Normal, context.secondary(),
                                Qt::AlignLeft | Qt::AlignVCenter, h * 0.17);
        }
        return;
    }

    // Large: the gauge as the centre piece, the charge, and a line each for the state, the time
    // and the source of power.
    const qreal h = rect.height();
    const qreal line = h * 0.1;
    const QRectF gaugeRect(rect.left(), rect.top(), rect.width(), h * (ring ? 0.62 : 0.36));
    drawGauge(painter, context, gaugeRect, charge, ring);
    qreal y = gaugeRect.bottom() + line * 0.3;
    if (!ring) {
        const QRectF heroRect = FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), y, rect.width(), h * 0.28), charge.percent,
            QFont::DemiBold, context.primary(), Qt::AlignCenter, h * 0.26);
        if (!symbol.isEmpty()) {
            const qreal s = h * 0.11;
            FaceKit::drawSymbol(
                painter, context, symbol,
                QRectF(heroRect.right() + s * 0.2, heroRect.center().y() - s / 2, s, s), charge.hue,
                symbol);
        }
        y += h * 0.28 + line * 0.2;
    }
    const QString source = charge.battery == nullptr ? QString()
                           : charge.battery->isPluggedIn
                               ? L("battery.sourceAdapter", QStringLiteral("Power adapter"))
                               : L("battery.sourceBattery", QStringLiteral("Battery power"));
    const QStringList lines{state, detail == state ? source : detail,
                            detail == state ? QString() : source};
    for (int i = 0; i < lines.size() && y + line <= rect.bottom() + 0.5; ++i) {
        if (!lines.at(i).isEmpty()) {
            FaceKit::drawFitted(painter, context, QRectF(rect.left(), y, rect.width(), line),
                                lines.at(i), i == 0 ? QFont::DemiBold : QFont::Normal,
                                i == 0 ? context.primary() : context.secondary(), Qt::AlignCenter,
                                line * (i == 0 ? 0.95 : 0.8));
        }
        y += line;
    }
}

} // namespace tw
