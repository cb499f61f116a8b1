// A clock dial with hour, minute and optional second hands, shared by the clock faces.
#pragma once

#include <QColor>
#include <QRectF>
#include <QTime>

class QPainter;

namespace tw {

struct FaceContext;

class AnalogDial {
public:
    enum class Hands { HoursMinutes, WithSeconds };
    enum class Detail { Plain, Numbered };
    // A dial whose face is lighter by day and darker by night, for world clocks.
    enum class Daylight { Ignore, Shade };

    static void draw(QPainter& painter, const QRectF& rect, const QTime& time,
                     const FaceContext& context, Hands hands, Detail detail,
                     Daylight daylight = Daylight::Ignore);
};

} // namespace tw
