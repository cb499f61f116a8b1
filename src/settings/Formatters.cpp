#include "settings/Formatters.h"

#include "settings/Localization.h"

#include <QHash>

#include <algorithm>
#include <mutex>
#include <utility>

namespace tw {

namespace {

// The one lock of the system and the two tables it guards.
struct Cache {
    std::mutex lock;
    QHash<std::pair<QString, QByteArray>, std::shared_ptr<const DateFormatter>> dates;
    QHash<std::pair<int, int>, std::shared_ptr<const NumberFormatter>> numbers;
};

Cache& cache() {
    static Cache instance;
    return instance;
}

} // namespace

std::shared_ptr<const DateFormatter> Formatters::date(const QString& pattern,
                                                      const QByteArray& timeZoneId) {
    Cache& shared = cache();
    const std::scoped_lock guard(shared.lock);
    // Patterns come from custom widgets too, typed a key at a time: a full table starts over
    // (formatters handed out stay alive with their holders).
    if (shared.dates.size() >= Formatters::heldDates &&
        !shared.dates.contains({pattern, timeZoneId})) {
        shared.dates.clear();
    }
    auto& slot = shared.dates[{pattern, timeZoneId}];
    if (!slot) {
        slot = std::make_shared<const DateFormatter>(pattern, timeZoneId, Localization::locale());
    }
    return slot;
}

std::shared_ptr<const NumberFormatter> Formatters::number(int decimals, Grouping grouping) {
    const int held = std::clamp(decimals, 0, NumberFormatter::maximumDecimals);
    Cache& shared = cache();
    const std::scoped_lock guard(shared.lock);
    auto& slot = shared.numbers[{held, static_cast<int>(grouping)}];
    if (!slot) {
        slot = std::make_shared<const NumberFormatter>(held, grouping, Localization::locale());
    }
    return slot;
}

} // namespace tw
