#include "ambient/Biquad.h"

#include <cmath>
#include <numbers>

namespace tw {

namespace {

struct Angle {
    double cosine;
    double alpha;
};

Angle angleOf(double frequency, double q, double sampleRate) {
    const double w = 2 * std::numbers::pi * frequency / sampleRate;
    return {std::cos(w), std::sin(w) / (2 * q)};
}

} // namespace

Biquad Biquad::normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    Biquad f;
    f.m_b0 = static_cast<float>(b0 / a0);
    f.m_b1 = static_cast<float>(b1 / a0);
    f.m_b2 = static_cast<float>(b2 / a0);
    f.m_a1 = static_cast<float>(a1 / a0);
    f.m_a2 = static_cast<float>(a2 / a0);
    return f;
}

Biquad Biquad::lowPass(double frequency, double q, double sampleRate) {
    const auto [c, a] = angleOf(frequency, q, sampleRate);
    return normalised((1 - c) / 2, 1 - c, (1 - c) / 2, 1 + a, -2 * c, 1 - a);
}

Biquad Biquad::highPass(double frequency, double q, double sampleRate) {
    const auto [c, a] = angleOf(frequency, q, sampleRate);
    return normalised((1 + c) / 2, -(1 + c), (1 + c) / 2, 1 + a, -2 * c, 1 - a);
}

Biquad Biquad::bandPass(double frequency, double q, double sampleRate) {
    const auto [c, a] = angleOf(frequency, q, sampleRate);
    return normalised(a, 0, -a, 1 + a, -2 * c, 1 - a);
}

} // namespace tw
