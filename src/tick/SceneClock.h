// A scene's own time: runs with the wall clock while playing, stands still while paused.
#pragma once

#include <chrono>
#include <optional>

namespace tw {

class SceneClock {
public:
    using Seconds = std::chrono::duration<double>;
    enum class Paused { No, Yes };

    // The largest step one call may add: a sleep, a stall or a clock step forward moves a scene by
    // at most this, a clock step back by nothing.
    static constexpr Seconds maxStep{1.0};

    // `now` is wall-clock time. `pinned`, when given, is the scene time of a picture being
    // rendered: it is returned as is and the clock does not move.
    Seconds time(Seconds now, Paused paused, std::optional<Seconds> pinned = std::nullopt);

private:
    Seconds m_accumulated{0};
    std::optional<Seconds> m_lastWall;
};

} // namespace tw
