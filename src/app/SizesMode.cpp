#include "app/LaunchModes.h"
#include "model/SizeReport.h"

namespace tw {

std::optional<int> runSizesMode(LaunchContext& context) {
    context.out << SizeReport::table();
    return 0;
}

} // namespace tw
