#include "faces/MoonFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingText.h"
#include "text/L.h"
#include "weather/MoonMath.h"

#include <QLinearGradient>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

// A dark plain of the near side: its centre and radii in the unit disc, north up, as seen from
// the northern hemisphere.
struct Mare {
    double x;
    double y;
    double rx;
    double ry;
    int darkness; // alpha of its heart
};

constexpr std::array kMaria{
    Mare{-0.56, -0.02, 0.30, 0.44, 95},  // Oceanus Procellarum
    Mare{-0.30, -0.42, 0.27, 0.22, 110}, // Imbrium
    Mare{0.17, -0.38, 0.16, 0.15, 115},  // Serenitatis
    Mare{0.33, -0.08, 0.21, 0.17, 105},  // Tranquillitatis
    Mare{0.68, -0.28, 0.11, 0.10, 120},  // Crisium
    Mare{0.55, 0.19, 0.13, 0.16, 90},    // Fecunditatis
    Mare{0.35, 0.31, 0.09, 0.09, 90},    // Nectaris
    Mare{-0.18, 0.33, 0.18, 0.13, 85},   // Nubium
    Mare{-0.50, 0.38, 0.10, 0.10, 95},   // Humorum
    Mare{0.02, -0.70, 0.34, 0.07, 70},   // Frigoris
    Mare{0.00, -0.14, 0.10, 0.08, 70},   // Vaporis and Sinus Medii
};

// A soft round patch: `colour` at its heart fading out at its edge.
void drawPatch(QPainter& p, const QPointF& at, qreal rx, qreal ry, const QColor& colour) {
    p.save();
    p.translate(at);
    p.scale(1, ry / rx);
    QRadialGradient patch(QPointF(0, 0), rx);
    QColor edge = colour;
    edge.setAlpha(0);
    patch.setColorAt(0, colour);
    patch.setColorAt(0.55,
                     QColor(colour.red(), colour.green(), colour.blue(), colour.alpha() * 3 / 4));
    patch.setColorAt(1, edge);
    p.setBrush(patch);
    p.drawEllipse(QPointF(0, 0), rx, rx);
    p.restore();
}

