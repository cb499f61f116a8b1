// The reference rates of one base currency on one day, and the decoding of their answer.
#pragma once

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QMap>
#include <QString>

#include <optional>

namespace tw {

struct CurrencyRates {
    // Far more than the central bank publishes.
    static constexpr qsizetype maxRates = 200;

    // Upper-case ISO 4217 codes throughout.
    QString base;
    QMap<QString, double> rates;
    // The day the rates are of; invalid when the answer named none that reads as a date.
    QDate day;
    QDateTime fetched;

    bool operator==(const CurrencyRates&) const = default;
};

namespace CurrencyParser {

// The rates of an answer for the base `expecting`; nullopt when it is no object with rates, or
// is for another base, so that rates never show under the wrong one. Codes that are not three
// letters and rates that are not positive numbers are left out.
std::optional<CurrencyRates> parse(const QByteArray& data, const QString& expecting,
                                   const QDateTime& now);

} // namespace CurrencyParser

// Three ASCII letters, upper-cased; empty for anything else.
QString currencyCode(const QString& text);

} // namespace tw
