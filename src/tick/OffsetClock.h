// A wall clock that starts at a chosen moment and runs on from there, so that time rules can be
// tried now instead of at the hour they name.
#pragma once

#include "platform/Clock.h"

#include <QDateTime>
#include <QString>

#include <chrono>
#include <optional>

namespace tw {

class OffsetClock final : public Clock {
public:
    OffsetClock(const Clock& base, std::chrono::milliseconds offset);

    QDateTime now() const override;
    // The base's: intervals neither jump nor stretch.
    std::chrono::nanoseconds uptime() const override;

    // The offset that makes `now` read `start`, an ISO 8601 moment ("2026-11-24T08:59:40", local
    // time without an offset); nothing for an empty or unreadable value.
    static std::optional<std::chrono::milliseconds> offsetFor(const QString& start,
                                                              const QDateTime& now);

private:
    const Clock& m_base;
    std::chrono::milliseconds m_offset;
};

} // namespace tw
