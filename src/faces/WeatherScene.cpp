#include "faces/WeatherScene.h"

#include "faces/PictureCache.h"
#include "faces/TileRenderer.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace tw::WeatherScene {

namespace {

constexpr double tau = 2 * std::numbers::pi;

// A fixed pseudo-random number in 0...1 for a particle and a purpose: the same every frame, so
// particles move without any state.
double unit(int index, int salt) {
    auto x = static_cast<std::uint32_t>(index) * 0x9E3779B1U +
             static_cast<std::uint32_t>(salt) * 0x85EBCA77U;
    x ^= x >> 15;
    x *= 0x2C1B3C6DU;
    x ^= x >> 12;
    x *= 0x297A2D39U;
    x ^= x >> 15;
    return (x & 0xFFFFFFU) / double(0x1000000);
}

double wrapped(double value, double range) {
    const double r = std::fmod(value, range);
    return r < 0 ? r + range : r;
}

struct Sky {
    QColor top;
    QColor bottom;
};

Sky skyOf(WxScene scene, bool night) {
    if (night) {
        switch (scene) {
        case WxScene::clear:
            return {QColor(0x0B, 0x16, 0x33), QColor(0x25, 0x3A, 0x6E)};
        case WxScene::clouds:
            return {QColor(0x18, 0x21, 0x36), QColor(0x3A, 0x46, 0x5E)};
        case WxScene::rain:
            return {QColor(0x12, 0x1A, 0x28), QColor(0x2D, 0x3A, 0x4C)};
        case WxScene::snow:
            return {QColor(0x1E, 0x2A, 0x40), QColor(0x4A, 0x5A, 0x73)};
        case WxScene::fog:
            return {QColor(0x24, 0x2A, 0x33), QColor(0x4A, 0x52, 0x5C)};
        case WxScene::thunder:
            return {QColor(0x0E, 0x12, 0x1C), QColor(0x2A, 0x2F, 0x42)};
        }
    }
    switch (scene) {
    case WxScene::clear:
        return {QColor(0x2F, 0x7F, 0xD6), QColor(0x7D, 0xBB, 0xEE)};
    case WxScene::clouds:
        return {QColor(0x4D, 0x78, 0xA6), QColor(0x93, 0xAE, 0xC8)};
    case WxScene::rain:
        return {QColor(0x3E, 0x52, 0x68), QColor(0x6E, 0x82, 0x96)};
    case WxScene::snow:
        return {QColor(0x5F, 0x78, 0x94), QColor(0xA2, 0xB4, 0xC6)};
    case WxScene::fog:
        return {QColor(0x6B, 0x77, 0x83), QColor(0x9E, 0xA7, 0xAF)};
    case WxScene::thunder:
        return {QColor(0x27, 0x30, 0x44), QColor(0x52, 0x5B, 0x70)};
    }
    return {Qt::darkBlue, Qt::blue};
}

bool showsSunOrMoon(WxScene scene) {
    return scene == WxScene::clear || scene == WxScene::clouds;
}

// Sun or moon sit high, right of the middle: clear of the hero on the left and of the symbol in
// the corner.
QPointF lightCentre(const QRectF& area) {
    if (area.width() < 120) {
        // A small tile has its city along the top: the light sits beside the temperature.
        return {area.right() - area.width() * 0.2, area.top() + area.height() * 0.5};
    }
    if (area.height() < 100) {
        // A wide tile has its hours along the top: the light sits between them and the figures.
        return {area.left() + area.width() * 0.43, area.top() + area.height() * 0.62};
    }
    return {area.left() + area.width() * 0.56, area.top() + std::min(area.height() * 0.2, 20.0)};
}

qreal lightRadius(const QRectF& area) {
    return std::clamp(std::min(area.width(), area.height()) * 0.07, 5.0, 12.0);
}

void paintSky(QPainter& p, const QRectF& area, const Frame& frame) {
    const Sky sky = skyOf(frame.scene, frame.night);
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, sky.top);
    gradient.setColorAt(1, sky.bottom);
    p.setPen(Qt::NoPen);
    p.setBrush(gradient);
    p.drawRoundedRect(area, cornerRadius(area), cornerRadius(area));

