// One share's price of the day, as the chart service answers it.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct StockQuote {
    // A day of 15-minute closes has 96 at most; anything far beyond is not a day's chart.
    static constexpr qsizetype maxSeries = 400;

    QString symbol;
    QString name;
    double price = 0;
    // Zero when the answer names none.
    double previousClose = 0;
    QString currency;
    // The day's closes, oldest first, without the gaps the service leaves.
    QList<double> series;
    QDateTime updated;

    double change() const { return previousClose > 0 ? price - previousClose : 0; }
    // Of the previous close; nullopt when there is none to compare with.
    std::optional<double> percent() const;

    // The first result of a chart answer; nullopt when it holds no usable price. Lenient: a
    // missing or wrong-typed field is absent, and the series ends at `maxSeries`.
    static std::optional<StockQuote> fromChart(const QByteArray& answer, const QString& symbol,
                                               const QDateTime& now);

    bool operator==(const StockQuote&) const = default;
};

// The one form of a symbol that keys the store: trimmed and upper-case.
QString normalizedSymbol(const QString& symbol);

} // namespace tw
