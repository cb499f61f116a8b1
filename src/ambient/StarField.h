// The stars of the starfield tile: placed once from a seed for a size, drifting slowly to the
// left in three depths and twinkling, with now and then a shooting star. Pure: every position
// and brightness is a function of the scene time.
#pragma once

#include <QPointF>
#include <QSizeF>
#include <QtGlobal>

#include <optional>
#include <vector>

namespace tw {

struct Star {
    // Where it starts, in points of the field.
    QPointF origin;
    // 0 (faint) to 1 (the brightest).
    float magnitude = 0;
    // 0 the bluest to 1 the reddest.
    float warmth = 0;
    // The twinkle's phase (0 to 1) and cycles a second.
    float phase = 0;
    float rate = 0;
    // 0 far and slow, 2 near and quick.
    int depth = 0;
};

struct Meteor {
    QPointF from;
    QPointF to;
    // 0 at its start to 1 when gone.
    double progress = 0;
};

class StarField {
public:
    enum class Drift { still, slow, fast };

    // Stars for every 1,000 square points at density 1.
    static constexpr double starsPerArea = 1.6;
    // A shooting star at most this often, in seconds, and how long one lasts.
    static constexpr double meteorPeriod = 24;
    static constexpr double meteorSeconds = 0.9;

    // The moving stars of a field of `size` points; `density` 0.25 to 3.
    static std::vector<Star> stars(QSizeF size, double density, quint32 seed);
    // The faint fixed stars behind them, drawn once into the sky.
    static std::vector<Star> backdrop(QSizeF size, double density, quint32 seed);

    // Points a second at each depth.
    static double speed(Drift drift, int depth);
    // Where `star` is at `time` seconds, wrapped into the field.
    static QPointF position(const Star& star, QSizeF size, Drift drift, double time);
    // Its brightness then, 0 to 1: the magnitude, breathing a little.
    static float brightness(const Star& star, double time);
    // The shooting star crossing at `time`, if one is.
    static std::optional<Meteor> meteor(QSizeF size, double time, quint32 seed);
};

} // namespace tw
