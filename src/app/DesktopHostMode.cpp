#include "app/LaunchModes.h"

namespace tw {

std::optional<int> runDesktopHost(LaunchContext& context) {
    context.out << QStringLiteral(
        "The desktop host is not built yet; try --counts, --sizes or --list-sizes.\n");
    return 0;
}

} // namespace tw
