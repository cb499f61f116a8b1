// What keeps the machine busy: the load of each core, how the memory is split and how pressed it
// is, and the programs that use most processor time or memory (the "list" setting, which a click
// on the tile switches).
#pragma once

#include "faces/WidgetFace.h"
#include "readings/ActivitySnapshot.h"

#include <QColor>
#include <QList>

namespace tw {

class ActivityFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // The settings key of the program list and its two values.
    static QString listKey();
    static QString byMemory();
    // The value the list takes after a click: memory after processor and back.
    static QString toggledList(const QString& current);

    // A program's share of one core as people read it: "4%", "143%" for one busy on several.
    static QString coreShare(double fraction);
    // The word for the memory pressure.
    static QString pressureWord(ActivitySnapshot::Pressure pressure);
};

} // namespace tw
