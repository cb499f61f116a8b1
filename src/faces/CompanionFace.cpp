#include "faces/CompanionFace.h"

#include "ambient/CompanionBehaviour.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace tw {

namespace {

using Mood = CompanionMind::Mood;
constexpr double pi = std::numbers::pi;

struct Coat {
    QColor fur;
    QColor stripes;
    QColor belly;
    QColor eyes;
    QColor outline;
};

Coat coatOf(const QString& name) {
    if (name == QLatin1String("grey")) {
        return {QColor(0x93, 0x99, 0xa3), QColor(0x6a, 0x70, 0x7a), QColor(0xdc, 0xdf, 0xe4),
                QColor(0x8c, 0xc8, 0x5a), QColor(0x3b, 0x3f, 0x46)};
    }
    if (name == QLatin1String("black")) {
        return {QColor(0x2e, 0x2e, 0x34), QColor(0x22, 0x22, 0x27), QColor(0x45, 0x45, 0x4d),
                QColor(0xf2, 0xc1, 0x2e), QColor(0x0c, 0x0c, 0x0f)};
    }
    if (name == QLatin1String("cream")) {
        return {QColor(0xf1, 0xe3, 0xcc), QColor(0xd9, 0xbf, 0x98), QColor(0xfd, 0xf7, 0xec),
                QColor(0x5f, 0xa8, 0xd8), QColor(0x8a, 0x73, 0x55)};
    }
    return {QColor(0xec, 0x95, 0x4c), QColor(0xc4, 0x6b, 0x28), QColor(0xf8, 0xdc, 0xb8),
            QColor(0x9c, 0xc8, 0x4a), QColor(0x7a, 0x3e, 0x12)};
}

struct Shown {
    Mood mood = Mood::idle;
    QPointF gaze;
};

Shown shownOf(const FaceContext& context) {
    if (const auto* behaviour = context.behaviour<CompanionBehaviour>()) {
        if (const auto look = behaviour->look(context.instanceID)) {
            return {look->mood, look->gaze};
        }
    }
    // Pictures and previews: asleep if drawn in its night, else awake and glancing aside.
    if (CompanionMind::Hours::from(context.settings).isNight(context.now.time())) {
        return {Mood::sleeping, QPointF()};
    }
    return {Mood::watching, QPointF(0.45, -0.25)};
}

QPen outlinePen(const Coat& coat, qreal unit) {
    return QPen(coat.outline, std::max(0.8, unit * 0.012), Qt::SolidLine, Qt::RoundCap,
                Qt::RoundJoin);
}

// 0 open to 1 shut: a blink every few seconds, a little irregular.
double eyelid(double t) {
    const double period = 4.3;
    const double phase = std::fmod(t + 0.9 * std::sin(t * 0.21), period);
    return phase < 0.16 ? std::sin(phase / 0.16 * pi) : 0;
}

void drawTail(QPainter& p, QPointF base, qreal u, double swing, const Coat& coat) {
    QPainterPath tail;
    tail.moveTo(base);
    const QPointF tip = base + QPointF(u * (0.34 + 0.06 * swing), -u * (0.42 - 0.1 * swing));
    tail.cubicTo(base + QPointF(u * 0.3, u * 0.05), tip + QPointF(u * 0.12, u * 0.2), tip);
    QPen pen(coat.outline, u * 0.11 + std::max(0.8, u * 0.012) * 2, Qt::SolidLine, Qt::RoundCap);
    p.strokePath(tail, pen);
    pen.setColor(coat.fur);
    pen.setWidthF(u * 0.11);
    p.strokePath(tail, pen);
}

void drawEar(QPainter& p, QPointF tip, QPointF left, QPointF right, const Coat& coat, qreal u) {
    QPainterPath ear;
    ear.moveTo(left);
    ear.quadTo(tip + (left - tip) * 0.1 + QPointF(0, u * 0.01), tip);
    ear.quadTo(tip + (right - tip) * 0.1, right);
    ear.closeSubpath();
    p.setPen(outlinePen(coat, u));
    p.setBrush(coat.fur);
    p.drawPath(ear);
    const QPointF mid = (left + right) / 2;
    QPainterPath inner;
    inner.moveTo(mid + (left - mid) * 0.55);
    inner.lineTo(mid + (tip - mid) * 0.72);
    inner.lineTo(mid + (right - mid) * 0.55);
    inner.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xf4, 0xa6, 0xae));
    p.drawPath(inner);
}

