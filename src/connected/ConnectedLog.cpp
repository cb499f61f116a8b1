#include "connected/ConnectedLog.h"

namespace tw {

Q_LOGGING_CATEGORY(lcGitHub, "GitHub")
Q_LOGGING_CATEGORY(lcSmartHome, "SmartHome")

} // namespace tw
