// Smart Home: the Home Assistant entities a person picked, as cards — lights, switches and fans
// that a click turns on and off, sensors with their readings — and the link's honest state:
// no account, connecting, unreachable, token refused, an entity Home Assistant does not know.
#pragma once

#include "connected/SmartHomeBoard.h"
#include "faces/WidgetFace.h"

#include <QStringList>

namespace tw {

class SmartHomeFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;

    // The entity ids of the tile's "entities" setting, in order, without repeats or ids of no
    // valid shape.
    static QStringList chosen(const WidgetSettings& settings);
    // How many cards each size holds.
    static int capacity(WidgetSize size);
    // "21.5 °C", "Open", "Detected", "On": a state as a person reads it.
    static QString stateText(const HaEntity& entity);
    // The board from the host; a made-up home in previews.
    static const SmartHomeBoard& boardOf(const FaceContext& context);
    // What paint and spotAt do with a board of the tile's own.
    static void paintBoard(QPainter& painter, const QRectF& rect, const FaceContext& context,
                           const SmartHomeBoard& board);
    static Spot spotIn(const QRectF& rect, QPointF point, const FaceContext& context,
                       const SmartHomeBoard& board);
};

} // namespace tw