// The head, centred at `c`, `u` the cat's unit (its height).
void drawHead(QPainter& p, QPointF c, qreal u, const Shown& shown, const Coat& coat, double t) {
    const qreal w = u * 0.5;
    const qreal h = u * 0.4;
    drawEar(p, c + QPointF(-w * 0.36, -h * 0.82), c + QPointF(-w * 0.5, -h * 0.18),
            c + QPointF(-w * 0.06, -h * 0.42), coat, u);
    drawEar(p, c + QPointF(w * 0.36, -h * 0.82), c + QPointF(w * 0.06, -h * 0.42),
            c + QPointF(w * 0.5, -h * 0.18), coat, u);
    QPainterPath head;
    head.addEllipse(c, w / 2, h / 2);
    p.setPen(outlinePen(coat, u));
    p.setBrush(coat.fur);
    p.drawPath(head);
    // Muzzle and forehead stripes.
    p.setPen(Qt::NoPen);
    p.setBrush(coat.belly);
    p.drawEllipse(c + QPointF(0, h * 0.2), w * 0.24, h * 0.2);
    p.setPen(QPen(coat.stripes, u * 0.018, Qt::SolidLine, Qt::RoundCap));
    for (const double dx : {-0.08, 0.0, 0.08}) {
        p.drawLine(c + QPointF(w * dx, -h * 0.46), c + QPointF(w * dx * 0.8, -h * 0.3));
    }

    const bool asleep = shown.mood == Mood::sleeping;
    const bool waking = shown.mood == Mood::waking;
    const bool happy = shown.mood == Mood::happy;
    const QPointF look(shown.gaze.x() * w * 0.07, shown.gaze.y() * h * 0.08);
    for (const double side : {-1.0, 1.0}) {
        const QPointF eye = c + QPointF(side * w * 0.2, -h * 0.02);
        const qreal ew = w * 0.1;
        const qreal eh = h * 0.14;
        if (asleep || happy) {
            // Shut: a downward curve asleep, a content upward one when happy.
            QPainterPath lid;
            lid.moveTo(eye + QPointF(-ew, 0));
            lid.quadTo(eye + QPointF(0, happy ? -eh : eh * 0.9), eye + QPointF(ew, 0));
            p.setPen(QPen(coat.outline, u * 0.02, Qt::SolidLine, Qt::RoundCap));
            p.setBrush(Qt::NoBrush);
            p.drawPath(lid);
            continue;
        }
        const double shut =
            waking ? 0.55 + 0.35 * std::sin(t * 2.2) * std::sin(t * 2.2) : eyelid(t);
        const qreal open = eh * (1 - shut);
        p.setPen(Qt::NoPen);
        p.setBrush(coat.eyes);
        p.drawEllipse(eye + look * 0.3, ew, std::max(open, eh * 0.08));
        if (open > eh * 0.2) {
            p.setBrush(QColor(0x14, 0x12, 0x10));
            const qreal pupil = shown.mood == Mood::watching ? ew * 0.45 : ew * 0.3;
            p.drawEllipse(eye + look, pupil, std::min(open * 0.85, eh * 0.85));
            p.setBrush(QColor(255, 255, 255, 220));
            p.drawEllipse(eye + look + QPointF(-ew * 0.25, -open * 0.35), ew * 0.18, ew * 0.18);
        }
    }
    // Nose and mouth.
    const QPointF nose = c + QPointF(0, h * 0.14);
    QPainterPath triangle;
    triangle.moveTo(nose + QPointF(-w * 0.04, -h * 0.03));
    triangle.lineTo(nose + QPointF(w * 0.04, -h * 0.03));
    triangle.lineTo(nose + QPointF(0, h * 0.03));
    triangle.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xe8, 0x7f, 0x8c));
    p.drawPath(triangle);
    p.setPen(QPen(coat.outline, u * 0.014, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    if (waking) {
        // A yawn opens and closes.
        const double yawn = std::max(0.0, std::sin(t * 1.4));
        p.setBrush(QColor(0x8a, 0x2e, 0x3a));
        p.drawEllipse(nose + QPointF(0, h * 0.12), w * 0.06, h * (0.03 + 0.09 * yawn));
    } else {
        QPainterPath mouth;
        mouth.moveTo(nose + QPointF(-w * 0.08, h * 0.07));
        mouth.quadTo(nose + QPointF(-w * 0.04, h * (happy ? 0.14 : 0.11)),
                     nose + QPointF(0, h * 0.04));
        mouth.quadTo(nose + QPointF(w * 0.04, h * (happy ? 0.14 : 0.11)),
                     nose + QPointF(w * 0.08, h * 0.07));
        p.drawPath(mouth);
    }
    if (happy) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xff, 0x7a, 0x90, 90));
        for (const double side : {-1.0, 1.0}) {
            p.drawEllipse(c + QPointF(side * w * 0.3, h * 0.16), w * 0.07, h * 0.05);
        }
    }
    // Whiskers.
    QColor whisker = coat.outline;
    whisker.setAlphaF(0.55f);
    p.setPen(QPen(whisker, std::max(0.6, u * 0.007)));
    for (const double side : {-1.0, 1.0}) {
        for (const double dy : {-0.03, 0.03}) {
            p.drawLine(nose + QPointF(side * w * 0.14, h * dy),
                       nose + QPointF(side * w * 0.46, h * (dy * 2.4 - 0.02)));
        }
    }
}

