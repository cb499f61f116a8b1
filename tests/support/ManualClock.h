// A clock that moves only when a test moves it.
#pragma once

#include "platform/Clock.h"

namespace tw::test {

class ManualClock final : public Clock {
public:
    explicit ManualClock(QDateTime start = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)))
        : m_now(std::move(start)) {}

    QDateTime now() const override { return m_now; }
    std::chrono::nanoseconds uptime() const override { return m_uptime; }

    // Moves wall time and uptime together, as a running machine does.
    void advance(std::chrono::milliseconds by) {
        m_now = m_now.addMSecs(by.count());
        m_uptime += by;
    }
    // Moves wall time only, as a user changing the clock or a sleeping machine's wall clock does.
    void setNow(const QDateTime& now) { m_now = now; }
    void setUptime(std::chrono::nanoseconds uptime) { m_uptime = uptime; }

private:
    QDateTime m_now;
    std::chrono::nanoseconds m_uptime{std::chrono::hours(1)};
};

} // namespace tw::test
