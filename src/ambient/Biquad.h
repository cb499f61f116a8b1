// A second-order filter (the audio cookbook's low-pass, high-pass and band-pass) for shaping
// noise into rain, surf and voices.
#pragma once

namespace tw {

class Biquad {
public:
    static Biquad lowPass(double frequency, double q, double sampleRate);
    static Biquad highPass(double frequency, double q, double sampleRate);
    static Biquad bandPass(double frequency, double q, double sampleRate);

    float process(float x) {
        const float y = m_b0 * x + m_z1;
        m_z1 = m_b1 * x - m_a1 * y + m_z2;
        m_z2 = m_b2 * x - m_a2 * y;
        return y;
    }

private:
    static Biquad normalised(double b0, double b1, double b2, double a0, double a1, double a2);

    float m_b0 = 1, m_b1 = 0, m_b2 = 0, m_a1 = 0, m_a2 = 0;
    float m_z1 = 0, m_z2 = 0;
};

} // namespace tw
