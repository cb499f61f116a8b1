#include "faces/ReadingKit.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <numeric>

namespace tw::ReadingKit {

QColor warning(const FaceContext& context) {
    // Darker on light glass, where the bright hue would not hold against white.
    return context.glass.darkInk() ? QColor(214, 52, 34) : QColor(255, 112, 84);
}

QColor track(const FaceContext& context) {
    QColor c = context.primary();
    c.setAlphaF(0.14F);
    return c;
}

QColor level(const FaceContext& context, double fraction) {
    return fraction > highFraction ? warning(context) : context.accent();
}

void drawChartField(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    QColor field = track(context);
    field.setAlphaF(field.alphaF() * 0.5F);
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(field);
    painter.drawRoundedRect(rect, 3, 3);
    painter.restore();
}

void drawColumns(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QList<double>& input) {
    if (input.isEmpty() || rect.isEmpty()) {
        return;
    }
    // Columns narrower than two points say nothing: neighbours are averaged until they fit.
    const auto most = std::max<qsizetype>(1, static_cast<qsizetype>((rect.width() + 1) / 3));
    QList<double> values;
    if (input.size() <= most) {
        values = input;
    } else {
        const qsizetype group = (input.size() + most - 1) / most;
        for (qsizetype i = 0; i < input.size(); i += group) {
            const qsizetype end = std::min(input.size(), i + group);
            values << std::accumulate(input.begin() + i, input.begin() + end, 0.0) /
                          static_cast<double>(end - i);
        }
    }
    const auto n = static_cast<qreal>(values.size());
    // Gaps shrink with many cores but never vanish.
    const qreal gap = std::clamp(rect.width() / n * 0.25, 1.0, 4.0);
    const qreal w = (rect.width() - gap * (n - 1)) / n;
    const qreal radius = std::min<qreal>(w / 2, 2.5);
    painter.save();
    painter.setPen(Qt::NoPen);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QRectF column(rect.left() + static_cast<qreal>(i) * (w + gap), rect.top(), w,
                            rect.height());
        painter.setBrush(track(context));
        painter.drawRoundedRect(column, radius, radius);
        const double v = std::clamp(values.at(i), 0.0, 1.0);
        if (v > 0) {
            QRectF fill = column;
            fill.setTop(column.bottom() - std::max(column.height() * v, radius * 2));
            painter.setBrush(level(context, v));
            painter.drawRoundedRect(fill, radius, radius);
        }
    }
    painter.restore();
}

void drawArea(QPainter& painter, const QRectF& rect, const QList<double>& values, qsizetype slots,
              double maximum, const QColor& color) {
    if (values.size() < 2 || rect.isEmpty()) {
        return;
    }
    const qsizetype count = std::min(values.size(), std::max(slots, qsizetype{2}));
    const qsizetype first = values.size() - count;
    double top = maximum;
    for (qsizetype i = first; i < values.size(); ++i) {
        top = std::max(top, values.at(i));
    }
    if (!(top > 0)) {
        top = 1;
    }
    const qreal step = rect.width() / static_cast<qreal>(std::max(slots, count) - 1);
    const qreal left = rect.right() - step * static_cast<qreal>(count - 1);
    auto at = [&](qsizetype i) {
        const double v = std::clamp(values.at(first + i), 0.0, top);
        return QPointF(left + step * static_cast<qreal>(i),
                       rect.bottom() - rect.height() * v / top);
    };
    QPainterPath line(at(0));
    for (qsizetype i = 1; i < count; ++i) {
        line.lineTo(at(i));
    }
    QPainterPath area = line;
    area.lineTo(rect.right(), rect.bottom());
    area.lineTo(left, rect.bottom());
    area.closeSubpath();

    QLinearGradient shade(rect.topLeft(), rect.bottomLeft());
    QColor strong = color;
    strong.setAlphaF(0.42F);
    QColor faint = color;
    faint.setAlphaF(0.06F);
    shade.setColorAt(0, strong);
    shade.setColorAt(1, faint);
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawPath(area);
    // The line's half width stays inside the rect at the top.
    painter.setClipRect(rect.adjusted(0, -0.5, 0, 0.5), Qt::IntersectClip);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
    painter.restore();
}

