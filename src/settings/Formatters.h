// The shared date and number formatters: making one is costly and tiles format several times a
// second, so each combination is made once and handed out from a cache behind one lock.
#pragma once

#include "settings/DateFormatter.h"
#include "settings/NumberFormatter.h"

#include <memory>

namespace tw {

class Formatters {
public:
    // How many date formatters the cache holds before it starts over.
    static constexpr qsizetype heldDates = 256;

    Formatters() = delete;

    // The formatter for `pattern` in `timeZoneId` (empty: local time), in Localization::locale().
    // Safe from any thread; the same key gives the same formatter while the cache holds it.
    static std::shared_ptr<const DateFormatter> date(const QString& pattern,
                                                     const QByteArray& timeZoneId = {});
    // The formatter for `decimals` (held to 0...15) and `grouping`, as `date`.
    static std::shared_ptr<const NumberFormatter> number(int decimals, Grouping grouping);
};

} // namespace tw
