// What the Stocks, Crypto and Currency faces share: the colours of a rise and a fall, the day's
// line, and one quote laid out for any size, with what to say when the figure is old or missing.
#pragma once

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>

class QPainter;

namespace tw {

struct FaceContext;

namespace QuoteKit {

struct Fact {
    QString label;
    QString value;
};

// One quote as a face shows it.
struct Shown {
    // "AAPL", "BTC": bold, first.
    QString title;
    // "Apple Inc.": faint, after it.
    QString name;
    QString price;
    // "+$1.21", or empty; and "+0.64%".
    QString change;
    QString percent;
    // Its sign colours the change: up, down or flat.
    double direction = 0;
    // The day's values, oldest first; the line is drawn from two.
    QList<double> series;
    // Drawn as a dashed line across the chart: the previous close.
    std::optional<double> reference;
    // Why the figure may be out of date ("Offline · 5 min ago"); empty when it is fresh.
    QString status;
    // Lines of detail for the larger sizes ("Previous close", "$188.63").
    QList<Fact> facts;
};

QColor rise(const FaceContext& context);
QColor fall(const FaceContext& context);
// Rise, fall, or the faint colour for no change.
QColor direction(const FaceContext& context, double change);

// The values as a line over a soft fill, scaled to their own range (with the reference in it),
// the reference as a dashed line across.
void drawSparkline(QPainter& painter, const FaceContext& context, const QRectF& rect,
                   const QList<double>& values, std::optional<double> reference,
                   const QColor& color);

// The quote laid out for the rectangle: a column of title, price and change with the line below
// it on a tall tile, the line beside it on a wide one, three parts across a banner; the facts
// under it all where a large tile has room.
void drawQuote(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const Shown& shown);

// "Offline · 5 min ago": the last value is shown, and how old it is.
QString offline(const FaceContext& context, const QDateTime& updated);

} // namespace QuoteKit

} // namespace tw
