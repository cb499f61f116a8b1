// The network: the rates down and up through one interface, its name and kind, the history of
// both directions as area charts and the totals since it came up on the larger sizes; "Offline"
// when no interface is up.
#pragma once

#include "faces/WidgetFace.h"
#include "readings/NetworkSnapshot.h"

namespace tw {

class NetworkFace final : public WidgetFace {
public:
    enum class Direction { down, up };

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // The interface the "interface" setting names, or the primary one when it names none; null
    // when that interface is absent.
    static const InterfaceRate* chosen(const NetworkSnapshot& snapshot, const QString& name);
    // The rate of `interface` in each reading, oldest first; 0 where it was absent.
    static QList<double> history(const QList<NetworkSnapshot>& readings, const QString& interface,
                                 Direction direction);
};

} // namespace tw
