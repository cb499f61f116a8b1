#include "platform/linux/LinuxLockScreenSurface.h"

namespace tw {

std::optional<QString> LinuxLockScreenSurface::unavailableReason() const {
    return QStringLiteral(
        "this desktop does not allow drawing above its lock screen: the screen locker owns the "
        "screen while it is locked");
}

QStringList LinuxLockScreenSurface::probe() {
    return {
        QStringLiteral("symbols available : no"),
        QStringLiteral("connection id     : none"),
        QStringLiteral("window number     : none"),
        QStringLiteral("space created     : no"),
        QStringLiteral("set level (400)   : not tried"),
        QStringLiteral("show space        : not tried"),
        QStringLiteral("add window        : not tried"),
        QStringLiteral("RESULT            : FAILED"),
        QStringLiteral("reason            : ") + *unavailableReason(),
    };
}

} // namespace tw
