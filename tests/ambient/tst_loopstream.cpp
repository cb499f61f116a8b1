#include "ambient/LoopStream.h"

#include <QTest>

#include <cmath>
#include <numeric>

using namespace tw;

namespace {

// A loop of 0, 1, 2, … scaled small, so where each sample came from can be read back.
LoopStream::Loop ramp(int size, float offset = 0) {
    auto loop = std::make_shared<std::vector<float>>(std::size_t(size));
    std::iota(loop->begin(), loop->end(), 0.0f);
    for (float& s : *loop) {
        s = offset + s / 1000.0f;
    }
    return loop;
}

} // namespace

class TestLoopStream : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Right runs half a loop ahead of left; further channels repeat the pair; the loop wraps.
    void channels() {
        LoopStream stream(20);
        stream.setLoop(ramp(10));
        stream.setGain(1);
        std::vector<float> warm(4 * 40);
        stream.fill(warm.data(), 40, 4);
        std::vector<float> out(4 * 3);
        stream.fill(out.data(), 3, 4);
        const std::vector<float> expected{0.000f, 0.005f, 0.000f, 0.005f, 0.001f, 0.006f,
                                          0.001f, 0.006f, 0.002f, 0.007f, 0.002f, 0.007f};
        for (std::size_t i = 0; i < out.size(); ++i) {
            QVERIFY2(std::abs(out[i] - expected[i]) < 1e-6f, qPrintable(QString::number(i)));
        }
    }

    // Gain changes and a change of loop glide: no step between samples larger than the glide.
    void noClicks() {
        constexpr int rate = 1000;
        LoopStream stream(rate);
        auto loud = std::make_shared<std::vector<float>>(std::size_t(100), 0.9f);
        stream.setLoop(loud);
        std::vector<float> out;
        const auto take = [&](int frames) {
            std::vector<float> part(std::size_t(frames) * 2);
            stream.fill(part.data(), frames, 2);
            for (std::size_t i = 0; i < part.size(); i += 2) {
                out.push_back(part[i]);
            }
        };
        stream.setGain(1);
        take(200);
        stream.setLoop(std::make_shared<std::vector<float>>(std::size_t(100), -0.9f));
        take(500);
        stream.setGain(0);
        take(100);
        QCOMPARE(out.front(), 0.9f / 50);
        QCOMPARE(out.back(), 0.0f);
        QVERIFY(stream.isSilent());
        for (std::size_t i = 1; i < out.size(); ++i) {
            QVERIFY2(std::abs(out[i] - out[i - 1]) <=
                         0.9f / (rate / 20) + 1.8f / (rate / 3) + 1e-5f,
                     qPrintable(QStringLiteral("%1: %2 → %3").arg(i).arg(out[i - 1]).arg(out[i])));
        }
    }
};

QTEST_GUILESS_MAIN(TestLoopStream)
#include "tst_loopstream.moc"
