// The ambient sound tile: a backdrop in the colours of the sound, a play button (rippling while
// it plays), the sound and what it is doing, and as room allows the sounds to pick from, the
// volume and the sleep timer; each a control the tile's behaviour answers by name.
#pragma once

#include "faces/WidgetFace.h"

#include <array>

namespace tw {

class AmbientSoundFace final : public WidgetFace {
public:
    // Where the parts of a size go, in the coordinates of the rectangle drawn; a part the size
    // has no room for is empty.
    struct Layout {
        QRectF button;
        QRectF title;
        QRectF status;
        std::array<QRectF, 6> sounds;
        bool soundNames = false;
        QRectF quieter;
        QRectF volume;
        QRectF louder;
        QRectF sleep;
    };
    static Layout layout(const QRectF& rect, WidgetSize size);

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    double sceneFps(const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
};

} // namespace tw
