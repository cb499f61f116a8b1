// No Linux desktop lets a program draw above its lock screen: the locker owns the screen (and on
// X11 grabs it), so this surface always answers unavailable.
#pragma once

#include "platform/LockScreenSurface.h"

namespace tw {

class LinuxLockScreenSurface final : public LockScreenSurface {
    Q_OBJECT
public:
    using LockScreenSurface::LockScreenSurface;

    std::optional<QString> unavailableReason() const override;
    bool isScreenLocked() const override { return false; }
    int open(double) override { return 0; }
    bool elevate() override { return false; }
    void setSuspended(bool) override {}
    void close() override {}
    QStringList probe() override;
};

} // namespace tw
