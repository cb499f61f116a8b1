#include "faces/CountdownFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>
#include <QTimeZone>

#include <array>
#include <cmath>

namespace tw {

namespace {

// The reference date of the data files' time stamps.
const QDateTime& referenceDate() {
    static const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
    return reference;
}

struct Shown {
    QString title;
    std::optional<QDateTime> target;
    std::optional<QDateTime> created;
};

Shown shown(const FaceContext& context) {
    Shown s{context.setting(QStringLiteral("title")),
            CountdownFace::moment(context.setting(QStringLiteral("target"))),
            CountdownFace::moment(context.setting(QStringLiteral("created")))};
    if (!s.target && context.surface.showsDemoContent) {
        // A preview counts down to the next new year.
        const QDate next(context.now.date().year() + 1, 1, 1);
        s.target = next.startOfDay(context.now.timeZone());
        s.created = QDate(next.year() - 1, 1, 1).startOfDay(context.now.timeZone());
        s.title = L("countdown.demoTitle", QStringLiteral("New Year"));
    }
    if (s.title.isEmpty()) {
        s.title = L("widget.countdown.name", QStringLiteral("Countdown"));
    }
    return s;
}

QString two(int n) {
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

QString clockText(const CountdownFace::Parts& p) {
    return QString::number(p.hours) + QLatin1Char(':') + two(p.minutes) + QLatin1Char(':') +
           two(p.seconds);
}

QString shortText(const CountdownFace::Parts& p) {
    if (p.days > 0) {
        return L("countdown.daysShort", QStringLiteral("%1d %2h")).arg(p.days).arg(p.hours);
    }
    return clockText(p);
}

} // namespace

std::optional<QDateTime> CountdownFace::moment(const QString& text) {
    const QString t = text.trimmed();
    if (t.isEmpty()) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double seconds = t.toDouble(&isNumber);
    if (isNumber) {
        if (!std::isfinite(seconds) || std::abs(seconds) > 1e11) {
            return std::nullopt;
        }
        return referenceDate().addMSecs(static_cast<qint64>(std::llround(seconds * 1000)));
    }
    QDateTime dt = QDateTime::fromString(t, Qt::ISODate);
    if (dt.isValid()) {
        return dt;
    }
    const QDate date = QDate::fromString(t, Qt::ISODate);
    if (date.isValid()) {
        return date.startOfDay(QTimeZone::systemTimeZone());
    }
    return std::nullopt;
}

CountdownFace::Parts CountdownFace::split(const QDateTime& now, const QDateTime& target) {
    qint64 left = now.secsTo(target);
    Parts p;
    p.passed = left < 0;
    left = std::abs(left);
    p.days = left / 86400;
    p.hours = static_cast<int>(left % 86400 / 3600);
    p.minutes = static_cast<int>(left % 3600 / 60);
    p.seconds = static_cast<int>(left % 60);
    return p;
}

std::optional<TimeGrain> CountdownFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Seconds;
}

void CountdownFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown s = shown(context);
    const QLocale locale;
    QColor track = context.primary();
    track.setAlphaF(0.12F);

    if (!s.target) {
        // Nothing to count to yet: say where to set it.
        const qreal side = std::min(rect.width(), rect.height()) * 0.42;
        FaceKit::drawSymbol(
            painter, context, QStringLiteral("hourglass"),
            QRectF(rect.center().x() - side / 2, rect.top() + rect.height() * 0.08, side, side),
            context.accent(), s.title);
        painter.setFont(FaceKit::font(std::min<qreal>(13, rect.height() * 0.14)));
        painter.setPen(context.secondary());
        painter.drawText(
            rect.adjusted(0, rect.height() * 0.08 + side + 4, 0, 0),
            Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
            L("countdown.noTarget", QStringLiteral("Set a date in the widget's settings")));
        return;
    }

    const Parts p = split(context.now, *s.target);
    const QString targetText =
        locale.toString(s.target->toLocalTime().date(), QStringLiteral("ddd d MMM yyyy"));
    const QString status = p.passed
                               ? L("countdown.since", QStringLiteral("since %1")).arg(targetText)
                               : L("countdown.until", QStringLiteral("until %1")).arg(targetText);
    double progress = 0;
    if (s.created && *s.created < *s.target) {
        progress = static_cast<double>(s.created->secsTo(context.now)) /
                   static_cast<double>(s.created->secsTo(*s.target));
    }

    const qreal titleHeight = std::min<qreal>(rect.height() * 0.2, 20);
    FaceKit::drawFitted(
        painter, context, QRectF(rect.left(), rect.top(), rect.width(), titleHeight), s.title,
        QFont::DemiBold, context.accent(), Qt::AlignLeft | Qt::AlignVCenter, titleHeight * 0.78);
    const QRectF body = rect.adjusted(0, titleHeight + 2, 0, 0);

