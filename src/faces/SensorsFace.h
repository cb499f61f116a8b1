// The machine's temperatures and fans: the processor's figure large, the battery, storage and
// fans beside it, the other sensors and a history on the larger tiles; a plain statement where
// the machine reports none.
#pragma once

#include "faces/WidgetFace.h"
#include "readings/SensorSnapshot.h"

#include <QList>

namespace tw {

struct ReadingsBoard;

class SensorsFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // Whether the "unit" setting ("c", "f", or empty for what the locale uses) reads Fahrenheit.
    static bool fahrenheit(const QString& unit);
    // "54°C" or "129°F", whole degrees; "—" for none.
    static QString degrees(std::optional<double> celsius, bool fahrenheit);
    // "1,850 rpm".
    static QString rpm(double speed);
    // The reading the tile shows large: the processor's, else the first there is.
    static std::optional<SensorReading> hero(const SensorSnapshot& snapshot);
    // The hero's kind in each of the board's recent readings that has it, oldest first.
    static QList<double> history(const ReadingsBoard* board, SensorKind kind);
};

} // namespace tw
