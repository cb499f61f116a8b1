#include "faces/CalendarFace.h"

#include "desk/CalendarBoard.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/GenericFace.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace tw {
namespace {

constexpr qreal rowHeight = 36;
constexpr qreal dayHeight = 18;

QString needsChoiceWords() {
    return L("cal.accessNeeded", QStringLiteral("Calendar access needed"));
}

struct Shown {
    QList<CalendarEventItem> events;
    // What stands where no event does: loading, an error, or that nothing comes.
    QString status;
    bool sample = false;
};

Shown shownOf(const FaceContext& context) {
    Shown shown;
    const QDateTime now = context.now.isValid() ? context.now : QDateTime::currentDateTime();
    std::optional<CalendarReading<CalendarEventItem>> reading =
        context.calendar != nullptr ? context.calendar->eventsFor(context.settings)
                                    : CalendarBoard().eventsFor(context.settings);
    if (!reading) {
        shown.events = CalendarFace::upcoming(CalendarFace::sampleEvents(now), now);
        shown.sample = true;
        return shown;
    }
    if (reading->lastGood) {
        shown.events = CalendarFace::upcoming(*reading->lastGood, now);
    }
    if (!shown.events.isEmpty()) {
        return shown;
    }
    if (reading->state == CalendarState::error && !reading->lastGood) {
        shown.status = reading->message;
    } else if (!reading->lastGood) {
        shown.status = L("cal.loading", QStringLiteral("Loading…"));
    } else {
        shown.status = L("cal.empty", QStringLiteral("No upcoming events"));
    }
    return shown;
}

QString timeText(const CalendarEventItem& event, const FaceContext& context) {
    if (event.isAllDay) {
        return L("cal.allDay", QStringLiteral("All day"));
    }
    const bool h24 = FaceKit::uses24Hour(context);
    const QTime start = event.startDate.toLocalTime().time();
    QString text = FaceKit::hoursMinutes(start, h24);
    if (!h24) {
        text += QLatin1Char(' ') + FaceKit::dayHalf(start);
    }
    return text;
}

QString dayText(const QDate& day, const QDate& today) {
    if (day == today) {
        return L("cal.today", QStringLiteral("Today"));
    }
    if (day == today.addDays(1)) {
        return L("cal.tomorrow", QStringLiteral("Tomorrow"));
    }
    return QLocale().toString(day, QStringLiteral("ddd d MMM"));
}

// The day an event is listed under: today for one that began before and still runs.
QDate listedOn(const CalendarEventItem& event, const QDate& today) {
    return std::max(event.startDate.toLocalTime().date(), today);
}

void drawDate(QPainter& painter, const FaceContext& context, const QRectF& box, qreal dayPixels) {
    const QDate today = context.now.date();
    FaceKit::drawElided(painter, context, QRectF(box.left(), box.top(), box.width(), 16),
                        QLocale().dayName(today.dayOfWeek(), QLocale::LongFormat).toUpper(),
                        FaceKit::font(11, QFont::Bold), context.accent(),
                        Qt::AlignLeft | Qt::AlignTop);
    FaceKit::drawFitted(painter, context,
                        QRectF(box.left(), box.top() + 14, box.width(), dayPixels * 1.15),
                        QString::number(today.day()), QFont::Light, context.primary(),
                        Qt::AlignLeft | Qt::AlignTop, dayPixels);
}

void drawEvent(QPainter& painter, const FaceContext& context, const QRectF& row,
               const CalendarEventItem& event) {
    const QColor named(event.calendarColor);
    const QColor bar = named.isValid() ? named : context.accent();
    painter.setPen(Qt::NoPen);
    painter.setBrush(bar);
    painter.drawRoundedRect(QRectF(row.left(), row.top() + 3, 3.5, row.height() - 8), 1.75, 1.75);
    const QRectF text = row.adjusted(10, 0, 0, 0);
    const QString title = event.title.isEmpty() ? QStringLiteral("—") : event.title;
    FaceKit::drawElided(painter, context, QRectF(text.left(), text.top(), text.width(), 17), title,
                        FaceKit::font(13, QFont::DemiBold), context.primary(),
                        Qt::AlignLeft | Qt::AlignTop);
    FaceKit::drawElided(painter, context, QRectF(text.left(), text.top() + 17, text.width(), 15),
                        timeText(event, context), FaceKit::font(11.5), context.secondary(),
                        Qt::AlignLeft | Qt::AlignTop);
}

void drawStatus(QPainter& painter, const FaceContext& context, const QRectF& box,
                const QString& status) {
    painter.setPen(context.secondary());
    painter.setFont(FaceKit::font(12));
    painter.drawText(box, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, status);
}

// Events under their days' names, as many as fit in `box`.
void drawList(QPainter& painter, const FaceContext& context, const QRectF& box, const Shown& shown,
              bool withDays) {
    if (shown.events.isEmpty()) {
        drawStatus(painter, context, box, shown.status);
        return;
    }
    const QDate today = context.now.date();
    qreal y = box.top();
    std::optional<QDate> lastDay;
    for (const CalendarEventItem& event : shown.events) {
        const QDate day = listedOn(event, today);
        const bool newDay = withDays && day != lastDay;
        if (y + rowHeight + (newDay ? dayHeight : 0) > box.bottom() + 2) {
            break;
        }
        if (newDay) {
            FaceKit::drawElided(painter, context, QRectF(box.left(), y, box.width(), dayHeight),
                                dayText(day, today).toUpper(), FaceKit::font(10.5, QFont::Bold),
                                context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
            y += dayHeight;
            lastDay = day;
        }
        drawEvent(painter, context, QRectF(box.left(), y, box.width(), rowHeight - 2), event);
        y += rowHeight;
    }
}

void drawMonth(QPainter& painter, const FaceContext& context, const QRectF& box,
               const QList<CalendarEventItem>& events) {
    const QDate today = context.now.date();
    const QDate first(today.year(), today.month(), 1);
    const int firstWeekday = static_cast<int>(QLocale().firstDayOfWeek());
    const int lead = (first.dayOfWeek() - firstWeekday + 7) % 7;
    const qreal cell = std::min(box.width() / 7, (box.height() - 34) / 7);
    FaceKit::drawElided(painter, context, QRectF(box.left(), box.top(), box.width(), 18),
                        QLocale().standaloneMonthName(today.month()),
                        FaceKit::font(13, QFont::DemiBold), context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    const qreal top = box.top() + 22;
    painter.setFont(FaceKit::font(9.5, QFont::DemiBold));
    painter.setPen(context.secondary());
    for (int i = 0; i < 7; ++i) {
        const int weekday = (firstWeekday - 1 + i) % 7 + 1;
        painter.drawText(QRectF(box.left() + i * cell, top, cell, cell * 0.8), Qt::AlignCenter,
                         QLocale().dayName(weekday, QLocale::NarrowFormat));
    }
    QSet<int> busy;
    for (const CalendarEventItem& event : events) {
        const QDate day = event.startDate.toLocalTime().date();
        if (day.month() == today.month() && day.year() == today.year()) {
            busy.insert(day.day());
        }
    }
    for (int d = 1; d <= first.daysInMonth(); ++d) {
        const int index = lead + d - 1;
        const QRectF r(box.left() + (index % 7) * cell, top + cell * 0.8 + (index / 7) * cell, cell,
                       cell);
        const bool isToday = d == today.day();
        if (isToday) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(context.accent());
            const qreal side = cell * 0.86;
            painter.drawEllipse(
                QRectF(r.center().x() - side / 2, r.center().y() - side / 2, side, side));
        }
        painter.setFont(FaceKit::font(cell * 0.42, isToday ? QFont::Bold : QFont::Normal));
        painter.setPen(isToday ? QColor(Qt::white) : context.primary());
        painter.drawText(r, Qt::AlignCenter, QString::number(d));
        if (busy.contains(d) && !isToday) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(context.accent());
            painter.drawEllipse(QPointF(r.center().x(), r.bottom() - cell * 0.12), 1.6, 1.6);
        }
    }
}

} // namespace

