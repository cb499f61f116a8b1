// The wall clock of the whole run, which a launch can pin to one moment for reproducible pictures.
#pragma once

#include "platform/Clock.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tw {

class SnapshotClock final : public Clock {
public:
    explicit SnapshotClock(const Clock& system);

    // The pinned moment when there is one, the system's time otherwise.
    QDateTime now() const override;
    // Always the system's: intervals keep running while wall time stands still.
    std::chrono::nanoseconds uptime() const override;

    // The clock under the pin: what ticks, stores and intervals run on.
    const Clock& system() const { return m_system; }

    std::optional<QDateTime> pinned() const { return m_pinned; }
    void setPinned(const std::optional<QDateTime>& pinned) { m_pinned = pinned; }

    // The pin a "TWK_TIME" value asks for: split on ":", pieces that are not integers dropped;
    // exactly two numbers left are an hour and a minute of tomorrow (the day after `now`), second
    // 0. A time that a clock change skips gives the first moment after the gap. Anything else,
    // or an hour or minute out of range, asks for nothing.
    static std::optional<QDateTime> pinFor(const QString& value, const QDateTime& now);

private:
    const Clock& m_system;
    std::optional<QDateTime> m_pinned;
};

} // namespace tw
