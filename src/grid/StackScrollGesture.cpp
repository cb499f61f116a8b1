#include "grid/StackScrollGesture.h"

#include <cmath>

namespace tw {

std::optional<int> StackScrollGesture::step(const Event& event) {
    if (event.momentum) {
        return std::nullopt;
    }
    const double delta =
        std::abs(event.deltaX) > std::abs(event.deltaY) ? event.deltaX : event.deltaY;
    if (event.phase == Phase::none) {
        if (delta == 0) {
            return std::nullopt;
        }
        if (lastWheel && event.at - *lastWheel <= wheelPause) {
            return std::nullopt;
        }
        lastWheel = event.at;
        return delta < 0 ? 1 : -1;
    }
    if (event.phase == Phase::began) {
        accumulated = 0;
        fired = false;
    }
    accumulated -= delta;
    std::optional<int> result;
    if (!fired && std::abs(accumulated) >= swipeDistance) {
        fired = true;
        result = accumulated > 0 ? 1 : -1;
    }
    if (event.phase == Phase::ended || event.phase == Phase::cancelled) {
        accumulated = 0;
        fired = false;
    }
    return result;
}

} // namespace tw
