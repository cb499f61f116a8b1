#include "faces/DayProgressFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ProgressText.h"

#include <QLocale>
#include <QPainter>

namespace tw {

double DayProgressFace::fraction(const QDateTime& now) {
    const QDateTime start = now.date().startOfDay(now.timeZone());
    const QDateTime end = now.date().addDays(1).startOfDay(now.timeZone());
    const qint64 length = start.secsTo(end);
    return length <= 0
               ? 0.0
               : std::clamp(static_cast<double>(start.secsTo(now)) / static_cast<double>(length),
                            0.0, 1.0);
}

std::optional<TimeGrain> DayProgressFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

void DayProgressFace::paint(QPainter& painter, const QRectF& rect,
                            const FaceContext& context) const {
    const QDateTime now = context.now;
    const double f = fraction(now);
    const QString percent = ProgressText::percent(f, 0);
    const QString left = ProgressText::remaining(
        std::chrono::seconds(now.secsTo(now.date().addDays(1).startOfDay(now.timeZone()))));
    const QString title = QLocale().toString(now.date(), QStringLiteral("dddd"));
    QColor track = context.primary();
    track.setAlphaF(0.12F);

    if (context.size == WidgetSize::small || context.size == WidgetSize::large) {
        // A ring with the percentage inside; the large tile adds the day and the hours left.
        const bool large = context.size == WidgetSize::large;
        const qreal textHeight = large ? rect.height() * 0.22 : 0;
        const qreal side = std::min(rect.width(), rect.height() - textHeight);
        const QRectF ring(rect.center().x() - side / 2, rect.top(), side, side);
        FaceKit::drawRing(painter, ring, side * 0.1, f, context.accent(), track);
        const QRectF inner = ring.adjusted(side * 0.22, side * 0.3, -side * 0.22, -side * 0.3);
        FaceKit::drawFitted(painter, context, inner, percent, QFont::DemiBold, context.primary(),
                            Qt::AlignCenter, side * 0.26);
        if (large) {
            const QRectF lines(rect.left(), ring.bottom() + 4, rect.width(), textHeight - 4);
            FaceKit::drawFitted(painter, context, lines.adjusted(0, 0, 0, -lines.height() / 2),
                                title, QFont::DemiBold, context.primary(), Qt::AlignCenter, 18);
            FaceKit::drawFitted(painter, context, lines.adjusted(0, lines.height() / 2, 0, 0), left,
                                QFont::Normal, context.secondary(), Qt::AlignCenter, 14);
        }
        return;
    }

    // Wider tiles: the day and the percentage on top, the hours of the day as segments, the time
    // left.
    const qreal line = rect.height() / (context.size == WidgetSize::wideTall ? 6 : 3.4);
    const QRectF header(rect.left(), rect.top(), rect.width(), line * 1.2);
    FaceKit::drawFitted(painter, context, header, title, QFont::DemiBold, context.accent(),
                        Qt::AlignLeft | Qt::AlignVCenter, line * 0.8);
    FaceKit::drawFitted(painter, context, header, percent, QFont::Light, context.primary(),
                        Qt::AlignRight | Qt::AlignVCenter, line * 1.1);
    const qreal barTop = header.bottom() + line * 0.3;
    const qreal barHeight =
        context.size == WidgetSize::wideTall ? rect.bottom() - barTop - line * 1.7 : line * 0.7;
    const QRectF bar(rect.left(), barTop, rect.width(), barHeight);
    if (barHeight > line) {
        // One segment per hour, the current one partly filled.
        constexpr int hours = 24;
        const qreal gap = std::max<qreal>(1.5, bar.width() / 120);
        const qreal w = (bar.width() - gap * (hours - 1)) / hours;
        const double done = f * hours;
        painter.setPen(Qt::NoPen);
        for (int h = 0; h < hours; ++h) {
            const QRectF seg(bar.left() + h * (w + gap), bar.top(), w, bar.height());
            painter.setBrush(track);
            painter.drawRoundedRect(seg, w * 0.3, w * 0.3);
            const double part = std::clamp(done - h, 0.0, 1.0);
            if (part > 0) {
                QRectF fill = seg;
                fill.setTop(seg.bottom() - seg.height() * part);
                painter.setBrush(context.accent());
                painter.drawRoundedRect(fill, w * 0.3, w * 0.3);
            }
        }
        painter.setFont(FaceKit::font(line * 0.42));
        painter.setPen(context.secondary());
        for (int h = 0; h <= hours; h += 6) {
            const qreal x = bar.left() + h * (w + gap) - (h == hours ? gap : 0);
            const Qt::Alignment a = h == 0       ? Qt::AlignLeft
                                    : h == hours ? Qt::AlignRight
                                                 : Qt::AlignHCenter;
            const QRectF label(a == Qt::AlignLeft    ? x
                               : a == Qt::AlignRight ? x - 40
                                                     : x - 20,
                               bar.bottom() + 2, 40, line * 0.6);
            painter.drawText(label, static_cast<int>(a | Qt::AlignTop), QString::number(h));
        }
    } else {
        FaceKit::drawBar(painter, bar, f, context.accent(), track);
    }
    const QRectF footer(rect.left(), rect.bottom() - line * 0.9, rect.width(), line * 0.9);
    FaceKit::drawFitted(painter, context, footer, left, QFont::Normal, context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, line * 0.62);
    FaceKit::drawFitted(
        painter, context, footer, FaceKit::hoursMinutes(now.time(), FaceKit::uses24Hour(context)),
        QFont::Medium, context.secondary(), Qt::AlignRight | Qt::AlignVCenter, line * 0.62);
}

} // namespace tw