void drawHeart(QPainter& p, QPointF c, qreal s, const QColor& color) {
    QPainterPath heart;
    heart.moveTo(c + QPointF(0, s * 0.35));
    heart.cubicTo(c + QPointF(-s * 0.9, -s * 0.25), c + QPointF(-s * 0.35, -s * 0.85),
                  c + QPointF(0, -s * 0.3));
    heart.cubicTo(c + QPointF(s * 0.35, -s * 0.85), c + QPointF(s * 0.9, -s * 0.25),
                  c + QPointF(0, s * 0.35));
    p.fillPath(heart, color);
}

void drawSitting(QPainter& p, const QRectF& box, const Shown& shown, const Coat& coat, double t) {
    const qreal u = box.height();
    const QPointF floor(box.center().x(), box.bottom());
    const double breath = 1 + 0.018 * std::sin(t * 2.1);
    const double swing = shown.mood == Mood::happy ? std::sin(t * 5) : std::sin(t * 1.3) * 0.7;

    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 40));
    p.drawEllipse(floor + QPointF(0, -u * 0.02), u * 0.34, u * 0.045);

    drawTail(p, floor + QPointF(u * 0.2, -u * 0.08), u, swing, coat);

    const qreal bw = u * 0.5;
    const qreal bh = u * 0.5 * breath;
    QPainterPath body;
    body.moveTo(floor + QPointF(-bw / 2, -u * 0.03));
    body.cubicTo(floor + QPointF(-bw * 0.62, -bh * 0.7), floor + QPointF(-bw * 0.3, -bh * 1.1),
                 floor + QPointF(0, -bh * 1.08));
    body.cubicTo(floor + QPointF(bw * 0.3, -bh * 1.1), floor + QPointF(bw * 0.62, -bh * 0.7),
                 floor + QPointF(bw / 2, -u * 0.03));
    body.quadTo(floor + QPointF(0, u * 0.01), floor + QPointF(-bw / 2, -u * 0.03));
    p.setPen(outlinePen(coat, u));
    p.setBrush(coat.fur);
    p.drawPath(body);
    p.setPen(Qt::NoPen);
    p.setBrush(coat.belly);
    p.drawEllipse(floor + QPointF(0, -bh * 0.42), bw * 0.24, bh * 0.34);
    p.setPen(QPen(coat.stripes, u * 0.022, Qt::SolidLine, Qt::RoundCap));
    for (const double y : {0.55, 0.7, 0.85}) {
        p.drawLine(floor + QPointF(-bw * 0.46, -bh * y),
                   floor + QPointF(-bw * 0.34, -bh * (y - 0.04)));
        p.drawLine(floor + QPointF(bw * 0.46, -bh * y),
                   floor + QPointF(bw * 0.34, -bh * (y - 0.04)));
    }
    // Front paws.
    p.setPen(outlinePen(coat, u));
    p.setBrush(coat.belly);
    for (const double side : {-1.0, 1.0}) {
        p.drawEllipse(floor + QPointF(side * bw * 0.17, -u * 0.045), bw * 0.12, u * 0.045);
    }
    // The head turns a little with the eyes.
    const QPointF turn(shown.gaze.x() * u * 0.035, shown.gaze.y() * u * 0.025);
    const double tilt = shown.mood == Mood::happy ? 6 * std::sin(t * 3) : shown.gaze.x() * 5;
    const QPointF headAt = floor + QPointF(0, -bh * 1.02 - u * 0.16) + turn;
    p.save();
    p.translate(headAt);
    p.rotate(tilt);
    drawHead(p, QPointF(), u, shown, coat, t);
    p.restore();

    if (shown.mood == Mood::happy) {
        for (int k = 0; k < 2; ++k) {
            const double phase = std::fmod(t * 0.6 + k * 0.5, 1.0);
            QColor color(0xff, 0x5a, 0x78);
            color.setAlphaF(float(1 - phase));
            drawHeart(p, headAt + QPointF(u * (0.26 + 0.05 * k), -u * (0.12 + 0.22 * phase)),
                      u * 0.05, color);
        }
    }
}

