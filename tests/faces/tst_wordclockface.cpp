// The word clock says the time in five-minute steps, to the next hour from twenty-five to.
#include "faces/WordClockFace.h"

#include <QTest>

using namespace tw;

class TestWordClockFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void words_data();
    void words();
};

void TestWordClockFace::words_data() {
    QTest::addColumn<QTime>("time");
    QTest::addColumn<QString>("expected");
    QTest::newRow("on the hour") << QTime(5, 0) << "IT IS FIVE OCLOCK";
    QTest::newRow("minutes past the step") << QTime(5, 4, 59) << "IT IS FIVE OCLOCK";
    QTest::newRow("five past") << QTime(10, 9) << "IT IS FIVE PAST TEN";
    QTest::newRow("quarter past") << QTime(14, 15) << "IT IS A QUARTER PAST TWO";
    QTest::newRow("twenty-five past") << QTime(5, 25) << "IT IS TWENTY FIVE PAST FIVE";
    QTest::newRow("half past") << QTime(9, 30) << "IT IS HALF PAST NINE";
    QTest::newRow("twenty-five to") << QTime(9, 35) << "IT IS TWENTY FIVE TO TEN";
    QTest::newRow("quarter to midnight") << QTime(23, 45) << "IT IS A QUARTER TO TWELVE";
    QTest::newRow("five to one") << QTime(0, 55) << "IT IS FIVE TO ONE";
    QTest::newRow("midnight") << QTime(0, 0) << "IT IS TWELVE OCLOCK";
    QTest::newRow("noon") << QTime(12, 2) << "IT IS TWELVE OCLOCK";
    QTest::newRow("ten to eleven") << QTime(22, 50) << "IT IS TEN TO ELEVEN";
}

void TestWordClockFace::words() {
    QFETCH(QTime, time);
    QFETCH(QString, expected);
    QCOMPARE(WordClockFace::words(time).join(QLatin1Char(' ')), expected);
}

QTEST_APPLESS_MAIN(TestWordClockFace)
#include "tst_wordclockface.moc"
