// The readings a face shows, so that the host samples only what a visible tile needs.
#pragma once

#include <QFlags>

namespace tw {

enum class ReadingFeed {
    system = 0x01,
    activity = 0x02,
    sensors = 0x04,
    network = 0x08,
    disks = 0x10,
    battery = 0x20,
    bluetooth = 0x40,
    nowPlaying = 0x80,
};
Q_DECLARE_FLAGS(ReadingFeeds, ReadingFeed)
Q_DECLARE_OPERATORS_FOR_FLAGS(ReadingFeeds)

} // namespace tw