    if (frame.night && frame.scene != WxScene::fog) {
        // Stars, fewer behind clouds and rain.
        const int count = frame.scene == WxScene::clear ? 40 : 12;
        const double density = area.width() * area.height() / (180.0 * 180.0);
        QPainterPath stars;
        for (int i = 0; i < std::max(6, static_cast<int>(count * density)); ++i) {
            const QPointF at(area.left() + unit(i, 1) * area.width(),
                             area.top() + unit(i, 2) * area.height() * 0.7);
            const qreal r = 0.35 + unit(i, 3) * 0.6;
            stars.addEllipse(at, r, r);
        }
        p.setBrush(QColor(255, 255, 255, 170));
        p.drawPath(stars);
    }
    if (!showsSunOrMoon(frame.scene)) {
        return;
    }
    const QPointF centre = lightCentre(area);
    const qreal radius = lightRadius(area);
    QRadialGradient glow(centre, radius * 3.2);
    if (frame.night) {
        glow.setColorAt(0, QColor(220, 230, 255, 60));
        glow.setColorAt(1, QColor(220, 230, 255, 0));
        p.setBrush(glow);
        p.drawEllipse(centre, radius * 3.2, radius * 3.2);
        // A waxing crescent: the disc less a disc shifted towards the light.
        QPainterPath disc;
        disc.addEllipse(centre, radius, radius);
        QPainterPath shade;
        shade.addEllipse(centre + QPointF(-radius * 0.45, -radius * 0.2), radius * 0.92,
                         radius * 0.92);
        p.setBrush(QColor(0xF4, 0xF1, 0xE4));
        p.drawPath(disc.subtracted(shade));
        return;
    }
    glow.setColorAt(0, QColor(255, 244, 200, 150));
    glow.setColorAt(0.35, QColor(255, 230, 160, 60));
    glow.setColorAt(1, QColor(255, 220, 150, 0));
    p.setBrush(glow);
    p.drawEllipse(centre, radius * 3.2, radius * 3.2);
    QRadialGradient disc(centre, radius);
    disc.setColorAt(0, QColor(0xFF, 0xF6, 0xD8));
    disc.setColorAt(1, QColor(0xFF, 0xD8, 0x6A));
    p.setBrush(disc);
    p.drawEllipse(centre, radius, radius);
}

// One cloud, drawn once into its own picture: a few overlapping puffs over a flat base.
void paintCloud(QPainter& p, const QSizeF& size, const QColor& tone) {
    const qreal w = size.width();
    const qreal h = size.height();
    QPainterPath cloud;
    cloud.addRoundedRect(QRectF(w * 0.05, h * 0.55, w * 0.9, h * 0.4), h * 0.2, h * 0.2);
    cloud.addEllipse(QRectF(w * 0.12, h * 0.35, w * 0.34, h * 0.55));
    cloud.addEllipse(QRectF(w * 0.32, h * 0.08, w * 0.38, h * 0.75));
    cloud.addEllipse(QRectF(w * 0.58, h * 0.3, w * 0.3, h * 0.55));
    cloud.setFillRule(Qt::WindingFill);
    cloud = cloud.simplified();
    QLinearGradient shade(0, 0, 0, h);
    shade.setColorAt(0, tone);
    shade.setColorAt(1, tone.darker(118));
    p.setPen(Qt::NoPen);
    p.setBrush(shade);
    p.drawPath(cloud);
}

QColor cloudTone(const Frame& frame) {
    if (frame.night) {
        return frame.scene == WxScene::clouds ? QColor(0x5A, 0x66, 0x80, 235)
                                              : QColor(0x3C, 0x46, 0x5A, 240);
    }
    switch (frame.scene) {
    case WxScene::clear:
    case WxScene::clouds:
        return {255, 255, 255, 235};
    case WxScene::snow:
        return {0xDD, 0xE4, 0xEC, 240};
    case WxScene::thunder:
        return {0x4A, 0x52, 0x62, 245};
    default:
        return {0x8E, 0x99, 0xA6, 240};
    }
}

int cloudCount(WxScene scene) {
    switch (scene) {
    case WxScene::clear:
        return 1;
    case WxScene::clouds:
        return 3;
    case WxScene::fog:
        return 0;
    default:
        return 4;
    }
}

void paintClouds(QPainter& painter, const QRectF& area, const Frame& frame, PictureCache* pictures,
                 qreal dpr) {
    const int count = cloudCount(frame.scene);
    if (count == 0) {
        return;
    }
    QColor tone = cloudTone(frame);
    if (frame.level == Level::subtle) {
        // Figures cross the clouds' path: keep them a veil.
        tone.setAlpha(tone.alpha() * 2 / 3);
    }
    const qreal base = std::clamp(std::min(area.width(), area.height()) * 0.3, 24.0, 64.0);
    for (int i = 0; i < count; ++i) {
        const qreal scale = 0.7 + unit(i, 11) * 0.5;
        const QSizeF size(base * 1.6 * scale, base * 0.8 * scale);
        // Each cloud crosses the card and comes back from the left; slow, and slower when higher.
        const double speed = 1.2 + unit(i, 12) * 1.6;
        const double travel = area.width() + size.width();
        const qreal x =
            area.left() - size.width() + wrapped(unit(i, 13) * travel + frame.time * speed, travel);
        // High in the sky, each at a height of its own.
        const qreal y = area.top() - size.height() * 0.2 +
                        (static_cast<double>(i) / count * 0.7 + unit(i, 14) * 0.3) *
                            std::min(area.height() * 0.45, 70.0);
        const QRectF where(QPointF(x, y), size);
        const QString key = QStringLiteral("wx.cloud/%1/%2").arg(tone.rgba()).arg(i);
        if (pictures != nullptr) {
            pictures->draw(painter, where, key, dpr,
                           [&](QPainter& p) { paintCloud(p, size, tone); });
        } else {
            painter.save();
            painter.translate(where.topLeft());
            paintCloud(painter, size, tone);
            painter.restore();
        }
    }
}

