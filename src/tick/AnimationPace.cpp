#include "tick/AnimationPace.h"

#include <algorithm>

namespace tw {

double AnimationPace::fps(double requested) const {
    switch (m_kind) {
    case Kind::Capped:
        return std::max(std::min(requested, m_cap), 0.0);
    case Kind::Paused:
        return 0;
    case Kind::Efficient:
        return requested > efficientFps ? efficientFps : requested;
    case Kind::Smooth:
        break;
    }
    return requested;
}

} // namespace tw
