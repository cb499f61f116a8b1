#include "faces/MeterKit.h"

#include "faces/FaceContext.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tw::MeterKit {

QString missing() {
    return QStringLiteral("\u2014");
}

QString percent(std::optional<double> fraction) {
    if (!fraction || std::isnan(*fraction)) {
        return missing();
    }
    const double value = std::clamp(*fraction, 0.0, 1.0) * 100.0;
    return QLocale().toString(static_cast<int>(std::lround(value))) + QLatin1Char('%');
}

QString bytes(double count) {
    if (std::isnan(count) || count < 0) {
        return missing();
    }
    static const char* const units[] = {"B", "KB", "MB", "GB", "TB", "PB"};
    int unit = 0;
    double value = count;
    while (value >= 999.5 && unit < 5) {
        value /= 1000.0;
        ++unit;
    }
    // One decimal below ten keeps three figures without a false precision above.
    const int decimals = unit > 0 && value < 9.95 ? 1 : 0;
    return QLocale().toString(value, 'f', decimals) + QLatin1Char(' ') + QLatin1String(units[unit]);
}

QColor levelColor(const FaceContext& context, double fraction) {
    if (fraction > 0.95) {
        return QColor(255, 69, 58);
    }
    if (fraction > 0.85) {
        return QColor(255, 159, 10);
    }
    return context.accent();
}

QColor track(const FaceContext& context) {
    QColor c = context.primary();
    c.setAlphaF(0.12F);
    return c;
}

QList<double> lastValues(const QList<double>& values, qsizetype count) {
    return values.size() <= count ? values : values.mid(values.size() - count);
}

void drawHistory(QPainter& painter, const QRectF& rect, const QList<double>& values,
                 const QColor& color, double low, double high, const QColor& backdrop) {
    painter.save();
    if (backdrop.isValid()) {
        QColor faint = backdrop;
        faint.setAlphaF(backdrop.alphaF() * 0.5F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(faint);
        painter.drawRoundedRect(rect, 3, 3);
    }
    QColor base = color;
    base.setAlphaF(0.25F);
    painter.setPen(QPen(base, 1));
    painter.drawLine(QPointF(rect.left(), rect.bottom() - 0.5),
                     QPointF(rect.right(), rect.bottom() - 0.5));
    if (values.size() >= 2 && rect.width() > 2 && rect.height() > 2) {
        const double span = high > low ? high - low : 1;
        const qreal step = rect.width() / static_cast<qreal>(values.size() - 1);
        // The stroke's half width stays inside the rectangle.
        const QRectF inner = rect.adjusted(0, 1, 0, -1);
        QPainterPath line;
        for (qsizetype i = 0; i < values.size(); ++i) {
            const double v = std::clamp((values.at(i) - low) / span, 0.0, 1.0);
            const QPointF p(rect.left() + step * static_cast<qreal>(i),
                            inner.bottom() - inner.height() * v);
            i == 0 ? line.moveTo(p) : line.lineTo(p);
        }
        QPainterPath area = line;
        area.lineTo(rect.right(), rect.bottom());
        area.lineTo(rect.left(), rect.bottom());
        area.closeSubpath();
        QLinearGradient fill(rect.topLeft(), rect.bottomLeft());
        QColor top = color;
        top.setAlphaF(0.35F);
        QColor bottom = color;
        bottom.setAlphaF(0.04F);
        fill.setColorAt(0, top);
        fill.setColorAt(1, bottom);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawPath(area);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setClipRect(rect.adjusted(-1, -1, 1, 1), Qt::IntersectClip);
        painter.drawPath(line);
    }
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
            painter.setBrush(levelColor(context, v));
            painter.drawRoundedRect(fill, radius, radius);
        }
    }
    painter.restore();
}

} // namespace tw::MeterKit
