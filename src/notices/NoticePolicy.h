// The gate before the engine: outside the program's own builds, nothing that sells and no way
// out of the program.
#pragma once

#include "notices/Notice.h"

#include <optional>

namespace tw {

class NoticePolicy {
public:
    NoticePolicy() = delete;

    // The channel of the program's own builds, where every notice passes unchanged.
    static QString directChannel() { return QStringLiteral("direct"); }

    // The notice, possibly with fewer actions, or nullopt when the channel may not show it.
    static std::optional<Notice> allowed(const Notice& notice, const QString& channel);
    // Whether a text speaks of prices, reductions or codes, in English or German.
    static bool hasPriceLanguage(const QString& text);
};

} // namespace tw
