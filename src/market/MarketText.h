// The words and figures of the quote tiles: prices in their currency, changes with their sign,
// rates, and how old a value is.
#pragma once

#include <QDateTime>
#include <QString>

namespace tw::MarketText {

// "$189.84", "€67,234", "0.0812 CHF": the currency's sign in front where it has a common one,
// its code behind otherwise, nothing without one; no cents from a thousand up, four significant
// figures below one.
QString price(double value, const QString& currency);
// The same with a sign: "+1.23", "−0.52".
QString change(double value, const QString& currency);
// "+0.65%", "−1.20%".
QString percent(double value);
// An exchange rate with about five significant figures: "1.0842", "162.45", "0.8531".
QString rate(double value);
// How long ago: "just now", "5 min ago", "3 h ago", "2 d ago".
QString age(const QDateTime& since, const QDateTime& now);

} // namespace tw::MarketText