void drawSleeping(QPainter& p, const QRectF& box, const Shown& shown, const Coat& coat, double t,
                  const QFont& letters) {
    const qreal u = box.height();
    const QPointF floor(box.center().x(), box.bottom());
    const double breath = 1 + 0.03 * std::sin(t * 1.3);

    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 40));
    p.drawEllipse(floor + QPointF(0, -u * 0.02), u * 0.42, u * 0.05);

    // Curled up: a loaf of a body with the tail round its front.
    const qreal bw = u * 0.78;
    const qreal bh = u * 0.36 * breath;
    QPainterPath body;
    body.addRoundedRect(QRectF(floor.x() - bw / 2, floor.y() - bh - u * 0.02, bw, bh), bh * 0.5,
                        bh * 0.5);
    p.setPen(outlinePen(coat, u));
    p.setBrush(coat.fur);
    p.drawPath(body);
    p.setPen(QPen(coat.stripes, u * 0.022, Qt::SolidLine, Qt::RoundCap));
    for (const double x : {0.05, 0.17, 0.29}) {
        p.drawLine(floor + QPointF(bw * x, -bh - u * 0.01),
                   floor + QPointF(bw * (x + 0.03), -bh * 0.72));
    }
    QPainterPath tail;
    tail.moveTo(floor + QPointF(bw * 0.46, -u * 0.08));
    tail.quadTo(floor + QPointF(bw * 0.2, u * 0.02), floor + QPointF(-bw * 0.3, -u * 0.05));
    QPen tailPen(coat.outline, u * 0.1 + 2 * std::max(0.8, u * 0.012), Qt::SolidLine, Qt::RoundCap);
    p.strokePath(tail, tailPen);
    tailPen.setColor(coat.fur);
    tailPen.setWidthF(u * 0.1);
    p.strokePath(tail, tailPen);

    const QPointF headAt = floor + QPointF(-bw * 0.26, -bh * 0.78 - u * 0.05);
    p.save();
    p.translate(headAt);
    p.rotate(-12);
    p.scale(0.92, 0.92);
    drawHead(p, QPointF(), u, shown, coat, t);
    p.restore();

    // Z's rising and fading.
    p.setFont(letters);
    for (int k = 0; k < 3; ++k) {
        const double phase = std::fmod(t * 0.25 + k / 3.0, 1.0);
        QColor color = coat.outline;
        color.setAlphaF(float(0.85 * std::sin(phase * pi)));
        p.setPen(color);
        const QPointF at = headAt + QPointF(u * (0.18 + 0.12 * phase), -u * (0.2 + 0.3 * phase));
        p.save();
        p.translate(at);
        p.scale(0.7 + 0.5 * phase, 0.7 + 0.5 * phase);
        p.drawText(QPointF(), QStringLiteral("z"));
        p.restore();
    }
}

