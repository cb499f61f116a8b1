#include "tools/RandomPick.h"

#include <QRandomGenerator>

#include <limits>

namespace tw {

RandomSource RandomPick::system() {
    return [] { return QRandomGenerator::system()->generate(); };
}

quint32 RandomPick::below(const RandomSource& source, quint32 n) {
    Q_ASSERT_X(n > 0, "RandomPick::below", "nothing to choose from");
    // The largest multiple of n that 32 bits hold: words at or above it are drawn again.
    const quint64 span = quint64(std::numeric_limits<quint32>::max()) + 1;
    const quint64 limit = span - span % n;
    for (;;) {
        const quint64 word = source();
        if (word < limit) {
            return static_cast<quint32>(word % n);
        }
    }
}

} // namespace tw
