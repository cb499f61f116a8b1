// The log categories of the connected tiles: "GitHub" and "SmartHome". Addresses are logged
// without their query; tokens never.
#pragma once

#include <QLoggingCategory>

namespace tw {

Q_DECLARE_LOGGING_CATEGORY(lcGitHub)
Q_DECLARE_LOGGING_CATEGORY(lcSmartHome)

} // namespace tw
