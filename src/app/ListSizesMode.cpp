#include "app/LaunchModes.h"
#include "model/SizeReport.h"

namespace tw {

std::optional<int> runListSizesMode(LaunchContext& context) {
    context.out << SizeReport::listSizes();
    return 0;
}

} // namespace tw
