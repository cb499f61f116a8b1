#include "ambient/Soundscape.h"

#include "ambient/Biquad.h"
#include "ambient/Noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

constexpr double tau = 2 * std::numbers::pi;

// A struck resonance, excited by a short burst of noise: a raindrop's tick or a cup's ring.
struct Ring {
    float c1 = 0, c2 = 0, y1 = 0, y2 = 0, strength = 0;
    int excite = 0;
    bool live() const { return excite > 0 || std::abs(y1) + std::abs(y2) > 1e-5f; }
};

class Rings {
public:
    explicit Rings(quint32 seed)
        : m_noise(seed) {}

    void strike(double frequency, double decaySeconds, float strength, double rate,
                int exciteSamples) {
        Ring* slot =
            std::min_element(m_rings.begin(), m_rings.end(), [](const Ring& a, const Ring& b) {
                return std::abs(a.y1) + a.strength < std::abs(b.y1) + b.strength;
            });
        const double r = std::exp(-1.0 / (decaySeconds * rate));
        *slot = Ring{.c1 = static_cast<float>(2 * r * std::cos(tau * frequency / rate)),
                     .c2 = static_cast<float>(-r * r),
                     .y1 = 0,
                     .y2 = 0,
                     .strength = strength,
                     .excite = exciteSamples};
    }

    float next() {
        float sum = 0;
        for (Ring& ring : m_rings) {
            if (!ring.live()) {
                continue;
            }
            float in = 0;
            if (ring.excite > 0) {
                in = m_noise.next() * ring.strength;
                --ring.excite;
            } else {
                ring.strength *= 0.999f;
            }
            const float y = ring.c1 * ring.y1 + ring.c2 * ring.y2 + in;
            ring.y2 = ring.y1;
            ring.y1 = y;
            sum += y;
        }
        return sum;
    }

private:
    std::array<Ring, 24> m_rings{};
    WhiteNoise m_noise;
};

// Events at `perSecond` on average, at random: true on the samples where one happens.
class Events {
public:
    Events(quint32 seed, double rate)
        : m_noise(seed)
        , m_rate(rate) {}
    bool next(double perSecond) { return double(m_noise.unit()) < perSecond / m_rate; }
    float unit() { return m_noise.unit(); }

private:
    WhiteNoise m_noise;
    double m_rate;
};

void rain(std::vector<float>& out, const LoopRecipe& recipe, qsizetype loop) {
    const double rate = recipe.sampleRate;
    PinkNoise hissSource(recipe.seed);
    BrownNoise rumbleSource(recipe.seed * 7 + 3);
    Biquad hissLow = Biquad::highPass(500, 0.7, rate);
    Biquad hissHigh = Biquad::lowPass(std::min(9000.0, rate * 0.45), 0.7, rate);
    Biquad rumbleFilter = Biquad::lowPass(250, 0.7, rate);
    Rings drops(recipe.seed * 13 + 5);
    Events when(recipe.seed * 31 + 11, rate);
    for (qsizetype i = 0; i < qsizetype(out.size()); ++i) {
        // The shower swells and eases twice a loop, so the loop does not sound like one.
        const double t = double(i % loop) / double(loop);
        const double intensity = 1.0 + 0.25 * std::sin(tau * 2 * t);
        if (when.next(70 * intensity)) {
            const float u = when.unit();
            const double frequency = 1800 * std::pow(3.0, double(when.unit()));
            const float strength = 0.02f + 0.5f * u * u * u * u;
            drops.strike(std::min(frequency, rate * 0.4), 0.004 + 0.01 * double(when.unit()),
                         strength, rate, 1 + int(rate * 0.0015));
        }
        const float hiss = hissHigh.process(hissLow.process(hissSource.next()));
        out[i] = float(0.55 * intensity) * hiss +
                 0.35f * rumbleFilter.process(rumbleSource.next()) + 0.12f * drops.next();
    }
}

