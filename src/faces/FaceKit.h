// Drawing helpers the faces share: fonts, text fitted to a box, progress bars, symbols.
#pragma once

#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QRectF>
#include <QString>
#include <QTimeZone>

class QPainter;

namespace tw {

struct FaceContext;

namespace FaceKit {

// The face font at a pixel size (points at scale 1) and weight; digits are tabular so a
// ticking time does not jiggle.
QFont font(qreal pixelSize, QFont::Weight weight = QFont::Normal);

// The largest pixel size, at most `maxPixelSize`, at which `text` fits in `box` on one line.
qreal fittingPixelSize(const QString& text, const QSizeF& box, QFont::Weight weight,
                       qreal maxPixelSize);

// As QPainter::drawText, large text coming from the context's text cache when it has one.
// Returns the rectangle the text's line took.
QRectF drawText(QPainter& painter, const FaceContext& context, const QRectF& rect, int flags,
                const QString& text, const QFont& font, const QColor& color);

// Draws `text` on one line fitted into `rect` (shrunk to fit, never above `maxPixelSize`).
// Returns the rectangle the text actually took.
QRectF drawFitted(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QString& text, QFont::Weight weight, const QColor& color,
                  Qt::Alignment alignment, qreal maxPixelSize);

// Draws `text` at a fixed size, elided at the right if it is too long for `rect`.
void drawElided(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& text, const QFont& font, const QColor& color,
                Qt::Alignment alignment);

// A rounded bar of `fraction` (clamped to 0...1) over a faint track.
void drawBar(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill,
             const QColor& track);

// A ring of `fraction` starting at twelve o'clock, clockwise.
void drawRing(QPainter& painter, const QRectF& rect, qreal lineWidth, double fraction,
              const QColor& fill, const QColor& track);

// The named symbol, or when the icon set lacks it, the first letter of `fallbackText` in a circle.
void drawSymbol(QPainter& painter, const FaceContext& context, const QString& symbol,
                const QRectF& rect, const QColor& color, const QString& fallbackText);

// The time zone of a settings value: an IANA id; empty or unknown means the system zone.
QTimeZone zone(const QString& id);

// The context's time in the zone of its "zone" setting; the time as given (the host's local
// time) when the setting is empty, which spares a zone conversion on every tick.
QDateTime zoned(const FaceContext& context);

// Whether times read with a 24-hour clock: the "format" setting ("12" or "24"), else the locale.
bool uses24Hour(const FaceContext& context);

// "14:05" or "2:05" (the AM/PM mark is drawn apart by the faces that have room for it).
QString hoursMinutes(const QTime& time, bool use24Hour);
// "AM" or "PM" from the locale.
QString dayHalf(const QTime& time);

// The city of an IANA id: "America/New_York" gives "New York".
QString cityName(const QString& zoneId);

} // namespace FaceKit

} // namespace tw
