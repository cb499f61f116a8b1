// Drawing and wording the faces of the machine's readings share: figures that may be missing,
// levels that turn warm when high, sizes in bytes and small history charts.
#pragma once

#include <QColor>
#include <QList>
#include <QRectF>
#include <QString>

#include <optional>

class QPainter;

namespace tw {

struct FaceContext;

namespace MeterKit {

// What a figure reads where nothing was measured.
QString missing();

// "23%" for a fraction, rounded; "—" for none. Values past the ends are clamped.
QString percent(std::optional<double> fraction);

// "512 MB", "1.4 GB", "12 GB", "1.2 TB": three figures at most, in units of 1000.
QString bytes(double count);

// The fill for a level from 0 to 1: the accent, turning orange above 0.85 and red above 0.95.
QColor levelColor(const FaceContext& context, double fraction);

// A faint version of the context's primary ink, for tracks and empty bars.
QColor track(const FaceContext& context);

// The last `count` values, or all of them when there are fewer.
QList<double> lastValues(const QList<double>& values, qsizetype count);

// An area chart of `values`, oldest at the left, scaled between `low` and `high`; a line along
// the top edge of a soft fill, over `backdrop` where it is valid. Fewer than two values draw
// only a faint base line.
void drawHistory(QPainter& painter, const QRectF& rect, const QList<double>& values,
                 const QColor& color, double low = 0, double high = 1,
                 const QColor& backdrop = QColor());

// Vertical bars side by side, one per value from 0 to 1, each over its own track; where there
// are too many for the width, neighbours share one bar at their mean.
void drawColumns(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QList<double>& values);

} // namespace MeterKit

} // namespace tw
