#include "faces/StarfieldFace.h"

#include "ambient/StarField.h"
#include "faces/FaceContext.h"
#include "faces/PictureCache.h"
#include "faces/TileRenderer.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>
#include <cmath>
#include <tuple>

namespace tw {

namespace {

constexpr int levels = 8;

struct Sky {
    QColor top;
    QColor bottom;
    QColor haze;
};

Sky skyOf(const QString& name) {
    if (name == QLatin1String("twilight")) {
        return {QColor(12, 14, 48), QColor(28, 58, 92), QColor(70, 120, 150, 60)};
    }
    if (name == QLatin1String("violet")) {
        return {QColor(14, 6, 30), QColor(44, 18, 66), QColor(150, 70, 170, 55)};
    }
    return {QColor(4, 6, 16), QColor(14, 20, 44), QColor(80, 90, 160, 40)};
}

double densityOf(const QString& value) {
    if (value == QLatin1String("few")) {
        return 0.5;
    }
    if (value == QLatin1String("many")) {
        return 2;
    }
    return 1;
}

StarField::Drift driftOf(const QString& value) {
    if (value == QLatin1String("still")) {
        return StarField::Drift::still;
    }
    if (value == QLatin1String("fast")) {
        return StarField::Drift::fast;
    }
    return StarField::Drift::slow;
}

QColor starColor(float warmth, int alpha) {
    // Blue-white, white and the warm white of cooler stars.
    if (warmth < 0.25f) {
        return QColor(188, 206, 255, alpha);
    }
    if (warmth > 0.85f) {
        return QColor(255, 222, 180, alpha);
    }
    return QColor(246, 248, 255, alpha);
}

// A tile keeps its sky across restarts.
quint32 seedOf(const FaceContext& context) {
    return context.instanceID.isNull() ? 1u : quint32(qHash(context.instanceID, 0));
}

qreal skyRadius(const FaceContext& context) {
    return std::max(6.0, TileRenderer::cornerRadius - TileRenderer::contentPadding) /
           std::max(0.5, context.scale);
}

void paintSky(QPainter& p, const QSizeF& size, const Sky& sky, double density, quint32 seed,
              qreal radius) {
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(QPointF(), size), radius, radius);
    QLinearGradient fill(0, 0, 0, size.height());
    fill.setColorAt(0, sky.top);
    fill.setColorAt(1, sky.bottom);
    p.fillPath(shape, fill);
    p.setClipPath(shape);
    // A soft band of haze, the way the Milky Way crosses a dark sky.
    QRadialGradient haze(QPointF(size.width() * 0.62, size.height() * 0.38),
                         std::max(size.width(), size.height()) * 0.55);
    haze.setColorAt(0, sky.haze);
    haze.setColorAt(1, Qt::transparent);
    p.save();
    p.translate(size.width() * 0.62, size.height() * 0.38);
    p.rotate(-24);
    p.scale(1.0, 0.32);
    p.translate(-size.width() * 0.62, -size.height() * 0.38);
    // Wide enough that, squeezed and turned, its edges stay outside the sky.
    const qreal reach = 2 * std::max(size.width(), size.height());
    const QPointF middle(size.width() * 0.62, size.height() * 0.38);
    p.fillRect(QRectF(middle - QPointF(reach, reach / 0.32), QSizeF(2 * reach, 2 * reach / 0.32)),
               haze);
    p.restore();
    p.setPen(Qt::NoPen);
    for (const Star& star : StarField::backdrop(size, density, seed)) {
        const qreal r = 0.35 + 0.5 * double(star.magnitude);
        p.setBrush(starColor(star.warmth, int(255 * star.magnitude)));
        p.drawEllipse(star.origin, r, r);
    }
}

void paintGlow(QPainter& p, const QSizeF& size) {
    QRadialGradient glow(QPointF(size.width() / 2, size.height() / 2), size.width() / 2);
    glow.setColorAt(0, QColor(255, 255, 255, 150));
    glow.setColorAt(0.25, QColor(210, 225, 255, 60));
    glow.setColorAt(1, Qt::transparent);
    p.fillRect(QRectF(QPointF(), size), glow);
}

} // namespace

std::optional<TimeGrain> StarfieldFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

double StarfieldFace::sceneFps(const FaceContext& context) const {
    switch (driftOf(context.setting(QStringLiteral("drift")))) {
    case StarField::Drift::still:
        return 8;
    case StarField::Drift::slow:
        return 15;
    case StarField::Drift::fast:
        return 24;
    }
    return 15;
}

void StarfieldFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Sky sky = skyOf(context.setting(QStringLiteral("sky")));
    const double density = densityOf(context.setting(QStringLiteral("density")));
    const StarField::Drift drift = driftOf(context.setting(QStringLiteral("drift")));
    const quint32 seed = seedOf(context);
    const QSizeF size = rect.size();
    const qreal radius = skyRadius(context);
    const auto drawSky = [&](QPainter& p) { paintSky(p, size, sky, density, seed, radius); };
    if (context.pictures != nullptr) {
        context.pictures->draw(painter, rect,
                               QStringLiteral("starfield/%1x%2/%3/%4/%5")
                                   .arg(size.width())
                                   .arg(size.height())
                                   .arg(context.setting(QStringLiteral("sky")))
                                   .arg(density)
                                   .arg(seed),
                               context.devicePixelRatio, drawSky);
    } else {
        painter.save();
        painter.translate(rect.topLeft());
        drawSky(painter);
        painter.restore();
    }

    painter.save();
    QPainterPath clip;
    clip.addRoundedRect(rect, radius, radius);
    painter.setClipPath(clip, Qt::IntersectClip);
    painter.translate(rect.topLeft());
    painter.setRenderHint(QPainter::Antialiasing);
    const double t = context.sceneTime;

    // Batched by size, colour and brightness: a few dozen calls draw every star.
    std::array<std::array<std::array<QList<QPointF>, levels>, 3>, 2> batches;
    QList<std::tuple<QPointF, float, bool>> glows;
    for (const Star& star : StarField::stars(size, density, seed)) {
        const QPointF at = StarField::position(star, size, drift, t);
        const float b = StarField::brightness(star, t);
        const int level = std::clamp(int(b * levels), 0, levels - 1);
        const int tint = star.warmth < 0.25f ? 0 : (star.warmth > 0.85f ? 2 : 1);
        batches[star.magnitude > 0.55f ? 1 : 0][std::size_t(tint)][std::size_t(level)].append(at);
        if (star.magnitude > 0.8f) {
            glows.append({at, b, star.magnitude > 0.93f});
        }
    }
    for (std::size_t big = 0; big < 2; ++big) {
        for (std::size_t tint = 0; tint < 3; ++tint) {
            for (std::size_t level = 0; level < std::size_t(levels); ++level) {
                const QList<QPointF>& points = batches[big][tint][level];
                if (points.isEmpty()) {
                    continue;
                }
                const float warmth = tint == 0 ? 0.0f : (tint == 2 ? 1.0f : 0.5f);
                QPen pen(starColor(warmth, int(255.0 * (double(level) + 0.5) / levels)));
                pen.setWidthF(big == 1 ? 1.9 : 1.1);
                pen.setCapStyle(Qt::RoundCap);
                painter.setPen(pen);
                painter.drawPoints(points.constData(), int(points.size()));
            }
        }
    }
    for (const auto& [at, b, large] : glows) {
        // The few brightest get a wider halo, so the sky has a handful of landmarks.
        const qreal side = large ? 18 : 10;
        const QSizeF glowSize(side, side);
        painter.setOpacity(0.8 * double(b));
        const QRectF box(at - QPointF(side / 2, side / 2), glowSize);
        if (context.pictures != nullptr) {
            context.pictures->draw(painter, box, QStringLiteral("starfield/glow/%1").arg(side),
                                   context.devicePixelRatio,
                                   [&](QPainter& p) { paintGlow(p, glowSize); });
        } else {
            painter.save();
            painter.translate(box.topLeft());
            paintGlow(painter, glowSize);
            painter.restore();
        }
    }
    painter.setOpacity(1);

    if (context.setting(QStringLiteral("meteors"), QStringLiteral("true")) !=
        QLatin1String("false")) {
        if (const auto meteor = StarField::meteor(size, t, seed)) {
            const double eased = 1 - std::pow(1 - meteor->progress, 2);
            const QPointF head = meteor->from + (meteor->to - meteor->from) * eased;
            const QPointF tail =
                head - (meteor->to - meteor->from) * 0.35 * std::min(1.0, meteor->progress * 3);
            const double fade = meteor->progress < 0.7 ? 1.0 : (1 - meteor->progress) / 0.3;
            QLinearGradient trail(tail, head);
            trail.setColorAt(0, QColor(255, 255, 255, 0));
            trail.setColorAt(1, QColor(255, 255, 255, int(230 * fade)));
            QPen pen(QBrush(trail), 1.4);
            pen.setCapStyle(Qt::RoundCap);
            painter.setPen(pen);
            painter.drawLine(tail, head);
        }
    }
    painter.restore();
}

} // namespace tw
