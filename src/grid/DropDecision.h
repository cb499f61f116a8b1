// What becomes of a tile let go on the desktop: it joins a stack, slides off its neighbours, or
// stays where it was dropped.
#pragma once

#include "model/Metrics.h"
#include "model/WidgetSize.h"

#include <QRectF>
#include <QUuid>

#include <optional>
#include <span>

namespace tw {

struct DropDecision {
    enum class Outcome {
        ignore, // an empty tile rectangle: nothing to decide
        stack,  // group the dragged tile onto `stackOnto`
        slide,  // move it to `rect`, off the tiles it overlapped
        stay,   // it overlaps nothing, or there is no free place: leave it
    };

    // Another tile on screen, as the desktop shows it (hidden members of stacks left out).
    struct Tile {
        QUuid id;
        WidgetSize size = WidgetSize::small;
        QRectF rect;
    };

    // Share of the smaller tile that a tile of the same size must cover to stack onto it.
    static constexpr double stackingShare = 0.4;
    // The gap kept from the neighbours when sliding off them.
    static constexpr double gap = Metrics::cellSpacing;

    Outcome outcome = Outcome::ignore;
    QUuid stackOnto;
    // Where the tile ends: the new place for `slide`, the dropped rectangle otherwise.
    QRectF rect;

    bool operator==(const DropDecision&) const = default;

    // `rect` is the dragged tile's rectangle (its panel's frame inset by the shadow margin),
    // `bounds` the visible frame of its screen, none when there is no screen.
    static DropDecision decide(WidgetSize size, const QRectF& rect, std::span<const Tile> others,
                               const std::optional<QRectF>& bounds);
};

} // namespace tw
