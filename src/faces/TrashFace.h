// The trash: how many items and how much space, files dropped on it go in, and "Empty Trash…"
// asks on the tile before anything is deleted.
#pragma once

#include "faces/FileKit.h"
#include "faces/WidgetFace.h"
#include "files/TrashView.h"

namespace tw {

class TrashFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The places a press lands on as the tile shows `view`.
    static QList<FileKit::Target> targets(const QRectF& rect, WidgetSize size,
                                          const TrashView& view);
};

} // namespace tw
