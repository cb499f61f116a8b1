#include "tick/Cadence.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

namespace {

// Every announcement in the order it came, as "<beat> <time>".
struct Recorder {
    explicit Recorder(Cadence& cadence) {
        QObject::connect(&cadence, &Cadence::twoSeconds, &context,
                         [this](const QDateTime& d) { log << QStringLiteral("two ") + stamp(d); });
        QObject::connect(&cadence, &Cadence::minutes, &context,
                         [this](const QDateTime& d) { log << QStringLiteral("min ") + stamp(d); });
        QObject::connect(&cadence, &Cadence::days, &context,
                         [this](const QDateTime& d) { log << QStringLiteral("day ") + stamp(d); });
    }
    static QString stamp(const QDateTime& d) { return d.toString(Qt::ISODateWithMs); }
    QStringList without(const QString& beat) const {
        QStringList out;
        for (const QString& entry : log) {
            if (!entry.startsWith(beat)) {
                out << entry;
            }
        }
        return out;
    }
    QObject context;
    QStringList log;
};

QDateTime at(int day, int hour, int minute, int second, int msec = 0) {
    return QDateTime(QDate(2026, 3, day), QTime(hour, minute, second, msec), Qt::UTC);
}

} // namespace

class TestCadence : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void minutesThenDaysAcrossMidnight() {
        Cadence cadence;
        Recorder rec(cadence);
        cadence.seed(at(14, 23, 59, 59, 400));
        const QDateTime tick = at(15, 0, 0, 0, 420);
        cadence.advance(tick);
        const QString t = Recorder::stamp(tick);
        QCOMPARE(rec.log, QStringList({QStringLiteral("two ") + t, QStringLiteral("min ") + t,
                                       QStringLiteral("day ") + t}));
    }

    void anHourAsleepIsOneMinute() {
        Cadence cadence;
        Recorder rec(cadence);
        cadence.seed(at(14, 9, 26, 53));
        cadence.advance(at(14, 10, 26, 55));
        QCOMPARE(rec.without(QStringLiteral("two")),
                 QStringList{QStringLiteral("min ") + Recorder::stamp(at(14, 10, 26, 55))});
        cadence.advance(at(14, 10, 26, 57));
        QCOMPARE(rec.without(QStringLiteral("two")).size(), 1);
    }

    void seedingAnnouncesNothingAndSilencesTheSameMinute() {
        Cadence cadence;
        Recorder rec(cadence);
        cadence.seed(at(14, 9, 26, 53));
        QVERIFY(rec.log.isEmpty());
        cadence.advance(at(14, 9, 26, 59));
        QVERIFY(rec.log.isEmpty());
        cadence.advance(at(14, 9, 27, 1));
        QCOMPARE(rec.log, QStringList{QStringLiteral("min ") + Recorder::stamp(at(14, 9, 27, 1))});
    }

    void unseededFirstTickAnnouncesMinuteAndDay() {
        Cadence cadence;
        Recorder rec(cadence);
        cadence.advance(at(14, 9, 26, 53));
        QCOMPARE(rec.without(QStringLiteral("two")).size(), 2);
    }

    void twoSecondsByParity_data() {
        QTest::addColumn<QDateTime>("tick");
        QTest::addColumn<bool>("sent");
        QTest::newRow("even") << at(14, 9, 26, 52) << true;
        QTest::newRow("even, late in the second") << at(14, 9, 26, 52, 999) << true;
        QTest::newRow("odd") << at(14, 9, 26, 53) << false;
        QTest::newRow("odd, early in the second") << at(14, 9, 26, 53, 1) << false;
        QTest::newRow("epoch") << QDateTime::fromSecsSinceEpoch(0, Qt::UTC) << true;
        // Truncation toward zero: -1.5 s becomes -1, odd.
        QTest::newRow("before 1970") << QDateTime::fromMSecsSinceEpoch(-1500, Qt::UTC) << false;
    }
    void twoSecondsByParity() {
        QFETCH(QDateTime, tick);
        QFETCH(bool, sent);
        Cadence cadence;
        cadence.seed(tick);
        Recorder rec(cadence);
        cadence.advance(tick);
        QCOMPARE(rec.log.size(), sent ? 1 : 0);
    }

    void lateTicksMaySkipTwoSeconds() {
        Cadence cadence;
        cadence.seed(at(14, 9, 26, 50));
        Recorder rec(cadence);
        cadence.advance(at(14, 9, 26, 51, 900));
        cadence.advance(at(14, 9, 26, 53, 50));
        QVERIFY(rec.log.isEmpty());
    }

    void timeZoneChangeMovingTheDaySendsDays() {
        Cadence cadence;
        Recorder rec(cadence);
        const QDateTime before = at(14, 9, 26, 53).toTimeZone(QTimeZone(3600));
        cadence.seed(before);
        // The same instant seen from two hours further east: same minute, a day that starts
        // two hours earlier.
        const QDateTime after = before.addSecs(1).toTimeZone(QTimeZone(3 * 3600));
        cadence.advance(after);
        QCOMPARE(rec.without(QStringLiteral("two")),
                 QStringList{QStringLiteral("day ") + Recorder::stamp(after)});
    }

    void daylightSavingIsNotANewDay() {
        const QTimeZone berlin("Europe/Berlin");
        QVERIFY(berlin.isValid());
        Cadence cadence;
        Recorder rec(cadence);
        // Clocks go from 02:00 to 03:00 that night.
        const QDateTime evening(QDate(2026, 3, 28), QTime(23, 59, 59), berlin);
        cadence.seed(evening);
        cadence.advance(evening.addSecs(1));
        cadence.advance(QDateTime(QDate(2026, 3, 29), QTime(1, 59, 59), berlin));
        cadence.advance(QDateTime(QDate(2026, 3, 29), QTime(3, 0, 1), berlin));
        cadence.advance(QDateTime(QDate(2026, 3, 29), QTime(23, 59, 59), berlin));
        cadence.advance(QDateTime(QDate(2026, 3, 30), QTime(0, 0, 1), berlin));
        QStringList days = rec.log.filter(QStringLiteral("day "));
        QCOMPARE(days.size(), 2);
        QVERIFY(days[0].contains(QStringLiteral("2026-03-29T00:00:00")));
        QVERIFY(days[1].contains(QStringLiteral("2026-03-30T00:00:01")));
        QCOMPARE(rec.log.filter(QStringLiteral("min ")).size(), 5);
    }

    void invalidTimeIsIgnored() {
        Cadence cadence;
        Recorder rec(cadence);
        cadence.seed(QDateTime());
        cadence.advance(QDateTime());
        QVERIFY(rec.log.isEmpty());
        cadence.advance(at(14, 9, 26, 53));
        QCOMPARE(rec.log.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestCadence)
#include "tst_cadence.moc"
