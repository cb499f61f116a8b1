// The disks: each volume with a bar of its used space and the space still free, the system
// volume first and removable ones marked; the small tile makes one volume's free space the hero.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/SystemSource.h"

namespace tw {

class DiskFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // The volume mounted at `first` (the system volume "/" when empty) ahead of the others, which
    // keep their order.
    static QList<Volume> ordered(const QList<Volume>& volumes, const QString& first);
    // The share of the volume in use, 0 to 1; 0 for a volume of no size.
    static double usedFraction(const Volume& volume);
};

} // namespace tw
