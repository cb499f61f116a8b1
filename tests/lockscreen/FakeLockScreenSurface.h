// A lock screen surface whose session and window server a test sets, recording what was asked.
#pragma once

#include "platform/LockScreenSurface.h"

namespace tw::test {

class FakeLockScreenSurface final : public LockScreenSurface {
public:
    bool available = true;
    bool locked = true;
    bool elevates = true;
    int screens = 2;

    int opened = 0;
    int closed = 0;
    bool up = false;
    bool suspended = false;
    double fps = -1;

    std::optional<QString> unavailableReason() const override {
        return available ? std::nullopt : std::optional(QStringLiteral("not here"));
    }
    bool isScreenLocked() const override { return locked; }
    int open(double rate) override {
        ++opened;
        fps = rate;
        up = true;
        return screens;
    }
    bool elevate() override { return up && elevates; }
    void setSuspended(bool on) override { suspended = on; }
    void close() override {
        ++closed;
        up = false;
        suspended = false;
    }
    QStringList probe() override { return {}; }
};

} // namespace tw::test