// The surf's strength at `phase` (0 to 1) of one wave: a slow swell, a break, a long wash.
double swell(double phase) {
    const double breakAt = 0.42;
    if (phase < breakAt) {
        const double x = phase / breakAt;
        return 0.12 + 0.5 * x * x * (3 - 2 * x);
    }
    const double after = phase - breakAt;
    return 0.12 + (0.5 + 0.4 * std::exp(-after * 40)) * std::exp(-after * 3.2);
}

void waves(std::vector<float>& out, const LoopRecipe& recipe, qsizetype loop) {
    const double rate = recipe.sampleRate;
    BrownNoise deep(recipe.seed);
    PinkNoise foam(recipe.seed * 5 + 1);
    Events pick(recipe.seed * 17 + 9, rate);
    // Waves of different lengths that together fill the loop exactly, so the sea has no seam.
    const auto count = std::max<qsizetype>(1, qsizetype(std::lround(double(loop) / rate / 8.5)));
    std::vector<double> lengths;
    double total = 0;
    for (qsizetype k = 0; k < count; ++k) {
        lengths.push_back(6.5 + 4 * double(pick.unit()));
        total += lengths.back();
    }
    const double stretch = (double(loop) / rate) / total;
    std::vector<double> starts;
    double at = 0;
    for (double& length : lengths) {
        length *= stretch;
        starts.push_back(at);
        at += length;
    }
    float low = 0;
    float coefficient = 0;
    std::size_t wave = 0;
    for (qsizetype i = 0; i < qsizetype(out.size()); ++i) {
        const double t = double(i % loop) / rate;
        if (i % loop == 0) {
            wave = 0;
        }
        while (wave + 1 < starts.size() && t >= starts[wave + 1]) {
            ++wave;
        }
        const double strength = swell((t - starts[wave]) / lengths[wave]);
        if (i % 64 == 0) {
            // The break opens the sound up to the hiss of foam; the wash closes it again.
            const double cutoff = 250 + 4200 * strength * strength;
            coefficient = float(1 - std::exp(-tau * cutoff / rate));
        }
        const float source = 0.65f * deep.next() + 0.6f * foam.next();
        low += coefficient * (source - low);
        out[i] = float(strength) * low + 0.05f * source;
    }
}

// One voice of the room's murmur: noise in a voice's band, in syllables, in phrases.
struct Voice {
    Biquad band;
    PinkNoise source;
    double syllableHz;
    double phase;
    float gate = 0;
    float gateTarget = 0;
    qsizetype phraseLeft = 0;
};

void cafe(std::vector<float>& out, const LoopRecipe& recipe) {
    const double rate = recipe.sampleRate;
    Events pick(recipe.seed * 19 + 7, rate);
    std::vector<Voice> voices;
    for (int v = 0; v < 7; ++v) {
        voices.push_back(Voice{.band = Biquad::bandPass(260 + 520 * double(pick.unit()), 1.4, rate),
                               .source = PinkNoise(recipe.seed * 101 + quint32(v)),
                               .syllableHz = 3.2 + 2.2 * double(pick.unit()),
                               .phase = double(pick.unit()),
                               .gate = 0,
                               .gateTarget = 0,
                               .phraseLeft = 0});
    }
    BrownNoise roomSource(recipe.seed * 3 + 2);
    Biquad room = Biquad::lowPass(380, 0.7, rate);
    Rings cups(recipe.seed * 23 + 1);
    const float gateStep = float(1.0 / (0.08 * rate));
    for (qsizetype i = 0; i < qsizetype(out.size()); ++i) {
        float murmur = 0;
        for (Voice& voice : voices) {
            if (--voice.phraseLeft <= 0) {
                const bool talking = voice.gateTarget < 0.5f;
                voice.gateTarget = talking ? 1.0f : 0.0f;
                voice.phraseLeft = qsizetype(
                    (talking ? 1.5 + 4.0 * double(pick.unit()) : 0.8 + 2.5 * double(pick.unit())) *
                    rate);
            }
            voice.gate += std::clamp(voice.gateTarget - voice.gate, -gateStep, gateStep);
            voice.phase += voice.syllableHz / rate;
            const double s = 0.5 + 0.5 * std::sin(tau * voice.phase);
            murmur += voice.band.process(voice.source.next()) * float(s * s) * voice.gate;
        }
        if (pick.next(0.35)) {
            const double f0 = 1900 + 1400 * double(pick.unit());
            const float strength = 0.02f + 0.05f * pick.unit();
            const double decay = 0.08 + 0.2 * double(pick.unit());
            for (const double ratio : {1.0, 2.76, 5.4}) {
                if (f0 * ratio < rate * 0.45) {
                    cups.strike(f0 * ratio, decay / ratio, strength / float(ratio), rate, 2);
                }
            }
        }
        out[i] = 1.1f * murmur + 0.5f * room.process(roomSource.next()) + 0.25f * cups.next();
    }
}

