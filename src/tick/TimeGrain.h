// How often a view needs its time: every tick, or only when the minute changes.
#pragma once

namespace tw {

enum class TimeGrain { Seconds, Minutes };

} // namespace tw
