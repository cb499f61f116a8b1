// The word clock: a grid of letters in which the words of the time light up, in five-minute steps,
// with a dot for each minute past the step.
#pragma once

#include "faces/WidgetFace.h"

#include <QStringList>

namespace tw {

class WordClockFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;

    // The words lit at `time`, in reading order: "IT IS TWENTY PAST FIVE".
    static QStringList words(const QTime& time);
};

} // namespace tw
