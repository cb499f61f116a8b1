// Reads iCalendar text through libical: the occurrences of its events in a span of time, with
// repeats expanded (bounded, so a rule without end never runs away), and its to-dos; and writes
// a to-do's completion back into the text it came from.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QTimeZone>

#include <optional>

namespace tw {

class ICalReader {
public:
    ICalReader() = delete;

    struct Event {
        QString uid;
        QString title;
        QDateTime start;
        QDateTime end;
        bool allDay = false;

        bool operator==(const Event&) const = default;
    };

    struct Todo {
        QString uid;
        QString title;
        std::optional<QDateTime> due;
        bool completed = false;
        std::optional<QDateTime> completedAt;
        int priority = 0;

        bool operator==(const Todo&) const = default;
    };

    struct Contents {
        QList<Event> events;
        QList<Todo> todos;
        // False when the text held no calendar at all.
        bool readable = false;
    };

    // The most occurrences one event gives, and the most steps its rule may take to find them.
    static constexpr int mostOccurrences = 2000;
    static constexpr int mostSteps = 50000;

    // Events that overlap [from, to) in start order, and every to-do. Times written without a
    // zone, and all-day dates, are read in `zone`.
    static Contents read(const QByteArray& text, const QDateTime& from, const QDateTime& to,
                         const QTimeZone& zone);

    // `text` with the to-do `uid` marked done at `now` or open again; nullopt when the text
    // cannot be read or holds no such to-do.
    static std::optional<QByteArray> withCompletion(const QByteArray& text, const QString& uid,
                                                    bool completed, const QDateTime& now);
};

} // namespace tw
