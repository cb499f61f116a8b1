#include "platform/MediaNowPlayingInfo.h"

#include <algorithm>

namespace tw {

bool MediaNowPlayingInfo::isSameTrack(const MediaNowPlayingInfo& other) const {
    return title == other.title && artist == other.artist;
}

double MediaNowPlayingInfo::elapsed(const QDateTime& now) const {
    if (position < 0) {
        return 0;
    }
    double seconds = position;
    if (isPlaying && positionDate.isValid() && now.isValid()) {
        seconds += std::max<qint64>(0, positionDate.msecsTo(now)) / 1000.0;
    }
    return duration > 0 ? std::min(seconds, duration) : seconds;
}

double MediaNowPlayingInfo::progress(const QDateTime& now) const {
    if (duration <= 0 || position < 0) {
        return 0;
    }
    return std::clamp(elapsed(now) / duration, 0.0, 1.0);
}

} // namespace tw
