// The iCalendar reader: any bytes give occurrences inside the span asked for, in order and
// bounded in number, or nothing; a to-do it finds can be completed and read back completed.
#include "Require.h"
#include "platform/linux/ICalReader.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    static const QDateTime from(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc());
    static const QDateTime to = from.addDays(42);
    const tw::ICalReader::Contents contents =
        tw::ICalReader::read(bytes, from, to, QTimeZone("Europe/Berlin"));
    QDateTime previous;
    for (const tw::ICalReader::Event& event : contents.events) {
        require(event.start.isValid() && event.start < to && event.end >= event.start,
                "every occurrence starts in the span and ends after it starts");
        require(!previous.isValid() || previous <= event.start, "occurrences in start order");
        previous = event.start;
    }
    if (contents.todos.isEmpty()) {
        return 0;
    }
    const QString uid = contents.todos.first().uid;
    const auto done = tw::ICalReader::withCompletion(bytes, uid, true, from);
    if (done) {
        const tw::ICalReader::Contents again =
            tw::ICalReader::read(*done, from, to, QTimeZone::utc());
        bool completed = false;
        for (const tw::ICalReader::Todo& todo : again.todos) {
            completed = completed || (todo.uid == uid && todo.completed);
        }
        require(completed, "a completed to-do reads back completed");
    }
    return 0;
}
