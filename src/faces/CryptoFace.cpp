#include "faces/CryptoFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/QuoteKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "market/MarketSettings.h"
#include "market/MarketText.h"
#include "text/L.h"

namespace tw {

namespace {

const CryptoQuote* quoteOf(const FaceContext& context, const CryptoCoin& coin,
                           const QString& currency) {
    if (context.market == nullptr) {
        return nullptr;
    }
    const auto it = context.market->crypto.quotes.constFind(CryptoQuote::key(coin.id, currency));
    return it == context.market->crypto.quotes.cend() ? nullptr : &*it;
}

QuoteKit::Shown shownOf(const FaceContext& context, const CryptoCoin& coin,
                        const QString& currency) {
    QuoteKit::Shown shown;
    shown.title = coin.symbol;
    shown.name = coin.name;
    shown.price = ReadingText::missing();
    const CryptoQuote* quote = quoteOf(context, coin, currency);
    if (quote == nullptr) {
        return shown;
    }
    shown.price = MarketText::price(quote->price, currency.toUpper());
    if (quote->change24h) {
        shown.percent = MarketText::percent(*quote->change24h);
        shown.direction = *quote->change24h;
    }
    shown.series = quote->series;
    const QString key = CryptoQuote::key(coin.id, currency);
    if (context.market->crypto.unreachable.contains(key)) {
        shown.status = QuoteKit::offline(context, quote->updated);
    } else if (context.market->crypto.unknown.contains(key)) {
        shown.status = L("crypto.unknown", QStringLiteral("No price any more"));
    }
    return shown;
}

// One coin to a line: ticker, price, change.
void drawRow(QPainter& painter, const FaceContext& context, const QRectF& rect,
             const QuoteKit::Shown& shown) {
    const QFont bold = FaceKit::font(rect.height() * 0.5, QFont::DemiBold);
    const QFont plain = FaceKit::font(rect.height() * 0.5);
    const qreal w = rect.width();
    FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), w * 0.3, rect.height()),
                        shown.title, bold, context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawElided(painter, context,
                        QRectF(rect.left() + w * 0.25, rect.top(), w * 0.48, rect.height()),
                        shown.price, plain, context.primary(), Qt::AlignRight | Qt::AlignVCenter);
    FaceKit::drawElided(painter, context,
                        QRectF(rect.left() + w * 0.74, rect.top(), w * 0.26, rect.height()),
                        shown.percent, bold, QuoteKit::direction(context, shown.direction),
                        Qt::AlignRight | Qt::AlignVCenter);
}

// One coin to a column: ticker over price over change, at sizes the banner's columns share.
void drawColumn(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QuoteKit::Shown& shown, qreal priceSize) {
    const qreal line = rect.height() / 3.4;
    FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), rect.width(), line),
                        shown.title, FaceKit::font(line * 0.8, QFont::DemiBold),
                        context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawElided(
        painter, context, QRectF(rect.left(), rect.top() + line, rect.width(), line * 1.3),
        shown.price, FaceKit::font(priceSize), context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawElided(
        painter, context, QRectF(rect.left(), rect.top() + line * 2.4, rect.width(), line),
        shown.percent, FaceKit::font(std::min(line * 0.7, priceSize * 0.8), QFont::DemiBold),
        QuoteKit::direction(context, shown.direction), Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

std::optional<TimeGrain> CryptoFace::grain(WidgetSize size, const WidgetSettings& settings) const {
    Q_UNUSED(size)
    Q_UNUSED(settings)
    return TimeGrain::Minutes;
}

void CryptoFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QString currency = MarketSettings::coinCurrency(context.settings);
    const QList<CryptoCoin> coins =
        MarketSettings::coinRows(context.settings, MarketSettings::coinRowsShown);
    const CryptoCoin& coin = coins.first();
    const QString key = CryptoQuote::key(coin.id, currency);
    if (quoteOf(context, coin, currency) == nullptr) {
        const bool unreachable =
            context.market != nullptr && context.market->crypto.unreachable.contains(key);
        const bool unknown =
            context.market != nullptr && context.market->crypto.unknown.contains(key);
        if (unknown) {
            ReadingKit::drawNotice(
                painter, context, rect, QStringLiteral("exclamationmark.triangle"),
                L("crypto.unknown.title", QStringLiteral("No price of %1")).arg(coin.name),
                L("crypto.unknown.detail",
                  QStringLiteral("The service has no price of this coin in %1."))
                    .arg(currency.toUpper()));
        } else if (unreachable) {
            ReadingKit::drawNotice(
                painter, context, rect, QStringLiteral("wifi.slash"),
                L("market.unreachable", QStringLiteral("No prices")),
                L("market.unreachable.detail",
                  QStringLiteral(
                      "The price service cannot be reached. Trying again every minute.")));
        } else {
            ReadingKit::drawNotice(painter, context, rect,
                                   QStringLiteral("bitcoinsign.circle.fill"), coin.name,
                                   L("market.loading", QStringLiteral("Loading the price…")));
        }
        return;
    }
    const qreal w = rect.width();
    const qreal h = rect.height();
    if (context.size == WidgetSize::banner) {
        const qreal step = w / static_cast<qreal>(coins.size());
        QList<QuoteKit::Shown> columns;
        qreal priceSize = h / 3.4 * 1.2;
        for (const CryptoCoin& each : coins) {
            columns.append(shownOf(context, each, currency));
            priceSize =
                std::min(priceSize, FaceKit::fittingPixelSize(columns.last().price,
                                                              QSizeF(step * 0.9, h / 3.4 * 1.3),
                                                              QFont::Normal, priceSize));
        }
        for (qsizetype i = 0; i < columns.size(); ++i) {
            drawColumn(
                painter, context,
                QRectF(rect.left() + step * static_cast<qreal>(i), rect.top(), step * 0.9, h),
                columns.at(i), priceSize);
        }
        return;
    }
    if (context.size == WidgetSize::large) {
        const qreal listHeight = h * 0.36;
        QuoteKit::Shown hero = shownOf(context, coin, currency);
        QuoteKit::drawQuote(painter, context,
                            QRectF(rect.left(), rect.top(), w, h - listHeight - 6), hero);
        const qreal line = listHeight / static_cast<qreal>(coins.size() - 1);
        for (qsizetype i = 1; i < coins.size(); ++i) {
            drawRow(painter, context,
                    QRectF(rect.left(),
                           rect.bottom() - listHeight + line * static_cast<qreal>(i - 1), w, line),
                    shownOf(context, coins.at(i), currency));
        }
        return;
    }
    QuoteKit::drawQuote(painter, context, rect, shownOf(context, coin, currency));
}

} // namespace tw
