// Answers shaped as the three quote services give them, for tests to serve.
#pragma once

#include <QByteArray>

namespace tw::test {

inline QByteArray chartAnswer(const char* price = "189.84") {
    return QByteArray(R"({"chart":{"result":[{"meta":{"currency":"USD","symbol":"AAPL",
        "exchangeName":"NMS","instrumentType":"EQUITY","regularMarketTime":1764000000,
        "regularMarketPrice":)")
        .append(price)
        .append(R"(,"chartPreviousClose":188.63,"previousClose":188.63,
        "longName":"Apple Inc.","shortName":"Apple Inc.","dataGranularity":"15m","range":"1d"},
        "timestamp":[1763994600,1763995500,1763996400,1763997300],
        "indicators":{"quote":[{"open":[188.7,189.0,null,189.5],"close":[188.9,189.3,null,189.84],
        "volume":[1200300,800100,null,650000]}]}}],"error":null}})");
}

inline const QByteArray chartNotFound =
    R"({"chart":{"result":null,"error":{"code":"Not Found","description":"No data found, symbol may be delisted"}}})";

inline const QByteArray coinAnswer =
    R"({"bitcoin":{"usd":67234.12,"usd_24h_change":-1.2034},"ethereum":{"usd":3456.7,"usd_24h_change":2.51},
        "tether":{"usd":1.0002,"usd_24h_change":0.01},"binancecoin":{"usd":590.3,"usd_24h_change":0.4},
        "solana":{"usd":145.2,"usd_24h_change":5.2}})";

inline const QByteArray ratesAnswer =
    R"({"amount":1.0,"base":"EUR","date":"2026-11-23","rates":{"CHF":0.9412,"GBP":0.8531,"JPY":162.45,"USD":1.0842}})";

} // namespace tw::test
