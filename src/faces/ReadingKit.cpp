#include "faces/ReadingKit.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QFontMetricsF>
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

// A text in lines of one pixel size.
struct Lines {
    QStringList lines;
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
        return {{text}, single};
    }
    const QSizeF half(box.width(), box.height() / 2);
    Lines two{{text.left(split), text.mid(split + 1)}, 0};
    two.pixelSize = std::min(FaceKit::fittingPixelSize(two.lines[0], half, weight, maxPixelSize),
                             FaceKit::fittingPixelSize(two.lines[1], half, weight, maxPixelSize));
    return two.pixelSize > single * 1.15 ? two : Lines{{text}, single};
}

// A sentence wrapped at word breaks into as many lines of `width` as it takes.
Lines wrapped(const QString& text, qreal width, QFont::Weight weight, qreal pixelSize) {
    const QFontMetricsF metrics(FaceKit::font(pixelSize, weight));
    Lines result{{}, pixelSize};
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (!line.isEmpty() && metrics.horizontalAdvance(longer) > width) {
            result.lines.append(line);
            line = word;
        } else {
            line = longer;
        }
    }
    if (!line.isEmpty()) {
        result.lines.append(line);
    }
    return result;
}

qreal lineHeight(const Lines& lines) {
    return lines.pixelSize * 1.3;
}

qreal heightOf(const Lines& lines) {
    return lineHeight(lines) * static_cast<qreal>(lines.lines.size());
}

// The lines from `top` down, aligned across as `alignment` says.
void drawAt(QPainter& painter, const FaceContext& context, const QRectF& rect, qreal top,
            const Lines& lines, QFont::Weight weight, const QColor& color,
            Qt::Alignment alignment) {
    const int flags = static_cast<int>((alignment & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter |
                                       Qt::TextSingleLine);
    const QFont font = FaceKit::font(lines.pixelSize, weight);
    const qreal line = lineHeight(lines);
    for (const QString& text : lines.lines) {
        FaceKit::drawText(painter, context, QRectF(rect.left(), top, rect.width(), line), flags,
                          text, font, color);
        top += line;
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
    // The detail is read, not glanced at: it wraps onto as many lines as it needs, and the two
    // texts come down in turn, the headline staying the larger; a detail that has no room at a
    // readable size is left out rather than drawn too small to read.
    const qreal readable = std::min(most * 0.72, 9.5);
    Lines under =
        wrapped(detail, text.width(), QFont::Normal, std::min(most * 0.72, head.pixelSize * 0.8));
    const qreal room = across ? rect.height() : rect.height() - std::min(side, most * 1.6);
    const auto needed = [&] { return heightOf(head) + heightOf(under); };
    const auto shrink = [&] {
        if (head.pixelSize > under.pixelSize * 1.3) {
            head = broken(headline, box, QFont::DemiBold, head.pixelSize * 0.92);
        } else if (under.pixelSize * 0.92 >= readable) {
            under = wrapped(detail, text.width(), QFont::Normal, under.pixelSize * 0.92);
        } else {
            return false;
        }
        return true;
    };
    while (needed() > room && shrink()) {
    }
    // A headline that came down to one line can end up below the detail; the detail follows it.
    if (under.pixelSize > head.pixelSize * 0.85) {
        under = wrapped(detail, text.width(), QFont::Normal, head.pixelSize * 0.8);
    }
    if (needed() > room) {
        under.lines.clear();
    }
    if (const qreal over = needed(); over > room) {
        head.pixelSize *= room / over;
    }
    const qreal words = needed();
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
    drawAt(painter, context, text, top + heightOf(head), under, QFont::Normal, context.secondary(),
           alignment);
}

} // namespace tw::ReadingKit
