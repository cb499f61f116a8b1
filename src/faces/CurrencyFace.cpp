#include "faces/CurrencyFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/QuoteKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "market/MarketSettings.h"
#include "market/MarketText.h"
#include "text/L.h"

#include <QLocale>

namespace tw {

namespace {

QString rateOf(const CurrencyRates& rates, const QString& code) {
    const auto it = rates.rates.constFind(code);
    return it == rates.rates.cend() ? ReadingText::missing() : MarketText::rate(*it);
}

// Which rates these are, or how old they are when the service is out of reach; on a wide tile
// only the day or the age, under a label that says which.
QString footnote(const FaceContext& context, const CurrencyRates& rates, bool failed, bool roomy) {
    if (failed) {
        return roomy ? QuoteKit::offline(context, rates.fetched)
                     : MarketText::age(rates.fetched,
                                       context.now.isValid() ? context.now : rates.fetched);
    }
    const QString day = rates.day.isValid()
                            ? QLocale().toString(rates.day, roomy ? QStringLiteral("d MMM yyyy")
                                                                  : QStringLiteral("d MMM"))
                            : ReadingText::missing();
    return roomy ? L("currency.ecbDated", QStringLiteral("ECB reference rates, %1")).arg(day) : day;
}

void drawFootnote(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QString& text, bool failed) {
    FaceKit::drawElided(painter, context, rect, text, FaceKit::font(rect.height() * 0.8),
                        failed ? ReadingKit::warning(context) : context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
}

// A target to a line: its code, what one of the base buys of it, and under that, faint, the
// other way round.
void drawRow(QPainter& painter, const FaceContext& context, const QRectF& rect, const QString& code,
             const QString& rate, const QString& inverse) {
    FaceKit::drawElided(painter, context, rect, code,
                        FaceKit::font(rect.height() * 0.46, QFont::DemiBold), context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    const QRectF value = inverse.isEmpty()
                             ? rect
                             : QRectF(rect.left(), rect.top(), rect.width(), rect.height() * 0.62);
    FaceKit::drawElided(painter, context, value, rate,
                        FaceKit::font(value.height() * (inverse.isEmpty() ? 0.56 : 0.8)),
                        context.primary(), Qt::AlignRight | Qt::AlignVCenter);
    if (!inverse.isEmpty()) {
        FaceKit::drawElided(painter, context,
                            QRectF(rect.left(), value.bottom(), rect.width(), rect.height() * 0.34),
                            inverse, FaceKit::font(rect.height() * 0.28), context.secondary(),
                            Qt::AlignRight | Qt::AlignVCenter);
    }
}

} // namespace

std::optional<TimeGrain> CurrencyFace::grain(WidgetSize size,
                                             const WidgetSettings& settings) const {
    Q_UNUSED(size)
    Q_UNUSED(settings)
    return TimeGrain::Minutes;
}

void CurrencyFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QString base = MarketSettings::currencyBase(context.settings);
    const QStringList targets = MarketSettings::currencyTargets(context.settings);
    const bool failed = context.market != nullptr && context.market->currency.failed.contains(base);
    const CurrencyRates* kept = nullptr;
    if (context.market != nullptr) {
        const auto it = context.market->currency.latest.constFind(base);
        kept = it != context.market->currency.latest.cend() ? &*it : nullptr;
    }
    if (kept == nullptr) {
        if (failed) {
            ReadingKit::drawNotice(
                painter, context, rect, QStringLiteral("wifi.slash"),
                L("currency.unreachable", QStringLiteral("No rates")),
                L("currency.unreachable.detail",
                  QStringLiteral("The exchange rates cannot be reached. Trying again soon.")));
        } else {
            ReadingKit::drawNotice(
                painter, context, rect,
                QStringLiteral("eurosign.arrow.trianglehead.counterclockwise.rotate.90"), base,
                L("currency.loading", QStringLiteral("Loading the rates…")));
        }
        return;
    }
    const CurrencyRates& rates = *kept;
    const qreal w = rect.width();
    const qreal h = rect.height();
    const QString against = L("currency.against", QStringLiteral("1 %1 buys")).arg(base);
    if (context.size == WidgetSize::small) {
        const QString& target = targets.first();
        const qreal line = h / 5;
        FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), w, line),
                            base + QStringLiteral(" → ") + target,
                            FaceKit::font(line * 0.8, QFont::DemiBold), context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top() + line * 1.3, w, line * 2),
                            rateOf(rates, target), QFont::Normal, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 1.9);
        drawFootnote(painter, context,
                     QRectF(rect.left(), rect.bottom() - line * 0.9, w, line * 0.9),
                     footnote(context, rates, failed, false), failed);
        return;
    }
    const bool roomy = context.size != WidgetSize::wide;
    const qreal head = roomy ? std::min(h * 0.1, 18.0) : std::min(h * 0.22, 15.0);
    const qreal foot = std::min(head * 0.8, 12.0);
    const qsizetype fit = roomy ? 6 : 3;
    const QStringList shown = targets.mid(0, fit);
    if (roomy) {
        FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), w, head), against,
                            FaceKit::font(head * 0.85, QFont::DemiBold), context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        const qreal top = rect.top() + head * 1.4;
        const qreal bottom = rect.bottom() - foot * 1.6;
        const qreal line = std::min(
            (bottom - top) / static_cast<qreal>(std::max<qsizetype>(shown.size(), 1)), 34.0);
        for (qsizetype i = 0; i < shown.size(); ++i) {
            const QString& code = shown.at(i);
            const auto rate = rates.rates.constFind(code);
            const QString inverse =
                rate == rates.rates.cend() || line < 30
                    ? QString()
                    : QStringLiteral("1 %1 = %2 %3").arg(code, MarketText::rate(1.0 / *rate), base);
            drawRow(painter, context,
                    QRectF(rect.left(), top + line * static_cast<qreal>(i), w, line), code,
                    rateOf(rates, code), inverse);
        }
    } else {
        // Wide: the base at the left, the targets in rows at the right.
        const qreal left = w * 0.34;
        const qreal gap = 8;
        const QString label = failed ? L("market.offlineShort", QStringLiteral("Offline"))
                                     : L("currency.ecb", QStringLiteral("ECB rates"));
        FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), left, head), label,
                            FaceKit::font(head * 0.8),
                            failed ? ReadingKit::warning(context) : context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.top() + head, left - 6, h * 0.42), base,
            QFont::DemiBold, context.primary(), Qt::AlignLeft | Qt::AlignVCenter, h * 0.4);
        const qreal line = (h - foot * 0.4) / static_cast<qreal>(fit);
        for (qsizetype i = 0; i < shown.size(); ++i) {
            drawRow(painter, context,
                    QRectF(rect.left() + left + gap, rect.top() + line * static_cast<qreal>(i),
                           w - left - gap, line),
                    shown.at(i), rateOf(rates, shown.at(i)), QString());
        }
    }
    const QRectF footRect = roomy ? QRectF(rect.left(), rect.bottom() - foot, w, foot)
                                  : QRectF(rect.left(), rect.bottom() - foot, w * 0.34 - 4, foot);
    drawFootnote(painter, context, footRect, footnote(context, rates, failed, roomy), failed);
}

} // namespace tw
