#include "tick/SnapshotClock.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <QTimeZone>

namespace tw {

SnapshotClock::SnapshotClock(const Clock& system)
    : m_system(system) {}

QDateTime SnapshotClock::now() const {
    return m_pinned ? *m_pinned : m_system.now();
}

std::chrono::nanoseconds SnapshotClock::uptime() const {
    return m_system.uptime();
}

std::optional<QDateTime> SnapshotClock::pinFor(const QString& value, const QDateTime& now) {
    // Whole pieces only: " 7" or "7am" are not numbers.
    static const QRegularExpression integer(QStringLiteral("^[+-]?[0-9]+$"));
    QList<int> numbers;
    for (const QString& piece : value.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        bool ok = false;
        const int number = piece.toInt(&ok);
        if (ok && integer.match(piece).hasMatch()) {
            numbers.append(number);
        }
    }
    if (numbers.size() != 2) {
        return std::nullopt;
    }
    const QTime time(numbers.at(0), numbers.at(1));
    if (!time.isValid()) {
        return std::nullopt;
    }
    const QDate tomorrow = now.date().addDays(1);
    QDateTime pinned = now;
    pinned.setDate(tomorrow);
    pinned.setTime(time);
    if (pinned.isValid() && pinned.time() == time) {
        return pinned;
    }
    // The time falls in a gap of the local clock: take the moment the clock jumps.
    const QTimeZone zone = now.timeZone();
    const QDateTime startOfDay = tomorrow.startOfDay(zone);
    const QTimeZone::OffsetData jump = zone.nextTransition(startOfDay);
    if (!jump.atUtc.isValid()) {
        return std::nullopt;
    }
    return jump.atUtc.toTimeZone(zone);
}

} // namespace tw