    switch (context.size) {
    case WidgetSize::small: {
        FaceKit::drawFitted(painter, context, body.adjusted(0, 0, 0, -body.height() * 0.3),
                            shortText(p), QFont::Light, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 30);
        FaceKit::drawFitted(painter, context, body.adjusted(0, body.height() * 0.72, 0, 0),
                            p.passed ? L("countdown.ago", QStringLiteral("ago"))
                                     : L("countdown.left", QStringLiteral("left")),
                            QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                            12);
        return;
    }
    case WidgetSize::large: {
        // A ring of the time gone since the countdown was made, the days inside.
        const qreal footer = body.height() * 0.16;
        const qreal side = std::min(body.width(), body.height() - footer);
        const QRectF ring(body.center().x() - side / 2, body.top(), side, side);
        FaceKit::drawRing(painter, ring, side * 0.07, p.passed ? 1.0 : progress, context.accent(),
                          track);
        const QRectF inner = ring.adjusted(side * 0.2, side * 0.22, -side * 0.2, -side * 0.22);
        FaceKit::drawFitted(painter, context, inner.adjusted(0, 0, 0, -inner.height() * 0.45),
                            QString::number(p.days), QFont::Light, context.primary(),
                            Qt::AlignHCenter | Qt::AlignBottom, side * 0.4);
        FaceKit::drawFitted(
            painter, context, inner.adjusted(0, inner.height() * 0.56, 0, -inner.height() * 0.22),
            p.days == 1 ? L("countdown.day", QStringLiteral("day"))
                        : L("countdown.days", QStringLiteral("days")),
            QFont::Normal, context.secondary(), Qt::AlignHCenter | Qt::AlignTop, side * 0.1);
        FaceKit::drawFitted(painter, context, inner.adjusted(0, inner.height() * 0.78, 0, 0),
                            clockText(p), QFont::Medium, context.secondary(),
                            Qt::AlignHCenter | Qt::AlignTop, side * 0.09);
        FaceKit::drawFitted(painter, context,
                            QRectF(body.left(), body.bottom() - footer, body.width(), footer),
                            status, QFont::Normal, context.secondary(), Qt::AlignCenter, 13);
        return;
    }
    default:
        break;
    }

    // Unit blocks: days, hours, minutes, seconds; in a column on a tall tile, a row elsewhere.
    const std::array<QString, 4> values{QString::number(p.days), two(p.hours), two(p.minutes),
                                        two(p.seconds)};
    const std::array<QString, 4> units{L("countdown.unitDays", QStringLiteral("days")),
                                       L("countdown.unitHours", QStringLiteral("hrs")),
                                       L("countdown.unitMinutes", QStringLiteral("min")),
                                       L("countdown.unitSeconds", QStringLiteral("sec"))};
    const bool column = context.size == WidgetSize::tall;
    const bool withStatus =
        context.size == WidgetSize::wideTall || context.size == WidgetSize::wide || column;
    const qreal statusHeight = withStatus ? std::min<qreal>(body.height() * 0.2, 18) : 0;
    const bool withBar = context.size == WidgetSize::wideTall && s.created;
    const qreal barHeight = withBar ? 6 : 0;
    const QRectF blocks = body.adjusted(0, 0, 0, -statusHeight - (withBar ? barHeight + 8 : 0));
    const qreal gap = 6;
    for (int i = 0; i < 4; ++i) {
        QRectF b;
        if (column) {
            const qreal h = (blocks.height() - 3 * gap) / 4;
            b = QRectF(blocks.left(), blocks.top() + i * (h + gap), blocks.width(), h);
        } else {
            const qreal w = (blocks.width() - 3 * gap) / 4;
            b = QRectF(blocks.left() + i * (w + gap), blocks.top(), w, blocks.height());
        }
        if (b.height() > 40 || column) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(context.elevated());
            painter.drawRoundedRect(b, 8, 8);
        }
        const qreal unitHeight = column ? b.height() : b.height() * 0.28;
        const QRectF valueRect =
            column ? b.adjusted(8, 0, -b.width() * 0.45, 0)
                   : b.adjusted(b.width() * 0.1, 2, -b.width() * 0.1, -unitHeight);
        const QRectF unitRect =
            column ? b.adjusted(b.width() * 0.58, 0, -8, 0)
                   : QRectF(b.left(), b.bottom() - unitHeight, b.width(), unitHeight * 0.85);
        FaceKit::drawFitted(painter, context, valueRect, values[static_cast<size_t>(i)],
                            QFont::Light, context.primary(),
                            column ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter,
                            column ? b.height() * 0.7 : valueRect.height() * 0.85);
        FaceKit::drawFitted(painter, context, unitRect, units[static_cast<size_t>(i)],
                            QFont::Medium, context.secondary(),
                            column ? Qt::AlignRight | Qt::AlignVCenter
                                   : Qt::AlignHCenter | Qt::AlignTop,
                            std::min<qreal>(12, unitRect.height() * 0.8));
    }
    if (withBar) {
        FaceKit::drawBar(painter, QRectF(body.left(), blocks.bottom() + 8, body.width(), barHeight),
                         p.passed ? 1.0 : progress, context.accent(), track);
    }
    if (withStatus) {
        FaceKit::drawFitted(
            painter, context,
            QRectF(body.left(), body.bottom() - statusHeight, body.width(), statusHeight), status,
            QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
            statusHeight * 0.72);
    }
}

} // namespace tw