// The near side, north up: a warm grey disc darkening to its limb, mottled highlands, the maria
// as clusters of soft patches, a scatter of small craters lit from one side, and Tycho with its
// faint rays in the south.
void drawMoonFace(QPainter& p, qreal r) {
    p.setPen(Qt::NoPen);
    QRadialGradient base(QPointF(-r * 0.25, -r * 0.25), r * 1.5);
    base.setColorAt(0, QColor(246, 243, 236));
    base.setColorAt(1, QColor(196, 191, 182));
    p.setBrush(base);
    p.drawEllipse(QPointF(0, 0), r, r);
    // A fixed seed, so that every picture of the moon is the same moon.
    quint32 seed = 20260622;
    const auto next = [&seed] {
        seed = seed * 1664525U + 1013904223U;
        return static_cast<double>(seed >> 8) / static_cast<double>(1U << 24);
    };
    for (int i = 0; i < 40; ++i) {
        const QPointF at((next() * 2 - 1) * r, (next() * 2 - 1) * r);
        const qreal size = r * (0.08 + 0.12 * next());
        drawPatch(p, at, size, size,
                  next() < 0.5 ? QColor(255, 253, 246, 40) : QColor(150, 146, 140, 22));
    }
    for (const Mare& m : kMaria) {
        // Each plain a cluster of patches, so that its edge is not a clean ellipse.
        for (int i = 0; i < 7; ++i) {
            const QPointF at((m.x + (next() - 0.5) * m.rx * 1.1) * r,
                             (m.y + (next() - 0.5) * m.ry * 1.1) * r);
            const double shrink = i == 0 ? 0.9 : 0.35 + 0.4 * next();
            drawPatch(p, at, m.rx * r * shrink, m.ry * r * shrink,
                      QColor(96, 100, 110, i == 0 ? m.darkness * 3 / 4 : m.darkness / 3));
        }
    }
    for (int i = 0; i < 55; ++i) {
        const double angle = next() * 2 * std::numbers::pi;
        const double distance = std::sqrt(next()) * 0.9;
        const qreal size = r * (0.012 + 0.035 * next() * next());
        const QPointF at(std::cos(angle) * distance * r, std::sin(angle) * distance * r);
        // A shadowed floor and a lit far wall, light from the upper left.
        drawPatch(p, at, size, size, QColor(90, 90, 98, 60));
        p.setPen(QPen(QColor(255, 255, 250, 70), std::max<qreal>(0.4, size * 0.28)));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(at.x() - size * 0.8, at.y() - size * 0.8, size * 1.6, size * 1.6),
                  200 * 16, 140 * 16);
        p.setPen(Qt::NoPen);
    }
    const QPointF tycho(-0.12 * r, 0.72 * r);
    for (int i = 0; i < 11; ++i) {
        const double angle = i * 2 * std::numbers::pi / 11 + 0.3 + next() * 0.3;
        const QPointF end =
            tycho + QPointF(std::cos(angle), std::sin(angle)) * r * (0.3 + 0.35 * next());
        QLinearGradient ray(tycho, end);
        ray.setColorAt(0, QColor(255, 255, 250, 30));
        ray.setColorAt(1, QColor(255, 255, 250, 0));
        p.setPen(QPen(QBrush(ray), std::max<qreal>(0.5, r * 0.014), Qt::SolidLine, Qt::RoundCap));
        p.drawLine(tycho, end);
    }
    p.setPen(Qt::NoPen);
    drawPatch(p, tycho, r * 0.05, r * 0.05, QColor(255, 255, 250, 210));
    drawPatch(p, QPointF(-0.30 * r, -0.10 * r), r * 0.04, r * 0.04,
              QColor(255, 255, 250, 170)); // Copernicus
    drawPatch(p, QPointF(-0.62 * r, -0.18 * r), r * 0.03, r * 0.03,
              QColor(255, 255, 250, 190)); // Aristarchus
    // The limb darkens; the clip keeps everything inside the disc.
    QRadialGradient limb(QPointF(0, 0), r);
    limb.setColorAt(0.7, QColor(0, 0, 0, 0));
    limb.setColorAt(1, QColor(20, 18, 30, 70));
    p.setBrush(limb);
    p.drawEllipse(QPointF(0, 0), r, r);
}

// The lit part of a disc of radius `r` at the origin, its bright limb to the right.
QPainterPath litShape(qreal r, double fraction) {
    const QRectF disc(-r, -r, 2 * r, 2 * r);
    const qreal e = r * std::abs(2 * fraction - 1);
    const QRectF terminator(-e, -r, 2 * e, 2 * r);
    QPainterPath lit(QPointF(0, -r));
    lit.arcTo(disc, 90, -180);
    // Gibbous: the terminator bows out to the left; crescent: in towards the limb.
    lit.arcTo(terminator, -90, fraction >= 0.5 ? -180 : 180);
    lit.closeSubpath();
    return lit;
}

