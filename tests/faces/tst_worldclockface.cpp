// The world clock's round of cities and the way it writes offsets.
#include "faces/WorldClockFace.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

class TestWorldClockFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void offsetText_data();
    void offsetText();
    void zonesStartHereAndGrowWithTheTile();
};

void TestWorldClockFace::offsetText_data() {
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("expected");
    QTest::newRow("same") << 0 << QString();
    QTest::newRow("ahead") << 9 * 3600 << QStringLiteral("+9h");
    QTest::newRow("behind") << -5 * 3600 << QStringLiteral("\u22125h");
    QTest::newRow("half hour") << 5 * 3600 + 1800 << QStringLiteral("+5:30h");
    QTest::newRow("behind by a quarter") << -(3 * 3600 + 2700) << QStringLiteral("\u22123:45h");
}

void TestWorldClockFace::offsetText() {
    QFETCH(int, seconds);
    QTEST(WorldClockFace::offsetText(seconds), "expected");
}

void TestWorldClockFace::zonesStartHereAndGrowWithTheTile() {
    const QString here = QString::fromUtf8(QTimeZone::systemTimeZoneId());
    const QStringList small = WorldClockFace::zones(WidgetSize::small);
    const QStringList grand = WorldClockFace::zones(WidgetSize::grand);
    QCOMPARE(small.size(), 2);
    QCOMPARE(WorldClockFace::zones(WidgetSize::huge).size(), 9);
    QCOMPARE(grand.size(), 12);
    QCOMPARE(small.first(), here);
    QCOMPARE(grand.first(), here);
    QCOMPARE(grand.count(here), 1);
    QCOMPARE(grand.mid(0, 2), small);
    for (const QString& id : grand) {
        QVERIFY2(QTimeZone(id.toUtf8()).isValid(), qPrintable(id));
    }
}

QTEST_APPLESS_MAIN(TestWorldClockFace)
#include "tst_worldclockface.moc"
