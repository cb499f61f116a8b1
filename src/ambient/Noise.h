// Seeded noise, one sample at a time: white (flat), pink (3 dB less an octave) and brown (6 dB
// less an octave), the raw material of the generated soundscapes.
#pragma once

#include <QtGlobal>

namespace tw {

class WhiteNoise {
public:
    explicit WhiteNoise(quint32 seed);
    // Uniform in [-1, 1).
    float next();
    // Uniform in [0, 1), from the same sequence.
    float unit();

private:
    quint32 m_state;
};

class PinkNoise {
public:
    explicit PinkNoise(quint32 seed)
        : m_white(seed) {}
    float next();

private:
    WhiteNoise m_white;
    float m_b[7] = {};
};

class BrownNoise {
public:
    explicit BrownNoise(quint32 seed)
        : m_white(seed) {}
    float next();

private:
    WhiteNoise m_white;
    float m_level = 0;
};

} // namespace tw