int particleCount(const QRectF& area, int per180Square, Level level) {
    const double density = area.width() * area.height() / (180.0 * 180.0);
    const double share = level == Level::full ? 1.0 : 0.55;
    return std::max(8, static_cast<int>(per180Square * density * share));
}

void paintRain(QPainter& painter, const QRectF& area, const Frame& frame) {
    const int count = particleCount(area, 100, frame.level);
    const qreal length = std::clamp(area.height() * 0.07, 5.0, 12.0);
    const qreal slant = length * 0.25;
    QList<QLineF> drops;
    drops.reserve(count);
    for (int i = 0; i < count; ++i) {
        const double speed = area.height() * (0.9 + unit(i, 21) * 0.5);
        const double range = area.height() + length;
        const qreal y =
            area.top() - length + wrapped(unit(i, 22) * range + frame.time * speed, range);
        const qreal x = area.left() +
                        wrapped(unit(i, 23) * area.width() - (y - area.top()) * 0.25, area.width());
        drops.append(QLineF(x, y, x - slant, y + length));
    }
    // Hairlines of one device pixel take the rasteriser's fast path; a stroked path does not.
    QPen pen(QColor(205, 222, 255, frame.night ? 130 : 160), 1.0);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.drawLines(drops);
}

// A flake, soft at its edge, drawn once per size.
void paintFlake(QPainter& p, qreal r) {
    QRadialGradient soft(QPointF(r, r), r);
    soft.setColorAt(0, QColor(255, 255, 255, 230));
    soft.setColorAt(0.6, QColor(255, 255, 255, 170));
    soft.setColorAt(1, QColor(255, 255, 255, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(soft);
    p.drawEllipse(QPointF(r, r), r, r);
}

void paintSnow(QPainter& painter, const QRectF& area, const Frame& frame, PictureCache* pictures,
               qreal dpr) {
    const int count = particleCount(area, 40, frame.level);
    constexpr std::array sizes{1.2, 1.8, 2.5};
    for (int i = 0; i < count; ++i) {
        const qreal r = sizes.at(static_cast<size_t>(unit(i, 31) * 2.999));
        // Larger flakes are nearer: they fall faster.
        const double speed = area.height() * (0.06 + r * 0.05);
        const double range = area.height() + 2 * r;
        const qreal y = area.top() - r + wrapped(unit(i, 32) * range + frame.time * speed, range);
        const qreal sway = std::sin(frame.time * (0.6 + unit(i, 33)) + unit(i, 34) * tau) * 4;
        const qreal x = area.left() + wrapped(unit(i, 35) * area.width() + sway, area.width());
        const QRectF where(x - r, y - r, 2 * r, 2 * r);
        if (pictures != nullptr) {
            pictures->draw(painter, where, QStringLiteral("wx.flake/%1").arg(r), dpr,
                           [r](QPainter& p) { paintFlake(p, r); });
        } else {
            painter.save();
            painter.translate(where.topLeft());
            paintFlake(painter, r);
            painter.restore();
        }
    }
}

void paintFog(QPainter& painter, const QRectF& area, const Frame& frame, PictureCache* pictures,
              qreal dpr) {
    const QColor tone = frame.night ? QColor(0x9A, 0xA3, 0xAE) : QColor(0xE8, 0xEC, 0xEF);
    constexpr int bands = 4;
    for (int i = 0; i < bands; ++i) {
        const QSizeF size(area.width() * 1.4, area.height() * 0.3);
        // Each band sways on a long period of its own, so the fog never repeats quickly.
        const double period = 30.0 + unit(i, 41) * 30.0;
        const qreal sway = std::sin(frame.time * tau / period + i) * area.width() * 0.12;
        const qreal x = area.left() - area.width() * 0.2 + sway;
        const qreal y = area.top() + area.height() * (0.18 + 0.2 * i) - size.height() / 2;
        const QRectF where(QPointF(x, y), size);
        auto band = [size, tone](QPainter& p) {
            QLinearGradient across(0, 0, 0, size.height());
            QColor clear = tone;
            clear.setAlpha(0);
            QColor thick = tone;
            thick.setAlpha(80);
            across.setColorAt(0, clear);
            across.setColorAt(0.5, thick);
            across.setColorAt(1, clear);
            p.setPen(Qt::NoPen);
            p.setBrush(across);
            p.drawRoundedRect(QRectF(QPointF(0, 0), size), size.height() / 2, size.height() / 2);
        };
        if (pictures != nullptr) {
            pictures->draw(painter, where, QStringLiteral("wx.fog/%1").arg(tone.rgba()), dpr, band);
        } else {
            painter.save();
            painter.translate(where.topLeft());
            band(painter);
            painter.restore();
        }
    }
}

// Lightning strikes once in each period, at a moment of its own; a flash is two quick pulses.
constexpr double lightningPeriod = 8.0;
constexpr double flashLength = 0.45;

double flashStrength(double time, int* strike) {
    const auto n = static_cast<int>(std::floor(time / lightningPeriod));
    const double at = n * lightningPeriod + 1.0 + unit(n, 51) * (lightningPeriod - 2.0);
    const double u = time - at;
    *strike = n;
    if (u < 0 || u > flashLength) {
        return 0;
    }
    const double first = std::max(0.0, 1 - u / 0.12);
    const double second = u > 0.18 ? std::max(0.0, 1 - (u - 0.18) / 0.27) * 0.7 : 0.0;
    return std::max(first, second);
}

void paintLightning(QPainter& painter, const QRectF& area, const Frame& frame) {
    int strike = 0;
    const double strength = flashStrength(frame.time, &strike);
    if (strength <= 0) {
        return;
    }
    const double calm = frame.level == Level::full ? 1.0 : 0.6;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(230, 235, 255, static_cast<int>(70 * strength * calm)));
    painter.drawRoundedRect(area, cornerRadius(area), cornerRadius(area));
    QPainterPath bolt;
    qreal x = area.left() + area.width() * (0.45 + unit(strike, 52) * 0.4);
    qreal y = area.top();
    bolt.moveTo(x, y);
    const qreal step = area.height() * 0.11;
    for (int i = 0; i < 5; ++i) {
        x += (unit(strike * 7 + i, 53) - 0.5) * step * 1.4;
        y += step;
        bolt.lineTo(x, y);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 240, static_cast<int>(230 * strength * calm)), 1.4,
                        Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(bolt);
}

} // namespace

