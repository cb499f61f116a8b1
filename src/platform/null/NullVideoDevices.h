// No video devices: systems that list none.
#pragma once

#include "platform/VideoDevices.h"

namespace tw {

class NullVideoDevices final : public VideoDevices {
public:
    QList<VideoNode> nodes() const override { return {}; }
};

} // namespace tw
