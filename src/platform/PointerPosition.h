// Where the mouse pointer is, for tiles that react to it from afar (the companion's eyes).
#pragma once

#include <QPointF>

#include <optional>

namespace tw {

class PointerPosition {
public:
    PointerPosition() = default;
    virtual ~PointerPosition() = default;
    Q_DISABLE_COPY_MOVE(PointerPosition)

    // In global points (origin at the primary display's lower-left, y up); nullopt where the
    // system will not tell.
    virtual std::optional<QPointF> position() const = 0;
};

} // namespace tw
