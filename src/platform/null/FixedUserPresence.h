// Presence set by the caller: tests, and systems that cannot tell (always there, never idle).
#pragma once

#include "platform/UserPresence.h"

namespace tw {

class FixedUserPresence final : public UserPresence {
    Q_OBJECT
public:
    using UserPresence::UserPresence;

    double idleSeconds() const override { return m_idle; }
    bool isAway() const override { return m_away; }

    void setIdleSeconds(double seconds) { m_idle = seconds; }
    void setAway(bool away) {
        if (away != m_away) {
            m_away = away;
            Q_EMIT awayChanged(away);
        }
    }

private:
    double m_idle = 0;
    bool m_away = false;
};

} // namespace tw
