// A sleep timer: the sound at full volume, then a fade to silence at the end.
#pragma once

#include <chrono>

namespace tw {

class SleepTimer {
public:
    using Time = std::chrono::nanoseconds;
    // The longest fade; a short timer fades over its second half.
    static constexpr std::chrono::seconds longestFade{60};

    SleepTimer(Time startedAt, std::chrono::minutes length);

    Time endsAt() const { return m_endsAt; }
    Time fadeStartsAt() const { return m_fadeStartsAt; }
    // 1 before the fade, 0 from the end on, and between them a curve that sounds even.
    double gainAt(Time at) const;
    bool endedAt(Time at) const { return at >= m_endsAt; }

    bool operator==(const SleepTimer&) const = default;

private:
    Time m_endsAt;
    Time m_fadeStartsAt;
};

} // namespace tw
