// The weather's log category, "Weather", shared by the service and the address lookup.
#pragma once

#include <QLoggingCategory>

namespace tw {

Q_DECLARE_LOGGING_CATEGORY(lcWeather)

} // namespace tw
