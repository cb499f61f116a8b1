#include "weather/WeatherLog.h"

namespace tw {

Q_LOGGING_CATEGORY(lcWeather, "Weather")

} // namespace tw
