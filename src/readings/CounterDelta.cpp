#include "readings/CounterDelta.h"

namespace tw {

namespace {

constexpr quint64 range32 = quint64(1) << 32;

} // namespace

std::optional<quint64> counterDelta(quint64 before, quint64 after) {
    if (after >= before) {
        return after - before;
    }
    // Read as a wrap only when that is the shorter way round: a counter a little below the top of
    // 32 bits that came back a little above 0.
    if (before < range32) {
        const quint64 wrapped = range32 - before + after;
        if (wrapped < range32 / 2) {
            return wrapped;
        }
    }
    return std::nullopt;
}

} // namespace tw
