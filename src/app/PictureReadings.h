// The machine's readings for a picture drawn without the host: read at once, real figures.
#pragma once

#include "readings/ReadingFeed.h"
#include "readings/ReadingsBoard.h"

namespace tw {

// Reads `feeds` from this machine's sources; a feed without a source stays empty.
ReadingsBoard pictureReadings(ReadingFeeds feeds);

} // namespace tw
