// The snap and hover pulses, each at most once per short interval of uptime, so that a drag along
// many snap lines cannot buzz continuously.
#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace tw {

class Clock;
class Defaults;
class HapticPulse;

class Haptics {
public:
    static constexpr std::chrono::milliseconds alignGuard{40};
    static constexpr std::chrono::milliseconds hoverGuard{90};
    static QString enabledKey() { return QStringLiteral("tarnwick.haptics"); }

    // `silenced` answers whether sounds and pulses are off for this run (automated runs and
    // pictures); none means never. All references must outlive this object.
    Haptics(const Defaults& defaults, const Clock& clock, HapticPulse& pulse,
            std::function<bool()> silenced = {});

    // "tarnwick.haptics", true when absent.
    bool isEnabled() const;
    // A dragged tile met a snap line: pulses unless the last pulse is younger than `alignGuard`.
    void align();
    // The pointer entered something that answers to hovering: as `align`, with `hoverGuard`.
    void hover();

private:
    void pulse(std::chrono::milliseconds guard);

    const Defaults& m_defaults;
    const Clock& m_clock;
    HapticPulse& m_pulse;
    std::function<bool()> m_silenced;
    std::optional<std::chrono::nanoseconds> m_lastPulse;
};

} // namespace tw
