// Turns trackpad swipes and wheel clicks over a stack into single steps through its members.
#pragma once

#include <chrono>
#include <optional>

namespace tw {

struct StackScrollGesture {
    enum class Phase { none, began, changed, ended, cancelled };

    // One scroll event. `phase` is none for a mouse wheel; a trackpad has a phase.
    struct Event {
        double deltaX = 0;
        double deltaY = 0;
        Phase phase = Phase::none;
        // The inertial tail after the fingers left: never a step.
        bool momentum = false;
        // Monotonic time of the event.
        std::chrono::nanoseconds at{0};
    };

    // Travel of one swipe, in points, that makes a step.
    static constexpr double swipeDistance = 24;
    // Wheel clicks closer together than this make one step.
    static constexpr std::chrono::milliseconds wheelPause{350};

    double accumulated = 0;
    bool fired = false;
    std::optional<std::chrono::nanoseconds> lastWheel;

    // +1 or -1 for the event that completes a step, nothing otherwise: one step per swipe, and
    // one per burst of wheel clicks.
    std::optional<int> step(const Event& event);
};

} // namespace tw
