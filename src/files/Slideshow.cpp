#include "files/Slideshow.h"

#include <algorithm>
#include <numeric>

namespace tw {

namespace {

qint64 floorDiv(qint64 a, qint64 b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0);
}

qint64 floorMod(qint64 a, qint64 b) {
    return a - floorDiv(a, b) * b;
}

} // namespace

int Slideshow::pictureAt(qint64 step) const {
    if (count <= 0) {
        return -1;
    }
    const qint64 n = count;
    const qint64 position = floorMod(step + seed, n);
    if (order == Order::sequential || n < 3) {
        return static_cast<int>(position);
    }
    // Each round walks every picture once with a stride coprime to the count, a new stride and
    // start per round: shuffled, without keeping a permutation of a large folder.
    const qint64 round = floorDiv(step + seed, n);
    const quint64 mix = (static_cast<quint64>(round) + seed) * 0x9E3779B97F4A7C15ULL;
    qint64 stride = static_cast<qint64>((mix >> 33) % static_cast<quint64>(n - 1)) + 1;
    while (std::gcd(stride, n) != 1) {
        stride = stride % (n - 1) + 1;
    }
    const qint64 offset = static_cast<qint64>((mix >> 17) % static_cast<quint64>(n));
    return static_cast<int>((position * stride + offset) % n);
}

Slideshow::Frame Slideshow::at(qint64 msSinceEpoch) const {
    if (count <= 0) {
        return {};
    }
    const qint64 period = std::max<qint64>(1000, std::chrono::milliseconds(interval).count());
    const qint64 step = floorDiv(msSinceEpoch, period) + skipped;
    const qint64 into = floorMod(msSinceEpoch, period);
    Frame frame;
    frame.current = pictureAt(step);
    frame.untilNext = std::chrono::milliseconds(period - into);
    const qint64 fade = std::min<qint64>(fadeLength.count(), period / 2);
    if (count > 1 && into < fade) {
        frame.previous = pictureAt(step - 1);
        frame.fade = static_cast<double>(into) / static_cast<double>(fade);
    } else {
        frame.previous = frame.current;
    }
    return frame;
}

} // namespace tw
