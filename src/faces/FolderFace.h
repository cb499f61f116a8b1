// A folder's items as icons with their names, folders first in the person's order; a press opens
// an item with its application, the header the folder itself, "+ n more" too.
#pragma once

#include "faces/FileKit.h"
#include "faces/WidgetFace.h"
#include "files/FolderView.h"

namespace tw {

class FolderFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    static QList<FileKit::Target> targets(const QRectF& rect, const FolderView& view);
};

} // namespace tw