// A ball of yarn beside the cat on the wider tiles, rolling a little when the cat is happy.
void drawYarn(QPainter& p, QPointF floor, qreal u, double roll) {
    const qreal r = u * 0.11;
    const QPointF c = floor + QPointF(0, -r);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 36));
    p.drawEllipse(floor + QPointF(0, -u * 0.01), r * 1.1, u * 0.025);
    QPainterPath thread;
    thread.moveTo(c + QPointF(r * 0.7, r * 0.6));
    thread.cubicTo(c + QPointF(r * 1.6, r * 1.1), c + QPointF(r * 2.2, r * 0.4),
                   c + QPointF(r * 3.0, r * 0.95));
    const QColor wool(0x5d, 0x86, 0xd6);
    p.strokePath(thread,
                 QPen(wool.darker(115), std::max(0.8, u * 0.012), Qt::SolidLine, Qt::RoundCap));
    p.setPen(QPen(wool.darker(140), std::max(0.8, u * 0.012)));
    p.setBrush(wool);
    p.drawEllipse(c, r, r);
    p.save();
    p.translate(c);
    p.rotate(roll);
    p.setPen(QPen(wool.lighter(135), std::max(0.7, u * 0.01), Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    for (const double k : {-0.5, 0.0, 0.5}) {
        p.drawArc(QRectF(-r * 0.9 + k * r * 0.4, -r * 0.95, r * 1.6, r * 1.9), 40 * 16, 110 * 16);
    }
    p.drawArc(QRectF(-r * 0.8, -r * 0.3, r * 1.7, r * 1.2), 200 * 16, 120 * 16);
    p.restore();
}

} // namespace

QRectF CompanionFace::catBox(const QRectF& rect) {
    // Square, standing on the tile's floor, with room above for hearts and sleepy letters; on a
    // tile wider than tall it sits right of the middle, its yarn to the left.
    const qreal side = std::min(rect.height() * 0.74, rect.width() * 0.74);
    const qreal middle =
        rect.width() > rect.height() * 1.5 ? rect.left() + rect.width() * 0.58 : rect.center().x();
    return {middle - side / 2, rect.bottom() - side - rect.height() * 0.08, side, side};
}

std::optional<TimeGrain> CompanionFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

double CompanionFace::sceneFps(const FaceContext& context) const {
    switch (shownOf(context).mood) {
    case Mood::sleeping:
        return 4;
    case Mood::idle:
        return 10;
    case Mood::watching:
    case Mood::happy:
    case Mood::waking:
        return 15;
    }
    return 10;
}

void CompanionFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown shown = shownOf(context);
    const Coat coat = coatOf(context.setting(QStringLiteral("coat")));
    const QRectF box = catBox(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (rect.width() > rect.height() * 1.5) {
        const double roll = shown.mood == Mood::happy ? 25 * std::sin(context.sceneTime * 4) : 0;
        drawYarn(painter, QPointF(box.left() - box.height() * 0.2, box.bottom()), box.height(),
                 roll);
    }
    if (shown.mood == Mood::sleeping) {
        drawSleeping(painter, box, shown, coat, context.sceneTime,
                     FaceKit::font(std::max(9.0, box.height() * 0.14), QFont::Bold));
    } else {
        drawSitting(painter, box, shown, coat, context.sceneTime);
    }
    painter.restore();
}

WidgetFace::Spot CompanionFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    Spot spot;
    if (catBox(rect).contains(point)) {
        spot.command = QStringLiteral("poke");
        spot.help = shownOf(context).mood == Mood::sleeping
                        ? L("companion.wake", QStringLiteral("Wake it up"))
                        : L("companion.pet", QStringLiteral("Give it a pat"));
    }
    return spot;
}

} // namespace tw
