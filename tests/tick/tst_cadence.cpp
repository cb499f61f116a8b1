#include "tick/Cadence.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

namespace {

QDateTime at(int day, int hour, int minute, int second, int msec = 0) {
    return QDateTime(QDate(2026, 3, day), QTime(hour, minute, second, msec), Qt::UTC);
}

} // namespace

class TestCadence : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A seed, then ticks; every announcement in the order it came, as
    // "<beat> <day> <time>" in the tick's own zone.
    void announcements_data() {
        QTest::addColumn<QDateTime>("seed");
        QTest::addColumn<QList<QDateTime>>("ticks");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, QDateTime seed, QList<QDateTime> ticks,
                            const char* expected) {
            QTest::newRow(name) << seed << ticks << QString::fromLatin1(expected);
        };
        row("minutes then days across midnight", at(14, 23, 59, 59, 400), {at(15, 0, 0, 0, 420)},
            "two 15 00:00:00.420, min 15 00:00:00.420, day 15 00:00:00.420");
        row("an hour asleep is one minute", at(14, 9, 26, 53),
            {at(14, 10, 26, 55), at(14, 10, 26, 57)}, "min 14 10:26:55.000");
        row("a seed silences its own minute", at(14, 9, 26, 53),
            {at(14, 9, 26, 59), at(14, 9, 27, 1)}, "min 14 09:27:01.000");
        // Nothing seeded: the first real tick is a new minute and a new day.
        row("an invalid seed or tick is ignored", {}, {QDateTime(), at(14, 9, 26, 53)},
            "min 14 09:26:53.000, day 14 09:26:53.000");
        row("even second", at(14, 9, 26, 52), {at(14, 9, 26, 52)}, "two 14 09:26:52.000");
        row("even, late in the second", at(14, 9, 26, 52), {at(14, 9, 26, 52, 999)},
            "two 14 09:26:52.999");
        row("odd second", at(14, 9, 26, 53), {at(14, 9, 26, 53)}, "");
        row("odd, early in the second", at(14, 9, 26, 53), {at(14, 9, 26, 53, 1)}, "");
        const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
        row("epoch is even", epoch, {epoch}, "two 1 00:00:00.000");
        // Truncation toward zero: -1.5 s becomes -1, odd.
        const QDateTime before1970 = QDateTime::fromMSecsSinceEpoch(-1500, Qt::UTC);
        row("before 1970", before1970, {before1970}, "");
        row("late ticks may skip the two seconds", at(14, 9, 26, 50),
            {at(14, 9, 26, 51, 900), at(14, 9, 26, 53, 50)}, "");
        // The same instant seen from two hours further east: same minute, a day that starts two
        // hours earlier.
        const QDateTime west = at(14, 9, 26, 53).toTimeZone(QTimeZone(3600));
        row("a time-zone change that moves the day", west,
            {west.addSecs(1).toTimeZone(QTimeZone(3 * 3600))},
            "two 14 12:26:54.000, day 14 12:26:54.000");
        // Clocks go from 02:00 to 03:00 that night: a short day, not a new one.
        const QTimeZone berlin("Europe/Berlin");
        const QDateTime evening(QDate(2026, 3, 28), QTime(23, 59, 59), berlin);
        row("daylight saving is not a new day", evening,
            {evening.addSecs(1), QDateTime(QDate(2026, 3, 29), QTime(1, 59, 59), berlin),
             QDateTime(QDate(2026, 3, 29), QTime(3, 0, 1), berlin),
             QDateTime(QDate(2026, 3, 30), QTime(0, 0, 1), berlin)},
            "two 29 00:00:00.000, min 29 00:00:00.000, day 29 00:00:00.000, "
            "min 29 01:59:59.000, min 29 03:00:01.000, min 30 00:00:01.000, day 30 00:00:01.000");
    }
    void announcements() {
        QFETCH(QDateTime, seed);
        QFETCH(QList<QDateTime>, ticks);
        Cadence cadence;
        QStringList log;
        const auto record = [&log](const char* beat) {
            return [&log, beat](const QDateTime& d) {
                log << QLatin1String(beat) + d.toString(QStringLiteral(" d HH:mm:ss.zzz"));
            };
        };
        connect(&cadence, &Cadence::twoSeconds, this, record("two"));
        connect(&cadence, &Cadence::minutes, this, record("min"));
        connect(&cadence, &Cadence::days, this, record("day"));
        cadence.seed(seed);
        QVERIFY(log.isEmpty());
        for (const QDateTime& tick : ticks) {
            cadence.advance(tick);
        }
        QTEST(log.join(QStringLiteral(", ")), "expected");
    }
};

QTEST_GUILESS_MAIN(TestCadence)
#include "tst_cadence.moc"
