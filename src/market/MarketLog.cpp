#include "market/MarketLog.h"

namespace tw {

Q_LOGGING_CATEGORY(lcMarket, "Market")

} // namespace tw
