// A machine without readable sensors.
#pragma once

#include "platform/SensorSource.h"

namespace tw {

class NullSensorSource final : public SensorSource {
public:
    SensorSample read() const override { return {}; }
};

} // namespace tw
