// The drop zone: a dashed target that says where files go and whether they are moved or copied,
// with the last items dropped (each opens with a press) where there is room.
#pragma once

#include "faces/FileKit.h"
#include "faces/WidgetFace.h"
#include "files/DropZoneView.h"

namespace tw {

class DropZoneFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    static QList<FileKit::Target> targets(const QRectF& rect, WidgetSize size,
                                          const DropZoneView& view);
};

} // namespace tw
