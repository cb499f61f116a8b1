#include "app/LaunchModes.h"
#include "look/CatalogCounts.h"

namespace tw {

std::optional<int> runCountsMode(LaunchContext& context) {
    context.out << CatalogCounts::line() << '\n';
    return 0;
}

} // namespace tw
