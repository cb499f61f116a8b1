#include "ambient/Noise.h"

namespace tw {

WhiteNoise::WhiteNoise(quint32 seed)
    : m_state(seed == 0 ? 0x9e3779b9u : seed) {}

float WhiteNoise::unit() {
    // xorshift32: fast, and the same sounds for the same seed on every machine.
    m_state ^= m_state << 13;
    m_state ^= m_state >> 17;
    m_state ^= m_state << 5;
    return static_cast<float>(m_state >> 8) * (1.0f / 16777216.0f);
}

float WhiteNoise::next() {
    return unit() * 2.0f - 1.0f;
}

float PinkNoise::next() {
    // Paul Kellet's filter bank: within a twentieth of a decibel of 3 dB an octave across the
    // audible band.
    const float w = m_white.next();
    m_b[0] = 0.99886f * m_b[0] + w * 0.0555179f;
    m_b[1] = 0.99332f * m_b[1] + w * 0.0750759f;
    m_b[2] = 0.96900f * m_b[2] + w * 0.1538520f;
    m_b[3] = 0.86650f * m_b[3] + w * 0.3104856f;
    m_b[4] = 0.55000f * m_b[4] + w * 0.5329522f;
    m_b[5] = -0.7616f * m_b[5] - w * 0.0168980f;
    const float pink = m_b[0] + m_b[1] + m_b[2] + m_b[3] + m_b[4] + m_b[5] + m_b[6] + w * 0.5362f;
    m_b[6] = w * 0.115926f;
    return pink * 0.11f;
}

float BrownNoise::next() {
    // A leaky integral: the leak keeps it from wandering off and sets the corner near 15 Hz.
    m_level = 0.998f * m_level + 0.05f * m_white.next();
    return m_level;
}

} // namespace tw
