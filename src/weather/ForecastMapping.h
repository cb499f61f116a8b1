// The forecast answer made into the place's weather, in the place's own time.
#pragma once

#include "weather/OMResponse.h"
#include "weather/WxLive.h"

#include <QDateTime>

#include <optional>

namespace tw {

// Nullopt when the answer is malformed: no daily maximum or minimum, no current temperature or
// code, or no hour to show. `city` is the localized "Current Location", for the caller to replace.
std::optional<WxLive> mapResponse(const OMResponse& response, const QDateTime& now);

} // namespace tw