void drawBattery(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill,
                 const QColor& outline) {
    // A body twice as wide as tall and a nub, fitted into the rect and centred.
    const qreal height = std::min(rect.height(), rect.width() / 2.15);
    const qreal width = height * 2.15;
    const QRectF whole(rect.center().x() - width / 2, rect.center().y() - height / 2, width,
                       height);
    const qreal nubWidth = height * 0.12;
    const qreal line = std::max<qreal>(1, height * 0.08);
    const QRectF body = whole.adjusted(line / 2, line / 2, -nubWidth - line / 2, -line / 2);
    const qreal radius = height * 0.22;
    painter.save();
    painter.setPen(QPen(outline, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(body, radius, radius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(outline);
    const QRectF nub(body.right() + line / 2, whole.center().y() - height * 0.18, nubWidth,
                     height * 0.36);
    painter.drawRoundedRect(nub, nubWidth / 2, nubWidth / 2);
    if (fraction >= 0) {
        const qreal gap = line * 1.4;
        QRectF inside = body.adjusted(gap, gap, -gap, -gap);
        inside.setWidth(
            std::max(inside.height() * 0.3, inside.width() * std::clamp(fraction, 0.0, 1.0)));
        painter.setBrush(fill);
        painter.drawRoundedRect(inside, radius * 0.5, radius * 0.5);
    }
    painter.restore();
}

namespace {

// A text as one line or two, at one pixel size.
struct Lines {
    QString first;
    QString second; // empty for one line
    qreal pixelSize;
};

Lines broken(const QString& text, const QSizeF& box, QFont::Weight weight, qreal maxPixelSize) {
    const qreal single = FaceKit::fittingPixelSize(text, box, weight, maxPixelSize);
    const qsizetype middle = text.size() / 2;
    const qsizetype before = text.lastIndexOf(QLatin1Char(' '), middle);
    const qsizetype after = text.indexOf(QLatin1Char(' '), middle);
    const qsizetype split = before < 0                                       ? after
                            : after < 0 || middle - before <= after - middle ? before
                                                                             : after;
    // Two lines only where one would shrink the text well below the size asked for.
    if (split < 0 || single >= maxPixelSize * 0.7) {
        return {text, {}, single};
    }
    const QSizeF half(box.width(), box.height() / 2);
    Lines two{text.left(split), text.mid(split + 1), 0};
    two.pixelSize = std::min(FaceKit::fittingPixelSize(two.first, half, weight, maxPixelSize),
                             FaceKit::fittingPixelSize(two.second, half, weight, maxPixelSize));
    return two.pixelSize > single * 1.15 ? two : Lines{text, {}, single};
}

qreal lineHeight(const Lines& lines) {
    return lines.pixelSize * 1.3;
}

qreal heightOf(const Lines& lines) {
    return lineHeight(lines) * (lines.second.isEmpty() ? 1 : 2);
}

// The lines from `top` down, aligned across as `alignment` says.
void drawAt(QPainter& painter, const FaceContext& context, const QRectF& rect, qreal top,
            const Lines& lines, QFont::Weight weight, const QColor& color,
            Qt::Alignment alignment) {
    const int flags = static_cast<int>((alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter |
                                       Qt::TextSingleLine);
    const QFont font = FaceKit::font(lines.pixelSize, weight);
    const qreal line = lineHeight(lines);
    FaceKit::drawText(painter, context, QRectF(rect.left(), top, rect.width(), line), flags,
                      lines.first, font, color);
    if (!lines.second.isEmpty()) {
        FaceKit::drawText(painter, context, QRectF(rect.left(), top + line, rect.width(), line),
                          flags, lines.second, font, color);
    }
}

} // namespace

void drawNotice(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& symbol, const QString& headline, const QString& detail) {
    const bool across = rect.width() > rect.height() * 2.2;
    const qreal side =
        across ? std::min(rect.height() * 0.62, 56.0) : std::min(rect.height() * 0.36, 72.0);
    const QRectF text = across ? QRectF(rect.left() + side * 1.55, rect.top(),
                                        rect.width() - side * 1.55, rect.height())
                               : rect;
    const qreal most =
        across ? std::min(text.height() / 3.4, 24.0) : std::min(rect.height() * 0.16, 26.0);
    const QSizeF box(text.width(), most * 2.6);
    Lines head = broken(headline, box, QFont::DemiBold, most);
    Lines under = broken(detail, box, QFont::Normal, most * 0.72);
    // The words shrink together when they would not fit the height beside or under the symbol.
    const qreal room = across ? rect.height() : rect.height() - std::min(side, most * 1.6);
    const qreal needed = heightOf(head) + (detail.isEmpty() ? 0 : heightOf(under));
    if (needed > room) {
        head.pixelSize *= room / needed;
        under.pixelSize *= room / needed;
    }
    const qreal words = heightOf(head) + (detail.isEmpty() ? 0 : heightOf(under));
    const Qt::Alignment alignment = across ? Qt::AlignLeft : Qt::AlignHCenter;
    qreal top = 0;
    if (across) {
        FaceKit::drawSymbol(
            painter, context, symbol,
            QRectF(rect.left() + side * 0.15, rect.center().y() - side / 2, side, side),
            context.accent(), headline);
        top = rect.center().y() - words / 2;
    } else {
        // The symbol shrinks when the words need the room.
        const qreal gap = std::min(most * 0.4, std::max(0.0, rect.height() - words - side));
        const qreal mark = std::min(side, rect.height() - words - gap);
        const qreal block = mark + gap + words;
        const qreal y = rect.center().y() - block / 2;
        FaceKit::drawSymbol(painter, context, symbol,
                            QRectF(rect.center().x() - mark / 2, y, mark, mark), context.accent(),
                            headline);
        top = y + mark + gap;
    }
    drawAt(painter, context, text, top, head, QFont::DemiBold, context.primary(), alignment);
    if (!detail.isEmpty()) {
        drawAt(painter, context, text, top + heightOf(head), under, QFont::Normal,
               context.secondary(), alignment);
    }
}

} // namespace tw::ReadingKit