void normalise(std::vector<float>& samples) {
    double sumSquares = 0;
    float top = 0;
    for (const float s : samples) {
        sumSquares += double(s) * double(s);
        top = std::max(top, std::abs(s));
    }
    if (samples.empty() || top <= 0) {
        return;
    }
    const double rms = std::sqrt(sumSquares / double(samples.size()));
    const float gain = std::min(float(double(Soundscape::level) / rms), Soundscape::peak / top);
    for (float& s : samples) {
        s *= gain;
    }
}

} // namespace

namespace Soundscape {

std::vector<float> render(AmbientSound sound, const LoopRecipe& recipe) {
    const int rate = std::clamp(recipe.sampleRate, 8000, 192000);
    const LoopRecipe sane{
        .sampleRate = rate, .seconds = std::clamp(recipe.seconds, 1.0, 120.0), .seed = recipe.seed};
    const auto loop = qsizetype(std::llround(sane.seconds * rate));
    // Half a second of overlap is long enough that the join of two stretches of noise is heard
    // as neither.
    const qsizetype overlap = std::min<qsizetype>(rate / 2, loop / 2);
    std::vector<float> samples(std::size_t(loop + overlap));
    switch (sound) {
    case AmbientSound::white: {
        WhiteNoise noise(sane.seed);
        std::generate(samples.begin(), samples.end(), [&] { return noise.next(); });
        break;
    }
    case AmbientSound::pink: {
        PinkNoise noise(sane.seed);
        std::generate(samples.begin(), samples.end(), [&] { return noise.next(); });
        break;
    }
    case AmbientSound::brown: {
        BrownNoise noise(sane.seed);
        std::generate(samples.begin(), samples.end(), [&] { return noise.next(); });
        break;
    }
    case AmbientSound::rain:
        rain(samples, sane, loop);
        break;
    case AmbientSound::waves:
        waves(samples, sane, loop);
        break;
    case AmbientSound::cafe:
        cafe(samples, sane);
        break;
    }
    samples = closeLoop(std::move(samples), loop);
    normalise(samples);
    return samples;
}

std::vector<float> closeLoop(std::vector<float> samples, qsizetype length) {
    const auto total = qsizetype(samples.size());
    if (length <= 0 || length >= total) {
        samples.resize(std::size_t(std::max<qsizetype>(length, 0)));
        return samples;
    }
    const qsizetype overlap = std::min(total - length, length);
    for (qsizetype i = 0; i < overlap; ++i) {
        // Equal power: the two stretches are unrelated noise, so their powers add.
        const double x = (double(i) + 0.5) / double(overlap);
        const double in = std::sin(x * std::numbers::pi / 2);
        const double out = std::cos(x * std::numbers::pi / 2);
        samples[std::size_t(i)] = float(in * double(samples[std::size_t(i)]) +
                                        out * double(samples[std::size_t(length + i)]));
    }
    samples.resize(std::size_t(length));
    return samples;
}

} // namespace Soundscape

} // namespace tw
