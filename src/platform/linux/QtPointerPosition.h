// The pointer as Qt's cursor reports it (one round trip to the X server), in internal points.
#pragma once

#include "platform/PointerPosition.h"

namespace tw {

class QtPointerPosition final : public PointerPosition {
public:
    // Needs a QGuiApplication.
    std::optional<QPointF> position() const override;
};

} // namespace tw
