#include "TestRows.h"
#include "ambient/Soundscape.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

using namespace tw;
using tw::test::row;

Q_DECLARE_METATYPE(tw::AmbientSound)

namespace {

constexpr int rate = 48000;

std::vector<float> loopOf(AmbientSound sound) {
    return Soundscape::render(sound, LoopRecipe{.sampleRate = rate, .seconds = 4, .seed = 7});
}

void fft(std::vector<std::complex<double>>& a) {
    const std::size_t n = a.size();
    for (std::size_t i = 1, j = 0; i < n; ++i) {
        std::size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(a[i], a[j]);
        }
    }
    for (std::size_t len = 2; len <= n; len <<= 1) {
        const auto w = std::polar(1.0, -2 * std::numbers::pi / double(len));
        for (std::size_t i = 0; i < n; i += len) {
            std::complex<double> wn(1);
            for (std::size_t k = 0; k < len / 2; ++k) {
                const auto u = a[i + k];
                const auto v = a[i + k + len / 2] * wn;
                a[i + k] = u + v;
                a[i + k + len / 2] = u - v;
                wn *= w;
            }
        }
    }
}

// The slope of log power over log frequency from 200 Hz to 6.4 kHz, from third-octave bands of a
// Welch average: 0 for white noise, -1 for pink, -2 for brown.
double spectralSlope(const std::vector<float>& samples) {
    constexpr std::size_t n = 4096;
    std::vector<double> power(n / 2);
    for (std::size_t start = 0; start + n <= samples.size(); start += n / 2) {
        std::vector<std::complex<double>> frame(n);
        for (std::size_t i = 0; i < n; ++i) {
            const double hann = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / n);
            frame[i] = double(samples[start + i]) * hann;
        }
        fft(frame);
        for (std::size_t k = 0; k < n / 2; ++k) {
            power[k] += std::norm(frame[k]);
        }
    }
    std::vector<std::pair<double, double>> points;
    for (double low = 200; low < 6400; low *= std::pow(2.0, 1.0 / 3)) {
        const double high = low * std::pow(2.0, 1.0 / 3);
        double sum = 0;
        int bins = 0;
        for (std::size_t k = 1; k < n / 2; ++k) {
            const double f = double(k) * rate / n;
            if (f >= low && f < high) {
                sum += power[k];
                ++bins;
            }
        }
        points.emplace_back(std::log10(std::sqrt(low * high)), std::log10(sum / bins));
    }
    double mx = 0, my = 0;
    for (const auto& [x, y] : points) {
        mx += x;
        my += y;
    }
    mx /= double(points.size());
    my /= double(points.size());
    double sxy = 0, sxx = 0;
    for (const auto& [x, y] : points) {
        sxy += (x - mx) * (y - my);
        sxx += (x - mx) * (x - mx);
    }
    return sxy / sxx;
}

} // namespace

class TestSoundscape : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void slope_data() {
        QTest::addColumn<AmbientSound>("sound");
        QTest::addColumn<double>("expected");
        row("white is flat", AmbientSound::white, 0.0);
        row("pink falls 3 dB an octave", AmbientSound::pink, -1.0);
        row("brown falls 6 dB an octave", AmbientSound::brown, -2.0);
    }
    void slope() {
        QFETCH(AmbientSound, sound);
        QFETCH(double, expected);
        const double measured = spectralSlope(loopOf(sound));
        QVERIFY2(std::abs(measured - expected) < 0.15, qPrintable(QString::number(measured)));
    }

    void everySound_data() {
        QTest::addColumn<AmbientSound>("sound");
        for (const AmbientSound sound : allAmbientSounds()) {
            QTest::newRow(qPrintable(settingValue(sound))) << sound;
        }
    }
    // Level, no clipping, and a loop whose end runs on into its start like any other sample.
    void everySound() {
        QFETCH(AmbientSound, sound);
        const std::vector<float> loop = loopOf(sound);
        QCOMPARE(qsizetype(loop.size()), qsizetype(4 * rate));
        double sumSquares = 0;
        std::vector<float> steps;
        for (std::size_t i = 0; i < loop.size(); ++i) {
            QVERIFY(std::isfinite(loop[i]));
            QVERIFY2(std::abs(loop[i]) <= Soundscape::peak + 1e-6f, qPrintable(QString::number(i)));
            sumSquares += double(loop[i]) * double(loop[i]);
            if (i > 0) {
                steps.push_back(std::abs(loop[i] - loop[i - 1]));
            }
        }
        const double rms = std::sqrt(sumSquares / double(loop.size()));
        QVERIFY2(rms > double(Soundscape::level) * 0.5 && rms < double(Soundscape::level) * 1.05,
                 qPrintable(QString::number(rms)));
        std::sort(steps.begin(), steps.end());
        const float usualStep = steps[steps.size() * 999 / 1000];
        const float seam = std::abs(loop.front() - loop.back());
        QVERIFY2(
            seam <= usualStep,
            qPrintable(QStringLiteral("seam %1, 99.9th percentile %2").arg(seam).arg(usualStep)));
    }

    void sameSeedSameSound() {
        QVERIFY(loopOf(AmbientSound::cafe) == loopOf(AmbientSound::cafe));
        const auto other = Soundscape::render(
            AmbientSound::cafe, LoopRecipe{.sampleRate = rate, .seconds = 4, .seed = 8});
        QVERIFY(other != loopOf(AmbientSound::cafe));
    }

    void outlandishSpecsStayBounded() {
        const auto tiny = Soundscape::render(AmbientSound::waves,
                                             LoopRecipe{.sampleRate = 1, .seconds = -5, .seed = 0});
        QCOMPARE(qsizetype(tiny.size()), qsizetype(8000));
    }
};

QTEST_GUILESS_MAIN(TestSoundscape)
#include "tst_soundscape.moc"
