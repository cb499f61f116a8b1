// The coins a Crypto tile offers, by the price service's id.
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct CryptoCoin {
    QString id;
    QString symbol;
    QString name;

    bool operator==(const CryptoCoin&) const = default;

    // The table, most traded first, the coins tied to a currency last.
    static const QList<CryptoCoin>& all();
    // The entry of an id, a ticker symbol or a name, in any case; nullopt for none.
    static std::optional<CryptoCoin> coin(const QString& idSymbolOrName);
};

} // namespace tw
