#include "ambient/StarField.h"

#include "ambient/Noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

std::vector<Star> scatter(QSizeF size, double perArea, quint32 seed, float brightest) {
    const double area = std::max(0.0, size.width()) * std::max(0.0, size.height());
    const auto count = std::size_t(std::clamp(area / 1000 * perArea, 0.0, 4000.0));
    WhiteNoise noise(seed);
    std::vector<Star> stars;
    stars.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Star star;
        star.origin =
            QPointF(double(noise.unit()) * size.width(), double(noise.unit()) * size.height());
        // Many faint stars and few bright ones, as on a real night.
        const float u = noise.unit();
        star.magnitude = brightest * (0.18f + 0.82f * u * u * u);
        star.warmth = noise.unit();
        star.phase = noise.unit();
        star.rate = 0.15f + 0.5f * noise.unit();
        const float d = noise.unit();
        star.depth = d < 0.6f ? 0 : (d < 0.9f ? 1 : 2);
        stars.push_back(star);
    }
    return stars;
}

quint32 mix(quint32 a, quint32 b) {
    quint32 h = a * 0x9e3779b1u ^ (b + 0x7f4a7c15u + (a << 6) + (a >> 2));
    h ^= h >> 16;
    h *= 0x85ebca6bu;
    h ^= h >> 13;
    return h == 0 ? 1 : h;
}

} // namespace

std::vector<Star> StarField::stars(QSizeF size, double density, quint32 seed) {
    return scatter(size, starsPerArea * std::clamp(density, 0.25, 3.0), seed, 1.0f);
}

std::vector<Star> StarField::backdrop(QSizeF size, double density, quint32 seed) {
    return scatter(size, 3 * starsPerArea * std::clamp(density, 0.25, 3.0), mix(seed, 77), 0.45f);
}

double StarField::speed(Drift drift, int depth) {
    const double base = drift == Drift::still ? 0 : (drift == Drift::slow ? 1.2 : 4.0);
    return base * (1 + depth * 1.5);
}

QPointF StarField::position(const Star& star, QSizeF size, Drift drift, double time) {
    if (size.width() <= 0) {
        return star.origin;
    }
    const double x = std::fmod(star.origin.x() - speed(drift, star.depth) * time, size.width());
    return {x < 0 ? x + size.width() : x, star.origin.y()};
}

float StarField::brightness(const Star& star, double time) {
    const double wave =
        std::sin(2 * std::numbers::pi * (double(star.phase) + double(star.rate) * time));
    // Faint stars twinkle more than bright ones, which mostly hold steady.
    const double depth = 0.35 * (1 - double(star.magnitude) * 0.6);
    return float(std::clamp(double(star.magnitude) * (1 - depth * (0.5 + 0.5 * wave)), 0.0, 1.0));
}

std::optional<Meteor> StarField::meteor(QSizeF size, double time, quint32 seed) {
    if (time < 0 || size.isEmpty()) {
        return std::nullopt;
    }
    const auto slot = qint64(std::floor(time / meteorPeriod));
    WhiteNoise noise(mix(seed, quint32(slot)));
    // About two periods in three bring one, at a random moment within the period.
    if (noise.unit() > 0.66f) {
        return std::nullopt;
    }
    const double start =
        double(slot) * meteorPeriod + double(noise.unit()) * (meteorPeriod - meteorSeconds);
    const double progress = (time - start) / meteorSeconds;
    if (progress < 0 || progress >= 1) {
        return std::nullopt;
    }
    const QPointF from(size.width() * (0.2 + 0.7 * double(noise.unit())),
                       size.height() * 0.5 * double(noise.unit()));
    const double length =
        std::hypot(size.width(), size.height()) * (0.25 + 0.2 * double(noise.unit()));
    const double angle = std::numbers::pi * (0.72 + 0.12 * double(noise.unit()));
    const QPointF to = from + QPointF(std::cos(angle) * length, std::sin(angle) * length);
    return Meteor{.from = from, .to = to, .progress = progress};
}

} // namespace tw