// The moon at `centre`: the textured disc, the night side darkened to a trace of earthshine.
void drawMoon(QPainter& painter, const FaceContext& context, const QPointF& centre, qreal r,
              const MoonMath::Illumination& light, bool southern) {
    const QRectF box(centre.x() - r, centre.y() - r, 2 * r, 2 * r);
    const auto face = [r, southern](QPainter& p) {
        p.translate(r, r);
        if (southern) {
            p.rotate(180); // the south sees the near side upside down
        }
        QPainterPath disc;
        disc.addEllipse(QPointF(0, 0), r, r);
        p.setClipPath(disc);
        drawMoonFace(p, r);
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // A faint glow that grows with the light.
    QRadialGradient halo(centre, r * 1.1);
    halo.setColorAt(0.85, QColor(255, 248, 228, static_cast<int>(60 * light.fraction)));
    halo.setColorAt(1, QColor(255, 248, 228, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(halo);
    painter.drawEllipse(centre, r * 1.1, r * 1.1);
    if (context.pictures != nullptr) {
        context.pictures->draw(painter, box,
                               southern ? QStringLiteral("moon|s") : QStringLiteral("moon|n"),
                               context.devicePixelRatio * context.scale, face);
    } else {
        painter.translate(box.topLeft());
        face(painter);
        painter.translate(-box.topLeft());
    }
    QPainterPath disc;
    disc.addEllipse(centre, r, r);
    QTransform turn;
    turn.translate(centre.x(), centre.y());
    turn.rotateRadians(-MoonFace::brightLimbDirection(light.angle, southern));
    const QPainterPath lit = turn.map(litShape(r, light.fraction));
    painter.setBrush(QColor(6, 8, 16, context.glass.darkInk() ? 200 : 215));
    painter.drawPath(disc.subtracted(lit));
    painter.setBrush(Qt::NoBrush);
    QColor rim = context.primary();
    rim.setAlphaF(0.1F);
    painter.setPen(QPen(rim, 0.8));
    painter.drawEllipse(centre, r - 0.4, r - 0.4);
    painter.restore();
}

// Where the tile's place is, from its weather or else the current place's; none known, none.
struct Place {
    double latitude;
    double longitude;
    QTimeZone zone;
    QString name;
};

std::optional<Place> placeOf(const FaceContext& context) {
    if (context.weather == nullptr) {
        return std::nullopt;
    }
    for (const WeatherPlace* place :
         {context.weather->place(context.settings), context.weather->place({})}) {
        if (place == nullptr || !place->latitude || !place->longitude) {
            continue;
        }
        // The place's own clock where its forecast tells it.
        const std::optional<WxLive>& live = place->state.live ? place->state.live : place->lastGood;
        const QTimeZone zone =
            live && live->sunrise ? live->sunrise->timeZone() : context.now.timeZone();
        return Place{*place->latitude, *place->longitude, zone, live ? live->city : QString()};
    }
    return std::nullopt;
}

struct Shown {
    MoonMath::Illumination light;
    std::optional<Place> place;
    MoonMath::Times times;
    QDateTime now;
    bool h24 = true;

    bool southern() const { return place && place->latitude < 0; }
    QString phaseName() const { return MoonMath::nameForPhase(light.phase); }
    QString lit() const {
        return L("moon.lit", QStringLiteral("%1 lit"))
            .arg(QLocale().toString(qRound(light.fraction * 100)) + QLatin1Char('%'));
    }
    QString time(const std::optional<QDateTime>& at) const {
        if (times.alwaysUp) {
            return L("moon.alwaysUp", QStringLiteral("Up all day"));
        }
        if (times.alwaysDown) {
            return L("moon.alwaysDown", QStringLiteral("Down all day"));
        }
        if (!at) {
            return ReadingText::missing();
        }
        const QString time = FaceKit::hoursMinutes(at->time(), h24);
        return h24 ? time : time + QLatin1Char(' ') + FaceKit::dayHalf(at->time());
    }
};

Shown shownFor(const FaceContext& context) {
    Shown s;
    s.now = context.now;
    s.light = MoonMath::illumination(s.now);
    s.place = placeOf(context);
    s.h24 = FaceKit::uses24Hour(context);
    if (s.place) {
        s.times = MoonMath::times(s.now.toTimeZone(s.place->zone).date(), s.place->latitude,
                                  s.place->longitude, s.place->zone);
    }
    return s;
}

// "↑ 14:32" and "↓ 02:11" side by side in `rect`, or one above the other when `stacked`.
void drawRiseSet(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const Shown& shown, bool stacked) {
    if (!shown.place) {
        return; // rise and set need a place; the phase does not
    }
    const std::array<std::pair<QString, QString>, 2> rows{{
        {QStringLiteral("arrow.up"), shown.time(shown.times.rise)},
        {QStringLiteral("arrow.down"), shown.time(shown.times.set)},
    }};
    const bool oneText = shown.place && (shown.times.alwaysUp || shown.times.alwaysDown);
    const auto cellAt = [&](std::size_t i) {
        const auto n = static_cast<qreal>(i);
        return stacked ? QRectF(rect.left(), rect.top() + n * rect.height() / 2, rect.width(),
                                rect.height() / 2)
                       : QRectF(rect.left() + n * rect.width() / 2, rect.top(), rect.width() / 2,
                                rect.height());
    };
    const qreal side = std::min(cellAt(0).height() * 0.8, 18.0);
    // Both times at one size, so that neither looks the more important.
    qreal size = side * 0.8;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const QSizeF room = oneText ? rect.size() : cellAt(i).size() - QSizeF(side * 1.15 + 4, 0);
        size = std::min(
            size, FaceKit::fittingPixelSize(rows.at(i).second, room, QFont::Medium, side * 0.8));
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (oneText) {
            // In a row it stands in the middle, as the row's two times would.
            FaceKit::drawText(
                painter, context, rect,
                static_cast<int>((stacked ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter),
                rows.at(i).second, FaceKit::font(size, QFont::Medium), context.primary());
            break;
        }
        const QRectF cell = cellAt(i);
        FaceKit::drawSymbol(painter, context, rows.at(i).first,
                            QRectF(cell.left(), cell.center().y() - side / 2, side, side),
                            context.accent(), QStringLiteral("+"));
        FaceKit::drawText(painter, context, cell.adjusted(side * 1.15, 0, -4, 0),
                          static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), rows.at(i).second,
                          FaceKit::font(size, QFont::Medium), context.primary());
    }
}

// A small full disc or a dark one with a rim: the mark of the next full or new moon.
void drawPhaseMark(QPainter& painter, const FaceContext& context, const QPointF& centre, qreal r,
                   bool full) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor rim = context.primary();
    rim.setAlphaF(0.45F);
    painter.setPen(QPen(rim, std::max<qreal>(0.8, r * 0.16)));
    painter.setBrush(full ? QColor(240, 236, 226) : QColor(20, 22, 30));
    painter.drawEllipse(centre, r, r);
    painter.restore();
}

// The next full and new moons, the nearer first: a mark and the date, with the words where
// `named`.
void drawNextPhases(QPainter& painter, const FaceContext& context, const QRectF& rect,
                    const Shown& shown, bool stacked, bool named) {
    struct Next {
        bool full;
        QDateTime at;
    };
    std::array<Next, 2> next{{{true, MoonMath::next(MoonMath::Phase::full, shown.now)},
                              {false, MoonMath::next(MoonMath::Phase::newMoon, shown.now)}}};
    if (next[1].at < next[0].at) {
        std::swap(next[0], next[1]);
    }
    const QTimeZone zone = shown.place ? shown.place->zone : shown.now.timeZone();
    for (std::size_t i = 0; i < next.size(); ++i) {
        const auto n = static_cast<qreal>(i);
        const QRectF cell = stacked ? QRectF(rect.left(), rect.top() + n * rect.height() / 2,
                                             rect.width(), rect.height() / 2)
                                    : QRectF(rect.left() + n * rect.width() / 2, rect.top(),
                                             rect.width() / 2, rect.height());
        const qreal side = std::min(cell.height() * 0.62, 14.0);
        drawPhaseMark(painter, context, QPointF(cell.left() + side / 2, cell.center().y()),
                      side / 2, next[i].full);
        QString text =
            QLocale().toString(next[i].at.toTimeZone(zone).date(),
                               named ? QStringLiteral("ddd d MMM") : QStringLiteral("d MMM"));
        if (named) {
            text = (next[i].full ? L("moon.nextFull", QStringLiteral("Full moon %1"))
                                 : L("moon.nextNew", QStringLiteral("New moon %1")))
                       .arg(text);
        }
        FaceKit::drawFitted(painter, context,
                            QRectF(cell.left() + side * 1.5, cell.top(),
                                   cell.width() - side * 1.5 - 4, cell.height()),
                            text, QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, std::min(cell.height() * 0.7, 14.0));
    }
}

} // namespace

