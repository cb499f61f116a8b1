#include "faces/FlipClockFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace tw {

namespace {

void card(QPainter& painter, const QRectF& rect, const QString& digits, const FaceContext& context,
          const QString& corner) {
    const qreal radius = std::min(rect.width(), rect.height()) * 0.12;
    const QColor body = context.elevated();
    // The blank card never changes: drawn once, copied after.
    const auto blank = [&](QPainter& p) {
        const QRectF local(QPointF(0, 0), rect.size());
        p.setPen(Qt::NoPen);
        p.setBrush(body);
        p.drawRoundedRect(local, radius, radius);
        // The lower half is a shade darker: the card's fold catches less light.
        p.setClipRect(QRectF(0, local.center().y(), local.width(), local.height() / 2));
        p.setBrush(QColor(0, 0, 0, 40));
        p.drawRoundedRect(local, radius, radius);
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (context.pictures != nullptr) {
        context.pictures->draw(painter, rect, QStringLiteral("flipcard|%1").arg(body.rgba()),
                               context.devicePixelRatio * context.scale, blank);
    } else {
        painter.save();
        painter.translate(rect.topLeft());
        blank(painter);
        painter.restore();
    }
    FaceKit::drawFitted(painter, context,
                        rect.adjusted(rect.width() * 0.08, rect.height() * 0.08,
                                      -rect.width() * 0.08, -rect.height() * 0.08),
                        digits, QFont::Bold, context.primary(), Qt::AlignCenter,
                        rect.height() * 0.78);
    const qreal seam = std::max<qreal>(1, rect.height() / 60);
    painter.setPen(QPen(QColor(0, 0, 0, 110), seam, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(rect.left(), rect.center().y()),
                     QPointF(rect.right(), rect.center().y()));
    if (!corner.isEmpty()) {
        painter.setFont(FaceKit::font(std::max<qreal>(7, rect.height() * 0.12), QFont::DemiBold));
        painter.setPen(context.secondary());
        painter.drawText(rect.adjusted(rect.width() * 0.07, rect.height() * 0.04, 0, 0),
                         Qt::AlignLeft | Qt::AlignTop, corner);
    }
    painter.restore();
}

} // namespace

bool FlipClockFace::showsSeconds(WidgetSize size) {
    return size == WidgetSize::banner || size == WidgetSize::panorama;
}

std::optional<TimeGrain> FlipClockFace::grain(WidgetSize size, const WidgetSettings&) const {
    return showsSeconds(size) ? TimeGrain::Seconds : TimeGrain::Minutes;
}

void FlipClockFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QDateTime now = FaceKit::zoned(context);
    const bool h24 = FaceKit::uses24Hour(context);
    const QTime t = now.time();
    const int hour = h24 ? t.hour() : (t.hour() % 12 == 0 ? 12 : t.hour() % 12);
    QStringList cards{QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')),
                      QStringLiteral("%1").arg(t.minute(), 2, 10, QLatin1Char('0'))};
    if (showsSeconds(context.size)) {
        cards << QStringLiteral("%1").arg(t.second(), 2, 10, QLatin1Char('0'));
    }

    // Large tiles keep a line for the date under the cards.
    const bool dated = rect.height() > 120;
    const qreal dateHeight = dated ? rect.height() * 0.16 : 0;
    const QRectF area = rect.adjusted(0, 0, 0, -dateHeight);
    const qreal gap = std::max<qreal>(4, area.width() * 0.035);
    const auto n = static_cast<qreal>(cards.size());
    qreal cardWidth = (area.width() - gap * (n - 1)) / n;
    // Narrow cards may grow taller, so a small tile still reads from afar.
    const qreal cardHeight =
        std::min(area.height(), cardWidth * (context.size == WidgetSize::small ? 1.8 : 1.25));
    cardWidth = std::min(cardWidth, cardHeight * 1.1);
    const qreal total = cardWidth * n + gap * (n - 1);
    qreal x = area.left() + (area.width() - total) / 2;
    const qreal y = area.top() + (area.height() - cardHeight) / 2;
    for (qsizetype i = 0; i < cards.size(); ++i) {
        const QString corner = (i == 0 && !h24) ? FaceKit::dayHalf(t) : QString();
        card(painter, QRectF(x, y, cardWidth, cardHeight), cards.at(i), context, corner);
        x += cardWidth + gap;
    }
    if (dated) {
        FaceKit::drawFitted(
            painter, context,
            QRectF(rect.left(), rect.bottom() - dateHeight * 0.9, rect.width(), dateHeight * 0.8),
            QLocale().toString(now.date(), QStringLiteral("dddd, d MMMM")), QFont::Medium,
            context.secondary(), Qt::AlignCenter, dateHeight * 0.7);
    }
}

} // namespace tw
