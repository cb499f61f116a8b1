#include "faces/QuoteKit.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "market/MarketText.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

// Below this height the line leaves no room for the figures.
constexpr qreal shortestChart = 28;
// A tile this tall puts the day under the figures, whatever its width.
constexpr qreal roomyHeight = 150;
// Facts need this width to be read, and this much to stand beside the figures.
constexpr qreal factsWidth = 150;
constexpr qreal factsBesideWidth = 250;
constexpr qreal factsLine = 16;

// Title and name on one line: the title bold, the name faint after it.
void drawHeading(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QuoteKit::Shown& shown) {
    const QFont bold = FaceKit::font(rect.height() * 0.82, QFont::DemiBold);
    const qreal titleWidth =
        std::min(QFontMetricsF(bold).horizontalAdvance(shown.title) + 1, rect.width());
    FaceKit::drawElided(painter, context,
                        QRectF(rect.left(), rect.top(), titleWidth, rect.height()), shown.title,
                        bold, context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    const qreal gap = rect.height() * 0.4;
    if (!shown.name.isEmpty() && shown.name != shown.title && rect.width() - titleWidth > gap * 3) {
        FaceKit::drawElided(painter, context,
                            QRectF(rect.left() + titleWidth + gap, rect.top(),
                                   rect.width() - titleWidth - gap, rect.height()),
                            shown.name, FaceKit::font(rect.height() * 0.72), context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
    }
}

// The change and percentage in the direction's colour, or the status in the warning hue.
void drawChangeLine(QPainter& painter, const FaceContext& context, const QRectF& rect,
                    const QuoteKit::Shown& shown, Qt::Alignment alignment) {
    const QString text = shown.change.isEmpty()
                             ? shown.percent
                             : shown.change + QStringLiteral("  ") + shown.percent;
    FaceKit::drawFitted(painter, context, rect, text, QFont::DemiBold,
                        QuoteKit::direction(context, shown.direction), alignment | Qt::AlignVCenter,
                        rect.height());
}

void drawStatus(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& status, Qt::Alignment alignment) {
    FaceKit::drawElided(painter, context, rect, status, FaceKit::font(rect.height() * 0.85),
                        ReadingKit::warning(context), alignment | Qt::AlignVCenter);
}

// Heading, price, change and status from the top of `rect`; gives the height used.
qreal drawColumn(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QuoteKit::Shown& shown, qreal unit, Qt::Alignment alignment) {
    qreal y = rect.top();
    drawHeading(painter, context, QRectF(rect.left(), y, rect.width(), unit), shown);
    y += unit * 1.25;
    const qreal priceHeight = unit * 2.1;
    FaceKit::drawFitted(painter, context, QRectF(rect.left(), y, rect.width(), priceHeight),
                        shown.price, QFont::Normal, context.primary(), alignment | Qt::AlignVCenter,
                        priceHeight);
    y += priceHeight + unit * 0.1;
    drawChangeLine(painter, context, QRectF(rect.left(), y, rect.width(), unit * 0.95), shown,
                   alignment);
    y += unit * 1.1;
    if (!shown.status.isEmpty()) {
        drawStatus(painter, context, QRectF(rect.left(), y, rect.width(), unit * 0.85),
                   shown.status, alignment);
        y += unit;
    }
    return y - rect.top();
}

// Each fact's label at the left, faint, its value at the right.
void drawFacts(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const QList<QuoteKit::Fact>& facts) {
    const qreal line = rect.height() / static_cast<qreal>(std::max<qsizetype>(facts.size(), 1));
    const QFont font = FaceKit::font(std::min(line * 0.72, 12.0));
    for (qsizetype i = 0; i < facts.size(); ++i) {
        const QRectF row(rect.left(), rect.top() + line * static_cast<qreal>(i), rect.width(),
                         line);
        FaceKit::drawElided(painter, context, row, facts.at(i).value, font, context.primary(),
                            Qt::AlignRight | Qt::AlignVCenter);
        const qreal valueWidth = QFontMetricsF(font).horizontalAdvance(facts.at(i).value);
        FaceKit::drawElided(painter, context, row.adjusted(0, 0, -valueWidth - 6, 0),
                            facts.at(i).label, font, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
    }
}

} // namespace

QColor QuoteKit::rise(const FaceContext& context) {
    return context.glass.darkInk() ? QColor(22, 138, 64) : QColor(72, 214, 120);
}

QColor QuoteKit::fall(const FaceContext& context) {
    return ReadingKit::warning(context);
}

QColor QuoteKit::direction(const FaceContext& context, double change) {
    if (change > 0) {
        return rise(context);
    }
    return change < 0 ? fall(context) : context.secondary();
}

void QuoteKit::drawSparkline(QPainter& painter, const FaceContext& context, const QRectF& rect,
                             const QList<double>& values, std::optional<double> reference,
                             const QColor& color) {
    if (values.size() < 2 || rect.height() < shortestChart / 2 || rect.width() < 8) {
        return;
    }
    double low = *std::min_element(values.cbegin(), values.cend());
    double high = *std::max_element(values.cbegin(), values.cend());
    if (reference) {
        low = std::min(low, *reference);
        high = std::max(high, *reference);
    }
    // A flat day is drawn through the middle, not along an edge.
    const double span = high - low > 0 ? high - low : std::max(std::abs(high), 1.0);
    const double bottom = high - low > 0 ? low : low - span / 2;
    const QRectF area = rect.adjusted(0, 2, 0, -2);
    const qreal step = area.width() / static_cast<qreal>(values.size() - 1);
    const auto y = [&](double v) { return area.bottom() - area.height() * (v - bottom) / span; };
    QPainterPath line(QPointF(area.left(), y(values.first())));
    for (qsizetype i = 1; i < values.size(); ++i) {
        line.lineTo(area.left() + step * static_cast<qreal>(i), y(values.at(i)));
    }
    QPainterPath fill = line;
    fill.lineTo(area.right(), rect.bottom());
    fill.lineTo(area.left(), rect.bottom());
    fill.closeSubpath();
    QLinearGradient shade(rect.topLeft(), rect.bottomLeft());
    QColor strong = color;
    strong.setAlphaF(0.32F);
    QColor faint = color;
    faint.setAlphaF(0.02F);
    shade.setColorAt(0, strong);
    shade.setColorAt(1, faint);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawPath(fill);
    if (reference) {
        QPen dashed(context.secondary(), 1, Qt::DashLine);
        dashed.setDashPattern({3, 3});
        painter.setPen(dashed);
        painter.drawLine(QPointF(area.left(), y(*reference)), QPointF(area.right(), y(*reference)));
    }
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(line);
    painter.restore();
}

void QuoteKit::drawQuote(QPainter& painter, const FaceContext& context, const QRectF& rect,
                         const Shown& shown) {
    const QColor lineColour = direction(context, shown.direction);
    const qreal w = rect.width();
    const qreal h = rect.height();
    // The column's height in units, with the status line when there is one.
    const qreal rows = shown.status.isEmpty() ? 4.6 : 5.6;
    if (w >= h * 2.6) {
        // Banner: who, what it costs, and the day, side by side.
        const qreal unit = std::min(h / rows, 18.0);
        const QRectF left(rect.left(), rect.top(), w * 0.42, h);
        drawColumn(painter, context, left, shown, unit, Qt::AlignLeft);
        drawSparkline(painter, context,
                      QRectF(rect.left() + w * 0.46, rect.top() + h * 0.1, w * 0.54, h * 0.8),
                      shown.series, shown.reference, lineColour);
        return;
    }
    if (w >= h * 1.6 && h < roomyHeight) {
        // Wide: the figures at the left, the day at the right.
        const qreal unit = std::min(h / rows, 16.0);
        const QRectF left(rect.left(), rect.top(), w * 0.5, h);
        drawColumn(painter, context, left, shown, unit, Qt::AlignLeft);
        drawSparkline(painter, context,
                      QRectF(rect.left() + w * 0.55, rect.top() + h * 0.12, w * 0.45, h * 0.76),
                      shown.series, shown.reference, lineColour);
        return;
    }
    // Small, tall, large, big: a column, the day under it where there is room; the facts beside
    // the figures on a big tile, under the day on a large one.
    const bool factsBeside = w >= factsBesideWidth && !shown.facts.isEmpty();
    const qreal unit = std::min((factsBeside ? w * 0.55 : w) / 7.5, 17.0);
    const QRectF column(rect.left(), rect.top(), factsBeside ? w * 0.55 : w, h);
    const qreal used = drawColumn(painter, context, column, shown, unit, Qt::AlignLeft);
    if (factsBeside) {
        drawFacts(painter, context,
                  QRectF(rect.left() + w * 0.6, rect.top() + unit * 1.25, w * 0.4,
                         std::min<qreal>(factsLine * static_cast<qreal>(shown.facts.size()),
                                         used - unit * 1.25)),
                  shown.facts);
    }
    QRectF below(rect.left(), rect.top() + used + unit * 0.3, w, h - used - unit * 0.3);
    if (!factsBeside && !shown.facts.isEmpty() && w >= factsWidth && below.height() > 110) {
        const qreal factsHeight = std::min<qreal>(
            factsLine * static_cast<qreal>(shown.facts.size()), below.height() * 0.35);
        drawFacts(painter, context,
                  QRectF(below.left(), below.bottom() - factsHeight, w, factsHeight), shown.facts);
        below.setBottom(below.bottom() - factsHeight - unit * 0.4);
    }
    if (below.height() >= shortestChart) {
        drawSparkline(painter, context, below, shown.series, shown.reference, lineColour);
    }
}

QString QuoteKit::offline(const FaceContext& context, const QDateTime& updated) {
    return L("market.offline", QStringLiteral("Offline · %1"))
        .arg(MarketText::age(updated, context.now.isValid() ? context.now : updated));
}

} // namespace tw
