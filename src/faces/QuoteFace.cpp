#include "faces/QuoteFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "text/L.h"
#include "workspace/QuoteBook.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tw {

namespace {

QFont quoteFont(const FaceContext& context, qreal pixelSize) {
    if (context.setting(QStringLiteral("style"), QStringLiteral("serif")) ==
        QLatin1String("sans")) {
        return FaceKit::font(pixelSize, QFont::Medium);
    }
    QFont font;
    font.setFamilies(
        {QStringLiteral("P052"), QStringLiteral("Noto Serif"), QStringLiteral("DejaVu Serif")});
    font.setStyleHint(QFont::Serif);
    font.setItalic(true);
    font.setPixelSize(std::max(1, static_cast<int>(pixelSize)));
    return font;
}

// The largest size up to `most` at which the words, wrapped, fit `box`.
qreal fittingSize(const FaceContext& context, const QString& text, const QSizeF& box, qreal most) {
    qreal size = most;
    while (size > 9) {
        const QFontMetricsF metrics(quoteFont(context, size));
        const QRectF need = metrics.boundingRect(QRectF(QPointF(0, 0), QSizeF(box.width(), 1e6)),
                                                 Qt::TextWordWrap, text);
        if (need.height() <= box.height() && need.width() <= box.width()) {
            break;
        }
        size -= size > 24 ? 2 : 1;
    }
    return size;
}

} // namespace

std::optional<TimeGrain> QuoteFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

Quote QuoteFace::quoteOf(const FaceContext& context) {
    const QList<Quote> all =
        QuoteBook::collection(context.setting(QStringLiteral("source"), QStringLiteral("shipped")),
                              context.setting(QStringLiteral("own")));
    const QDate day = context.now.date();
    const int shift = QuoteBook::shiftOn(context.setting(QStringLiteral("pick")), day);
    const qsizetype index = QuoteBook::pick(all.size(), day, context.instanceID, shift);
    return index < 0 ? Quote{} : all[index];
}

void QuoteFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Quote quote = quoteOf(context);
    const bool low = rect.height() < 110;
    const bool wide = rect.width() > rect.height() * 2.2;
    // The opening mark: a large accent glyph at the top left, the words beside or under it.
    const qreal markSize = low ? rect.height() * 0.5 : std::min(rect.height() * 0.3, 64.0);
    const QRectF mark(rect.left(), rect.top() - markSize * 0.12, markSize * 0.8, markSize);
    painter.save();
    QFont markFont = quoteFont(context, markSize * 1.5);
    markFont.setItalic(false);
    markFont.setBold(true);
    painter.setFont(markFont);
    QColor accent = context.accent();
    accent.setAlphaF(0.85F);
    painter.setPen(accent);
    painter.drawText(mark, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("\u201C"));
    painter.restore();

    const qreal authorHeight = low ? 16 : std::clamp(rect.height() * 0.1, 18.0, 28.0);
    QRectF words = rect.adjusted(mark.width() * (wide || low ? 1.0 : 0.0),
                                 wide || low ? 0 : markSize * 0.78, 0, -authorHeight - 6);
    if (quote.text.isEmpty()) {
        FaceKit::drawElided(painter, context, words, L("quote.none", QStringLiteral("No quotes")),
                            FaceKit::font(14), context.secondary(), Qt::AlignCenter);
        return;
    }
    const qreal most = std::min(words.height() * 0.42, 40.0);
    const QString key = QStringLiteral("quote|%1|%2x%3|%4")
                            .arg(quote.text)
                            .arg(words.width())
                            .arg(words.height())
                            .arg(context.setting(QStringLiteral("style")));
    const qreal size =
        context.pictures != nullptr
            ? context.pictures->fittedSize(
                  key, [&] { return fittingSize(context, quote.text, words.size(), most); })
            : fittingSize(context, quote.text, words.size(), most);
    painter.save();
    painter.setFont(quoteFont(context, size));
    painter.setPen(context.primary());
    const QFontMetricsF metrics(painter.font());
    const QRectF need = metrics.boundingRect(QRectF(QPointF(0, 0), QSizeF(words.width(), 1e6)),
                                             Qt::TextWordWrap, quote.text);
    // Short words sit in the middle of the room rather than at its top.
    const QRectF placed(words.left(),
                        words.top() + std::max(0.0, (words.height() - need.height()) / 2),
                        words.width(), std::min(words.height(), need.height() + 2));
    painter.setClipRect(rect);
    painter.drawText(placed, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, quote.text);
    painter.restore();
    if (!quote.author.isEmpty()) {
        FaceKit::drawElided(
            painter, context,
            QRectF(rect.left(), rect.bottom() - authorHeight, rect.width(), authorHeight),
            QStringLiteral("\u2014 ") + quote.author,
            FaceKit::font(authorHeight * 0.62, QFont::DemiBold), context.secondary(),
            Qt::AlignRight | Qt::AlignVCenter);
    }
}

WidgetFace::Spot QuoteFace::spotAt(const QRectF&, QPointF, const FaceContext&) const {
    Spot spot;
    spot.command = QStringLiteral("next");
    spot.help = L("quote.help", QStringLiteral("Click for another quote"));
    return spot;
}

} // namespace tw
