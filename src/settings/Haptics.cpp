#include "settings/Haptics.h"

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/HapticPulse.h"
#include "settings/StoredValue.h"

namespace tw {

Haptics::Haptics(const Defaults& defaults, const Clock& clock, HapticPulse& pulse,
                 std::function<bool()> silenced)
    : m_defaults(defaults)
    , m_clock(clock)
    , m_pulse(pulse)
    , m_silenced(std::move(silenced)) {}

bool Haptics::isEnabled() const {
    return StoredValue::boolean(m_defaults.value(enabledKey())).value_or(true);
}

void Haptics::align() {
    pulse(alignGuard);
}

void Haptics::hover() {
    pulse(hoverGuard);
}

void Haptics::pulse(std::chrono::milliseconds guard) {
    if (!isEnabled() || (m_silenced && m_silenced())) {
        return;
    }
    const std::chrono::nanoseconds now = m_clock.uptime();
    if (m_lastPulse && now - *m_lastPulse < guard) {
        return;
    }
    m_lastPulse = now;
    m_pulse.performAlignment();
}

} // namespace tw
