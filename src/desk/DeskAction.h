// What a press on one of a timer tile's controls asks for.
#pragma once

namespace tw {

struct DeskAction {
    enum class Kind {
        // Start, pause or resume; a finished timer goes back to its full time.
        toggle,
        reset,
        // The pomodoro's next phase now, without a sound.
        skip,
        // The stopwatch's lap.
        lap,
        // The timer's length, from its presets.
        minutes,
    };

    Kind kind = Kind::toggle;
    int minutes = 0;

    bool operator==(const DeskAction&) const = default;
};

} // namespace tw
