// Drawing helpers the faces of the machine's readings share: the warning hue, the faint track,
// area charts of a history, a battery glyph and a symbol with a message for an honest state.
#pragma once

#include <QColor>
#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

struct FaceContext;

namespace ReadingKit {

// Above this a used fraction (memory, disk) draws in the warning hue.
inline constexpr double highFraction = 0.85;

// A red-orange that reads on the context's glass, for a value that needs attention.
QColor warning(const FaceContext& context);
// The faint track under a bar or a ring.
QColor track(const FaceContext& context);
// The fill of a level from 0 to 1: the accent, or the warning hue above `highFraction`.
QColor level(const FaceContext& context, double fraction);

// `values` (oldest first) as a filled area under a line, the newest at the right edge; the x
// axis holds `slots` values so that a short history grows in from the right. `maximum` is the
// value at the top (at least the largest value is used when it is smaller).
void drawArea(QPainter& painter, const QRectF& rect, const QList<double>& values, qsizetype slots,
              double maximum, const QColor& color);

// A faint rounded field behind a chart, so that a steady line shows where it stands.
void drawChartField(QPainter& painter, const FaceContext& context, const QRectF& rect);

// Vertical bars side by side, one per value from 0 to 1, each over its own track and filled in
// its level's colour; where there are too many for the width, neighbours share one bar at their
// mean.
void drawColumns(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QList<double>& values);

// A battery on its side, filled to `fraction` (clamped to 0...1) in `fill`; nothing inside for a
// negative fraction (unknown charge).
void drawBattery(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill,
                 const QColor& outline);

// A symbol over a headline and a detail, centred in `rect`, laid out across a wide rect and
// down a tall one, each text broken into two lines where one would be too small: what a face
// shows when its source has nothing to show.
void drawNotice(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& symbol, const QString& headline, const QString& detail);

} // namespace ReadingKit

} // namespace tw
