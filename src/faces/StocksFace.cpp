#include "faces/StocksFace.h"

#include "faces/FaceContext.h"
#include "faces/QuoteKit.h"
#include "faces/ReadingKit.h"
#include "market/MarketSettings.h"
#include "market/MarketText.h"
#include "text/L.h"

#include <algorithm>

namespace tw {

namespace {

const StockQuote* quoteOf(const FaceContext& context, const QString& symbol) {
    if (context.market == nullptr) {
        return nullptr;
    }
    const auto it = context.market->stocks.quotes.constFind(symbol);
    return it == context.market->stocks.quotes.cend() ? nullptr : &*it;
}

bool isUnknown(const FaceContext& context, const QString& symbol) {
    return context.market != nullptr && context.market->stocks.unknown.contains(symbol);
}

QuoteKit::Shown shownOf(const FaceContext& context, const StockQuote& quote) {
    QuoteKit::Shown shown;
    shown.title = quote.symbol;
    shown.name = quote.name;
    shown.price = MarketText::price(quote.price, quote.currency);
    if (const std::optional<double> percent = quote.percent()) {
        shown.change = MarketText::change(quote.change(), quote.currency);
        shown.percent = MarketText::percent(*percent);
        shown.direction = quote.change();
        shown.reference = quote.previousClose;
    }
    shown.series = quote.series;
    if (isUnknown(context, quote.symbol)) {
        shown.status = L("stocks.unknown", QStringLiteral("Symbol not found"));
    } else if (context.market->stocks.unreachable.contains(quote.symbol)) {
        shown.status = QuoteKit::offline(context, quote.updated);
    }
    if (quote.previousClose > 0) {
        shown.facts.append({L("stocks.lastClose", QStringLiteral("Last close")),
                            MarketText::price(quote.previousClose, quote.currency)});
    }
    if (quote.series.size() > 1) {
        const auto [low, high] = std::minmax_element(quote.series.cbegin(), quote.series.cend());
        shown.facts.append({L("stocks.dayLow", QStringLiteral("Day's low")),
                            MarketText::price(*low, quote.currency)});
        shown.facts.append({L("stocks.dayHigh", QStringLiteral("Day's high")),
                            MarketText::price(*high, quote.currency)});
    }
    return shown;
}

} // namespace

std::optional<TimeGrain> StocksFace::grain(WidgetSize size, const WidgetSettings& settings) const {
    Q_UNUSED(size)
    Q_UNUSED(settings)
    return TimeGrain::Minutes;
}

void StocksFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QString symbol = MarketSettings::stockSymbol(context.settings);
    if (const StockQuote* quote = quoteOf(context, symbol)) {
        QuoteKit::drawQuote(painter, context, rect, shownOf(context, *quote));
        return;
    }
    const QString icon = QStringLiteral("chart.line.uptrend.xyaxis");
    if (isUnknown(context, symbol)) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("exclamationmark.triangle"),
            L("stocks.unknown.title", QStringLiteral("%1 not found")).arg(symbol),
            L("stocks.unknown.hint",
              QStringLiteral(
                  "That symbol is not known. Indices start with a caret, like ^GDAXI.")));
    } else if (context.market != nullptr && context.market->stocks.unreachable.contains(symbol)) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("wifi.slash"),
            L("market.unreachable", QStringLiteral("No prices")),
            L("market.unreachable.detail",
              QStringLiteral("The price service cannot be reached. Trying again every minute.")));
    } else {
        ReadingKit::drawNotice(painter, context, rect, icon, symbol,
                               L("market.loading", QStringLiteral("Loading the price…")));
    }
}

bool StocksFace::opensSettingsOnClick(const FaceContext& context) const {
    return isUnknown(context, MarketSettings::stockSymbol(context.settings)) &&
           quoteOf(context, MarketSettings::stockSymbol(context.settings)) == nullptr;
}

} // namespace tw