std::optional<TimeGrain> MoonFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

bool MoonFace::showsWeather(const WidgetSettings&) const {
    return true;
}

double MoonFace::brightLimbDirection(double positionAngle, bool southern) {
    const double north = std::atan2(std::cos(positionAngle), -std::sin(positionAngle));
    return southern ? std::remainder(north + std::numbers::pi, 2 * std::numbers::pi) : north;
}

void MoonFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown shown = shownFor(context);
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (context.size) {
    case WidgetSize::small: {
        const qreal r = std::min(w, h * 0.68) / 2 / 1.1;
        drawMoon(painter, context, QPointF(rect.center().x(), rect.top() + r * 1.1), r, shown.light,
                 shown.southern());
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.bottom() - h * 0.3, w, h * 0.17),
            shown.phaseName(), QFont::DemiBold, context.primary(), Qt::AlignCenter, h * 0.16);
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.bottom() - h * 0.13, w, h * 0.13), shown.lit(),
                            QFont::Normal, context.secondary(), Qt::AlignCenter, h * 0.13);
        return;
    }
    case WidgetSize::large: {
        const qreal r = h * 0.23;
        drawMoon(painter, context, QPointF(rect.center().x(), rect.top() + r * 1.1), r, shown.light,
                 shown.southern());
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.top() + h * 0.52, w, h * 0.12),
            shown.phaseName(), QFont::DemiBold, context.primary(), Qt::AlignCenter, h * 0.11);
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top() + h * 0.64, w, h * 0.09), shown.lit(),
                            QFont::Normal, context.secondary(), Qt::AlignCenter, h * 0.08);
        drawRiseSet(painter, context, QRectF(rect.left(), rect.top() + h * 0.77, w, h * 0.1), shown,
                    false);
        drawNextPhases(painter, context, QRectF(rect.left(), rect.bottom() - h * 0.1, w, h * 0.1),
                       shown, false, false);
        return;
    }
    case WidgetSize::wideTall: {
        const qreal r = std::min(h, w * 0.5) / 2 / 1.1;
        drawMoon(painter, context, QPointF(rect.left() + r * 1.1, rect.center().y()), r,
                 shown.light, shown.southern());
        const QRectF text(rect.left() + r * 2.2 + 14, rect.top(), w - r * 2.2 - 14, h);
        const qreal line = h / 7.5;
        FaceKit::drawElided(painter, context, QRectF(text.left(), text.top(), text.width(), line),
                            shown.place ? shown.place->name : QString(),
                            FaceKit::font(line * 0.62, QFont::DemiBold), context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + line, text.width(), line * 1.3),
                            shown.phaseName(), QFont::DemiBold, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 1.05);
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + line * 2.3, text.width(), line),
                            shown.lit(), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 0.75);
        drawRiseSet(painter, context,
                    QRectF(text.left(), text.top() + line * 3.4, text.width(), line * 1.9), shown,
                    true);
        drawNextPhases(painter, context,
                       QRectF(text.left(), text.bottom() - line * 2, text.width(), line * 2), shown,
                       true, true);
        return;
    }
    default:
        break;
    }
    // Wide and banner: the moon at the left, the phase beside it; the banner adds the next
    // phases in a column of their own.
    const qreal r = h * 0.42;
    drawMoon(painter, context, QPointF(rect.left() + r * 1.1, rect.center().y()), r, shown.light,
             shown.southern());
    const bool banner = context.size == WidgetSize::banner;
    QRectF text(rect.left() + r * 2.2 + 8, rect.top(), w - r * 2.2 - 8, h);
    if (banner) {
        const QRectF column(rect.right() - w * 0.26, rect.top() + h * 0.12, w * 0.26, h * 0.76);
        drawNextPhases(painter, context, column, shown, true, false);
        text.setRight(column.left() - 8);
    }
    // Without a place the phase stands alone, in the middle.
    const qreal top = text.top() + (shown.place ? 0 : h * 0.26);
    FaceKit::drawFitted(painter, context, QRectF(text.left(), top, text.width(), h * 0.28),
                        shown.phaseName(), QFont::DemiBold, context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter, h * 0.22);
    FaceKit::drawFitted(
        painter, context, QRectF(text.left(), top + h * 0.28, text.width(), h * 0.2), shown.lit(),
        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, h * 0.17);
    drawRiseSet(painter, context,
                QRectF(text.left(), text.top() + h * 0.52, text.width(), h * 0.48), shown, true);
}

} // namespace tw
