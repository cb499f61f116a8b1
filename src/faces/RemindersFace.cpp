#include "faces/RemindersFace.h"

#include "desk/CalendarBoard.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/GenericFace.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>

namespace tw {
namespace {

constexpr qreal rowHeight = 34;
constexpr qreal headerHeight = 30;

struct Shown {
    QList<ReminderItem> items;
    QString status;
};

Shown shownOf(const FaceContext& context) {
    const std::optional<CalendarReading<ReminderItem>> reading =
        context.calendar != nullptr ? context.calendar->remindersFor(context.settings)
                                    : CalendarBoard().remindersFor(context.settings);
    if (!reading) {
        return {RemindersFace::sampleReminders(context.now), {}};
    }
    Shown shown{reading->lastGood.value_or(QList<ReminderItem>()), {}};
    if (!shown.items.isEmpty()) {
        return shown;
    }
    if (reading->state == CalendarState::error && !reading->lastGood) {
        shown.status = reading->message;
    } else if (!reading->lastGood) {
        shown.status = L("reminders.state.loading.sub", QStringLiteral("Fetching your reminders…"));
    } else {
        shown.status = L("reminders.empty", QStringLiteral("Nothing left to do"));
    }
    return shown;
}

QString dueText(const ReminderItem& item, const QDateTime& now) {
    if (!item.dueDate) {
        return item.listName;
    }
    const QDate day = item.dueDate->toLocalTime().date();
    const QDate today = now.date();
    const QString when = day == today ? L("cal.today", QStringLiteral("Today"))
                         : day == today.addDays(1)
                             ? L("cal.tomorrow", QStringLiteral("Tomorrow"))
                             : QLocale().toString(day, QStringLiteral("d MMM"));
    return item.listName.isEmpty() ? when : when + QStringLiteral(" · ") + item.listName;
}

struct Row {
    QRectF rect;
    const ReminderItem* item = nullptr;
};

// Where each reminder that fits stands: a second column only when the first is full, so short
// lists keep their whole titles.
QList<Row> rowsOf(const QRectF& rect, const QList<ReminderItem>& items) {
    const QRectF body = rect.adjusted(0, headerHeight, 0, 0);
    const int perColumn = std::max(1, static_cast<int>(body.height() / rowHeight));
    const int columns = body.width() > 380 && items.size() > perColumn ? 2 : 1;
    const qreal gap = 16;
    const qreal width = (body.width() - gap * (columns - 1)) / columns;
    QList<Row> rows;
    for (int i = 0; i < items.size() && i < perColumn * columns; ++i) {
        const int column = i / perColumn;
        rows.append({QRectF(body.left() + column * (width + gap),
                            body.top() + (i % perColumn) * rowHeight, width, rowHeight - 2),
                     &items.at(i)});
    }
    return rows;
}

// The check mark with room around it, so a press need not hit the small circle itself.
QRectF checkArea(const QRectF& row) {
    return QRectF(row.left() - 4, row.top(), 26, row.height());
}

// A toggle that could not be written, said for two minutes on every reminders tile.
QString saveProblem(const FaceContext& context) {
    if (context.calendar == nullptr || context.calendar->reminderProblem.isEmpty() ||
        context.now >= context.calendar->reminderProblemAt.addSecs(120)) {
        return {};
    }
    return context.calendar->reminderProblem;
}

void drawRow(QPainter& painter, const FaceContext& context, const QRectF& row,
             const ReminderItem& item) {
    const QColor named(item.calendarColor);
    const QColor mark = named.isValid() ? named : context.accent();
    const QRectF circle(row.left() + 1, row.top() + 3, 14, 14);
    painter.setBrush(item.isCompleted ? mark : QColor(Qt::transparent));
    painter.setPen(QPen(mark, 1.6));
    painter.drawEllipse(circle);
    QColor title = context.primary();
    QColor sub = context.secondary();
    const bool overdue = !item.isCompleted && item.dueDate && *item.dueDate < context.now;
    if (item.isCompleted) {
        title.setAlphaF(0.45F);
        sub.setAlphaF(0.45F);
    }
    QFont titleFont = FaceKit::font(13, QFont::DemiBold);
    titleFont.setStrikeOut(item.isCompleted);
    const QRectF text = row.adjusted(24, 0, 0, 0);
    FaceKit::drawElided(painter, context, QRectF(text.left(), text.top(), text.width(), 17),
                        item.title.isEmpty() ? QStringLiteral("—") : item.title, titleFont, title,
                        Qt::AlignLeft | Qt::AlignTop);
    FaceKit::drawElided(painter, context, QRectF(text.left(), text.top() + 17, text.width(), 14),
                        dueText(item, context.now), FaceKit::font(11),
                        overdue ? QColor(0xFF453A) : sub, Qt::AlignLeft | Qt::AlignTop);
}

} // namespace

std::optional<TimeGrain> RemindersFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

bool RemindersFace::showsCalendar(const WidgetSettings& settings) const {
    return RemindersFilter::of(settings).has_value();
}

QList<ReminderItem> RemindersFace::sampleReminders(const QDateTime& now) {
    const QString personal = L("reminders.mock.list.personal", QStringLiteral("Personal"));
    const QString home = L("reminders.mock.list.home", QStringLiteral("Home"));
    const QString work = L("reminders.mock.list.work", QStringLiteral("Work"));
    const QDateTime evening(now.date(), QTime(18, 0), now.timeZone());
    return {
        {QStringLiteral("m1"), L("reminders.mock.1", QStringLiteral("Pick up groceries")), evening,
         false, QStringLiteral("#ff9f0a"), personal, 0},
        {QStringLiteral("m2"), L("reminders.mock.2", QStringLiteral("Submit expense report")),
         evening.addDays(1), false, QStringLiteral("#0a84ff"), work, 1},
        {QStringLiteral("m3"), L("reminders.mock.3", QStringLiteral("Water the plants")),
         std::nullopt, false, QStringLiteral("#30d158"), home, 0},
        {QStringLiteral("m4"), L("reminders.mock.4", QStringLiteral("Call the plumber")),
         std::nullopt, true, QStringLiteral("#30d158"), home, 0},
    };
}

void RemindersFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    if (!RemindersFilter::of(context.settings) && !context.surface.showsDemoContent) {
        // Nothing is read before the person chooses a list: the tile keeps its plain look.
        GenericFace().paint(painter, rect, context);
        return;
    }
    const Shown shown = shownOf(context);
    const qsizetype open =
        std::count_if(shown.items.cbegin(), shown.items.cend(),
                      [](const ReminderItem& item) { return !item.isCompleted; });
    // A toggle that could not be written takes the title's place, where the eye goes first.
    const QString problem = saveProblem(context);
    FaceKit::drawElided(
        painter, context, QRectF(rect.left(), rect.top(), rect.width() - 40, 22),
        problem.isEmpty() ? L("widget.reminders.name", QStringLiteral("Reminders")) : problem,
        FaceKit::font(problem.isEmpty() ? 15 : 12, QFont::Bold),
        problem.isEmpty() ? context.accent() : QColor(0xFF453A), Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawFitted(painter, context, QRectF(rect.right() - 40, rect.top(), 40, 24),
                        QString::number(open), QFont::DemiBold, context.primary(),
                        Qt::AlignRight | Qt::AlignVCenter, 22);
    if (shown.items.isEmpty()) {
        painter.setPen(context.secondary());
        painter.setFont(FaceKit::font(12));
        painter.drawText(rect.adjusted(0, headerHeight, 0, 0),
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, shown.status);
        return;
    }
    for (const Row& row : rowsOf(rect, shown.items)) {
        drawRow(painter, context, row.rect, *row.item);
    }
}

WidgetFace::Spot RemindersFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    Spot spot;
    if (!RemindersFilter::of(context.settings)) {
        spot.help = L("reminders.accessNeeded", QStringLiteral("Reminders access needed"));
        return spot;
    }
    if (context.calendar == nullptr) {
        return spot;
    }
    const Shown shown = shownOf(context);
    for (const Row& row : rowsOf(rect, shown.items)) {
        if (checkArea(row.rect).contains(point)) {
            spot.reminder = *row.item;
            spot.help = row.item->isCompleted
                            ? L("reminders.markOpen", QStringLiteral("Mark as not done"))
                            : L("reminders.markDone", QStringLiteral("Mark as done"));
        }
    }
    return spot;
}

} // namespace tw
