// The trackpad's short pulse, felt when a dragged tile meets a snap line.
#pragma once

namespace tw {

class HapticPulse {
public:
    virtual ~HapticPulse() = default;

    // False where the machine has no device that can pulse.
    virtual bool isAvailable() const = 0;
    // One pulse of the alignment pattern, now.
    virtual void performAlignment() = 0;
};

} // namespace tw
