#include "market/CryptoCoin.h"

namespace tw {

const QList<CryptoCoin>& CryptoCoin::all() {
    static const QList<CryptoCoin> coins{
        {QStringLiteral("bitcoin"), QStringLiteral("BTC"), QStringLiteral("Bitcoin")},
        {QStringLiteral("ethereum"), QStringLiteral("ETH"), QStringLiteral("Ethereum")},
        {QStringLiteral("binancecoin"), QStringLiteral("BNB"), QStringLiteral("BNB")},
        {QStringLiteral("solana"), QStringLiteral("SOL"), QStringLiteral("Solana")},
        {QStringLiteral("ripple"), QStringLiteral("XRP"), QStringLiteral("XRP")},
        {QStringLiteral("cardano"), QStringLiteral("ADA"), QStringLiteral("Cardano")},
        {QStringLiteral("dogecoin"), QStringLiteral("DOGE"), QStringLiteral("Dogecoin")},
        {QStringLiteral("tron"), QStringLiteral("TRX"), QStringLiteral("TRON")},
        {QStringLiteral("avalanche-2"), QStringLiteral("AVAX"), QStringLiteral("Avalanche")},
        {QStringLiteral("polkadot"), QStringLiteral("DOT"), QStringLiteral("Polkadot")},
        {QStringLiteral("chainlink"), QStringLiteral("LINK"), QStringLiteral("Chainlink")},
        {QStringLiteral("litecoin"), QStringLiteral("LTC"), QStringLiteral("Litecoin")},
        {QStringLiteral("stellar"), QStringLiteral("XLM"), QStringLiteral("Stellar")},
        {QStringLiteral("monero"), QStringLiteral("XMR"), QStringLiteral("Monero")},
        {QStringLiteral("tether"), QStringLiteral("USDT"), QStringLiteral("Tether")},
        {QStringLiteral("usd-coin"), QStringLiteral("USDC"), QStringLiteral("USD Coin")},
    };
    return coins;
}

std::optional<CryptoCoin> CryptoCoin::coin(const QString& idSymbolOrName) {
    const QString wanted = idSymbolOrName.trimmed();
    for (const CryptoCoin& coin : all()) {
        if (coin.id.compare(wanted, Qt::CaseInsensitive) == 0 ||
            coin.symbol.compare(wanted, Qt::CaseInsensitive) == 0 ||
            coin.name.compare(wanted, Qt::CaseInsensitive) == 0) {
            return coin;
        }
    }
    return std::nullopt;
}

} // namespace tw
