// The countdown reads its moments leniently and splits the time left into whole units.
#include "faces/CountdownFace.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

class TestCountdownFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void moment_data();
    void moment();
    void split_data();
    void split();
};

void TestCountdownFace::moment_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("expected");
    const QDateTime none;
    QTest::newRow("empty") << QString() << none;
    QTest::newRow("blank") << QStringLiteral("   ") << none;
    QTest::newRow("words") << QStringLiteral("next friday") << none;
    QTest::newRow("not a number") << QStringLiteral("nan") << none;
    QTest::newRow("far beyond any calendar") << QStringLiteral("1e300") << none;
    QTest::newRow("ISO with zone")
        << QStringLiteral("2026-12-24T18:00:00Z")
        << QDateTime(QDate(2026, 12, 24), QTime(18, 0), QTimeZone::utc());
    QTest::newRow("date alone is its midnight here")
        << QStringLiteral("2026-12-24")
        << QDate(2026, 12, 24).startOfDay(QTimeZone::systemTimeZone());
    QTest::newRow("seconds since 2001")
        << QStringLiteral("86400") << QDateTime(QDate(2001, 1, 2), QTime(0, 0), QTimeZone::utc());
    QTest::newRow("fractional seconds")
        << QStringLiteral(" 0.5 ")
        << QDateTime(QDate(2001, 1, 1), QTime(0, 0, 0, 500), QTimeZone::utc());
}

void TestCountdownFace::moment() {
    QFETCH(QString, text);
    QFETCH(QDateTime, expected);
    const std::optional<QDateTime> parsed = CountdownFace::moment(text);
    QCOMPARE(parsed.has_value(), expected.isValid());
    if (parsed) {
        QCOMPARE(parsed->toUTC(), expected.toUTC());
    }
}

void TestCountdownFace::split_data() {
    QTest::addColumn<qint64>("secondsLeft");
    QTest::addColumn<qint64>("days");
    QTest::addColumn<int>("hours");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<bool>("passed");
    QTest::newRow("now") << qint64(0) << qint64(0) << 0 << 0 << 0 << false;
    QTest::newRow("one of each") << qint64(86400 + 3600 + 60 + 1) << qint64(1) << 1 << 1 << 1
                                 << false;
    QTest::newRow("just under a day") << qint64(86399) << qint64(0) << 23 << 59 << 59 << false;
    QTest::newRow("a second ago") << qint64(-1) << qint64(0) << 0 << 0 << 1 << true;
    QTest::newRow("two days ago") << qint64(-2 * 86400) << qint64(2) << 0 << 0 << 0 << true;
}

void TestCountdownFace::split() {
    QFETCH(qint64, secondsLeft);
    const QDateTime now(QDate(2026, 6, 1), QTime(12, 0), QTimeZone::utc());
    const CountdownFace::Parts parts = CountdownFace::split(now, now.addSecs(secondsLeft));
    QTEST(parts.days, "days");
    QTEST(parts.hours, "hours");
    QTEST(parts.minutes, "minutes");
    QTEST(parts.seconds, "seconds");
    QTEST(parts.passed, "passed");
}

QTEST_APPLESS_MAIN(TestCountdownFace)
#include "tst_countdownface.moc"
