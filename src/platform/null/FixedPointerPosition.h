// A pointer that is where the caller puts it, or nowhere: tests, and systems that cannot tell.
#pragma once

#include "platform/PointerPosition.h"

namespace tw {

class FixedPointerPosition final : public PointerPosition {
public:
    std::optional<QPointF> position() const override { return m_position; }
    void moveTo(std::optional<QPointF> position) { m_position = position; }

private:
    std::optional<QPointF> m_position;
};

} // namespace tw
