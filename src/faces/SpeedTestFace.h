// The speed test: a gauge of the line's speed (the live needle while a run moves bytes, else the
// last download), ping, download and upload, the history where there is room, and a button that
// starts a run or cancels it. A failed run says so and shows the last result again.
#pragma once

#include "faces/WidgetFace.h"
#include "speed/SpeedTestBoard.h"

namespace tw {

class SpeedTestFace final : public WidgetFace {
public:
    // The end of the gauge's scale, in Mbit/s.
    static constexpr double gaugeTop = 1000;

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // Where the gauge's needle stands for `mbps`: 0 to 1 on a logarithmic scale up to gaugeTop.
    static double gaugeFraction(double mbps);
    // "512", "48.6", "0.8": whole numbers from 10 on.
    static QString mbpsText(double mbps);
    // Eight made-up results, the last on show: what previews draw.
    static const SpeedTestBoard& sampleBoard();
    // The board the face draws: the host's, else the sample in previews and pictures.
    static const SpeedTestBoard& boardOf(const FaceContext& context);
    // The button's place in `rect`: the whole tile on the small size.
    static QRectF buttonRect(const QRectF& rect, WidgetSize size);
};

} // namespace tw
