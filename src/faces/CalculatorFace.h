// The calculator: the sum being typed over a key pad, the result a copy takes, and on the larger
// sizes the tape of recent sums. Keys and the display answer clicks through `Spot::command`.
#pragma once

#include "faces/KeyPad.h"
#include "faces/WidgetFace.h"
#include "tools/CalculatorTile.h"

namespace tw {

class CalculatorFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The tile as its behaviour holds it, else as its settings keep it, else (previews) a sample.
    static CalculatorTile tileOf(const FaceContext& context);
    static const QList<KeyPad::Key>& keys();
    static constexpr int columns = 4;
    // The words for a sum that gave no result.
    static QString failureText(CalcResult::Status status);
};

} // namespace tw
