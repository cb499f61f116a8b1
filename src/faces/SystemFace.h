// The whole machine at a glance: the load of the processor and the graphics, the memory and the
// disk in use, as rings or bars with percentages; the larger tiles draw their recent history.
#pragma once

#include "faces/WidgetFace.h"
#include "readings/SystemSnapshot.h"

#include <QList>

namespace tw {

struct ReadingsBoard;

class SystemFace final : public WidgetFace {
public:
    // The metric whose history the large tile draws.
    static constexpr SysMetric largeSparkMetric = SysMetric::cpu;
    // How many of the board's readings a history shows.
    static constexpr qsizetype historyLength = 40;

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // The "metrics" setting, a comma list of cpu, gpu, ram and disk: in its order, each once,
    // unknown names left out; all four when it names none.
    static QList<SysMetric> metrics(const QString& setting);
    // The metrics whose history a tile of this size draws.
    static QList<SysMetric> historyMetrics(WidgetSize size, const QList<SysMetric>& shown);
    // The metric's last readings as fractions, oldest first; readings without the figure (no
    // graphics load) are left out.
    static QList<double> history(const ReadingsBoard* board, SysMetric metric);
};

} // namespace tw
