// The quotes' log category, "Market", shared by the three services.
#pragma once

#include <QLoggingCategory>

namespace tw {

Q_DECLARE_LOGGING_CATEGORY(lcMarket)

} // namespace tw