std::optional<TimeGrain> CalendarFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

bool CalendarFace::showsCalendar(const WidgetSettings& settings) const {
    return CalendarFilter::of(settings).has_value();
}

QList<CalendarEventItem> CalendarFace::upcoming(const QList<CalendarEventItem>& items,
                                                const QDateTime& now) {
    QList<CalendarEventItem> out;
    for (const CalendarEventItem& item : items) {
        if (item.endDate > now || (item.endDate == item.startDate && item.startDate >= now)) {
            out.append(item);
        }
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
    return out;
}

QList<CalendarEventItem> CalendarFace::sampleEvents(const QDateTime& now) {
    const QDate today = now.date();
    const auto at = [&](int days, int hour, int minute) {
        return QDateTime(today.addDays(days), QTime(hour, minute), now.timeZone());
    };
    const QString blue = QStringLiteral("#0a84ff");
    const QString orange = QStringLiteral("#ff9f0a");
    const QString label = L("cal.sample.label", QStringLiteral("Sample"));
    return {
        {QStringLiteral("s1"), L("cal.sample.1", QStringLiteral("Team standup")), at(0, 23, 0),
         at(0, 23, 30), false, blue, label},
        {QStringLiteral("s2"), L("cal.sample.2", QStringLiteral("Lunch with Sam")), at(1, 12, 30),
         at(1, 13, 30), false, orange, label},
        {QStringLiteral("s3"), L("cal.sample.3", QStringLiteral("Design review")), at(1, 15, 0),
         at(1, 16, 0), false, blue, label},
        {QStringLiteral("s4"), L("cal.sample.4", QStringLiteral("Dentist")), at(2, 9, 0),
         at(2, 9, 45), false, orange, label},
    };
}

void CalendarFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    if (!CalendarFilter::of(context.settings) && !context.surface.showsDemoContent) {
        // Nothing is read before the person chooses: the tile keeps its plain look.
        GenericFace().paint(painter, rect, context);
        return;
    }
    const Shown shown = shownOf(context);
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (context.size) {
    case WidgetSize::small: {
        drawDate(painter, context, rect, 26);
        const QRectF below(rect.left(), rect.top() + 45, w, h - 45);
        if (shown.events.isEmpty()) {
            drawStatus(painter, context, below, shown.status);
            break;
        }
        // Room for the next event's title and time only; its calendar's colour marks the title.
        const CalendarEventItem& next = shown.events.first();
        const QColor named(next.calendarColor);
        FaceKit::drawElided(painter, context, QRectF(below.left(), below.top(), w, 15), next.title,
                            FaceKit::font(12, QFont::DemiBold),
                            named.isValid() ? named : context.accent(),
                            Qt::AlignLeft | Qt::AlignTop);
        FaceKit::drawElided(painter, context, QRectF(below.left(), below.top() + 15, w, 13),
                            timeText(next, context), FaceKit::font(10.5), context.secondary(),
                            Qt::AlignLeft | Qt::AlignTop);
        break;
    }
    case WidgetSize::wide: {
        const qreal left = std::min(70.0, w * 0.32);
        drawDate(painter, context, QRectF(rect.left(), rect.top(), left, h), 40);
        drawList(painter, context, QRectF(rect.left() + left + 8, rect.top(), w - left - 8, h),
                 shown, false);
        break;
    }
    case WidgetSize::wideTall: {
        const qreal left = w * 0.46;
        drawMonth(painter, context, QRectF(rect.left(), rect.top(), left - 10, h), shown.events);
        drawList(painter, context, QRectF(rect.left() + left + 6, rect.top(), w - left - 6, h),
                 shown, true);
        break;
    }
    default: {
        drawDate(painter, context, QRectF(rect.left(), rect.top(), w, 50), 30);
        drawList(painter, context, QRectF(rect.left(), rect.top() + 52, w, h - 52), shown, true);
        break;
    }
    }
    if (shown.sample) {
        FaceKit::drawElided(painter, context, QRectF(rect.left(), rect.top(), w, 14),
                            L("cal.sample.label", QStringLiteral("Sample")),
                            FaceKit::font(10, QFont::DemiBold), context.secondary(),
                            Qt::AlignRight | Qt::AlignTop);
    }
}

WidgetFace::Spot CalendarFace::spotAt(const QRectF&, QPointF, const FaceContext& context) const {
    Spot spot;
    if (!CalendarFilter::of(context.settings)) {
        spot.help = needsChoiceWords();
    }
    return spot;
}

} // namespace tw