Level levelOf(const QString& setting) {
    return setting == QLatin1String("full") ? Level::full : Level::subtle;
}

double fps(WxScene scene, Level level) {
    switch (scene) {
    case WxScene::rain:
    case WxScene::thunder:
        return level == Level::full ? 30 : 20;
    case WxScene::snow:
        return level == Level::full ? 24 : 15;
    case WxScene::clear:
    case WxScene::clouds:
    case WxScene::fog:
        break;
    }
    // Clouds drift a point or two a second: a few frames say it all.
    return level == Level::full ? 12 : 8;
}

qreal cornerRadius(const QRectF& rect) {
    const qreal inner = TileRenderer::cornerRadius - TileRenderer::contentPadding;
    return std::min(std::max(inner, 4.0), std::min(rect.width(), rect.height()) / 2);
}

bool wantsLightText(const Frame& frame) {
    return frame.level == Level::full;
}

void paint(QPainter& painter, const QRectF& rect, const Frame& frame, PictureCache* pictures,
           qreal devicePixelRatio) {
    if (rect.width() < 1 || rect.height() < 1) {
        return;
    }
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (frame.level == Level::subtle) {
        painter.setOpacity(painter.opacity() * 0.5);
    }
    const QString skyKey =
        QStringLiteral("wx.sky/%1/%2").arg(rawValue(frame.scene)).arg(frame.night);
    if (pictures != nullptr) {
        pictures->draw(painter, rect, skyKey, dpr, [&](QPainter& p) {
            paintSky(p, QRectF(QPointF(0, 0), rect.size()), frame);
        });
    } else {
        paintSky(painter, rect, frame);
    }
    painter.setClipRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), Qt::IntersectClip);
    if (frame.scene == WxScene::fog) {
        paintFog(painter, rect, frame, pictures, dpr);
    }
    paintClouds(painter, rect, frame, pictures, dpr);
    switch (frame.scene) {
    case WxScene::rain:
        paintRain(painter, rect, frame);
        break;
    case WxScene::thunder:
        paintRain(painter, rect, frame);
        paintLightning(painter, rect, frame);
        break;
    case WxScene::snow:
        paintSnow(painter, rect, frame, pictures, dpr);
        break;
    default:
        break;
    }
    painter.restore();
}

} // namespace tw::WeatherScene
