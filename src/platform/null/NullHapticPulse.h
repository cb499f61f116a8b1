// HapticPulse for machines without a haptic device (Linux, tests, off-screen pictures): feels
// nothing.
#pragma once

#include "platform/HapticPulse.h"

namespace tw {

class NullHapticPulse final : public HapticPulse {
public:
    bool isAvailable() const override { return false; }
    void performAlignment() override {}
};

} // namespace tw
