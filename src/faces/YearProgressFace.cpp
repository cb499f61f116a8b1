#include "faces/YearProgressFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ProgressText.h"
#include "text/L.h"

#include <QPainter>

#include <cmath>

namespace tw {

double YearProgressFace::fraction(const QDateTime& now) {
    const QDateTime start = QDate(now.date().year(), 1, 1).startOfDay(now.timeZone());
    const QDateTime end = QDate(now.date().year() + 1, 1, 1).startOfDay(now.timeZone());
    const qint64 length = start.secsTo(end);
    return length <= 0
               ? 0.0
               : std::clamp(static_cast<double>(start.secsTo(now)) / static_cast<double>(length),
                            0.0, 1.0);
}

std::optional<TimeGrain> YearProgressFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

void YearProgressFace::paint(QPainter& painter, const QRectF& rect,
                             const FaceContext& context) const {
    const QDateTime now = context.now;
    const double f = fraction(now);
    const QString year = QString::number(now.date().year());
    const int day = now.date().dayOfYear();
    const int days = now.date().daysInYear();
    const QString dayText =
        L("yearprogress.day", QStringLiteral("Day %1 of %2")).arg(day).arg(days);
    QColor track = context.primary();
    track.setAlphaF(0.12F);

    if (context.size == WidgetSize::small) {
        FaceKit::drawRing(painter, rect, rect.width() * 0.1, f, context.accent(), track);
        const QRectF inner = rect.adjusted(rect.width() * 0.2, rect.height() * 0.28,
                                           -rect.width() * 0.2, -rect.height() * 0.28);
        FaceKit::drawFitted(painter, context, inner.adjusted(0, 0, 0, -inner.height() * 0.45), year,
                            QFont::DemiBold, context.secondary(),
                            Qt::AlignHCenter | Qt::AlignBottom, 12);
        FaceKit::drawFitted(painter, context, inner.adjusted(0, inner.height() * 0.5, 0, 0),
                            ProgressText::percent(f, 0), QFont::DemiBold, context.primary(),
                            Qt::AlignHCenter | Qt::AlignTop, 18);
        return;
    }

    const bool dots = context.size == WidgetSize::large || context.size == WidgetSize::wideTall;
    const qreal line = dots ? rect.height() / 7 : rect.height() / 3.4;
    const QRectF header(rect.left(), rect.top(), rect.width(), line * 1.2);
    FaceKit::drawFitted(painter, context, header, year, QFont::Bold, context.accent(),
                        Qt::AlignLeft | Qt::AlignVCenter, line * 0.9);
    FaceKit::drawFitted(painter, context, header, ProgressText::percent(f, dots ? 1 : 2),
                        QFont::Light, context.primary(), Qt::AlignRight | Qt::AlignVCenter,
                        line * 1.1);
    const QRectF footer(rect.left(), rect.bottom() - line * 0.9, rect.width(), line * 0.9);
    FaceKit::drawFitted(painter, context, footer, dayText, QFont::Normal, context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, line * 0.62);

    if (!dots) {
        const QRectF bar(rect.left(), header.bottom() + line * 0.35, rect.width(), line * 0.6);
        FaceKit::drawBar(painter, bar, f, context.accent(), track);
        return;
    }
    // One dot per day of the year, the passed days filled, today in the accent at full size.
    const QRectF field(rect.left(), header.bottom() + line * 0.3, rect.width(),
                       footer.top() - header.bottom() - line * 0.5);
    const double aspect = field.width() / field.height();
    const int columns = static_cast<int>(std::ceil(std::sqrt(days * aspect)));
    const int rowsCount = (days + columns - 1) / columns;
    const qreal pitch = std::min(field.width() / columns, field.height() / rowsCount);
    const qreal left = field.left() + (field.width() - pitch * columns) / 2;
    const qreal radius = pitch * 0.34;
    QColor passed = context.primary();
    passed.setAlphaF(0.75F);
    painter.setPen(Qt::NoPen);
    for (int d = 1; d <= days; ++d) {
        const int i = d - 1;
        const QPointF c(left + (i % columns + 0.5) * pitch,
                        field.top() + (i / columns + 0.5) * pitch);
        painter.setBrush(d < day ? passed : d == day ? context.accent() : track);
        painter.drawEllipse(c, d == day ? radius * 1.25 : radius,
                            d == day ? radius * 1.25 : radius);
    }
}

} // namespace tw
