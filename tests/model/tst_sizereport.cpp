#include "model/SizeReport.h"

#include <QTest>

class TestSizeReport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tableHasOneColumnPerSizeAndOneRowPerKind() {
        const QStringList lines = tw::SizeReport::table().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 1 + 51 + 1 + 1); // header, kinds, summary, final newline
        QCOMPARE(lines.last(), QString());
        QCOMPARE(
            lines.at(0).simplified(),
            QStringLiteral("widget small tall wide large banner wideTall huge panorama grand"));
        QCOMPARE(lines.at(52),
                 QStringLiteral("51 widgets, 249 of 459 possible size slots filled (54 %)"));
        QStringList kinds;
        for (qsizetype i = 1; i <= 51; ++i) {
            kinds.append(lines.at(i).section(QLatin1Char(' '), 0, 0));
        }
        QStringList sorted = kinds;
        sorted.sort();
        QCOMPARE(kinds, sorted);
        QCOMPARE(kinds.first(), QStringLiteral("activity"));
    }

    void rowsMarkMissingSizes_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("row");
        QTest::newRow("calculator") << "calculator"
                                    << "calculator . . . 2×2 . . 3×3 . 4×3";
        QTest::newRow("apps") << "apps"
                              << "apps 1×1 1×2 2×1 2×2 3×1 3×2 3×3 4×2 4×3";
    }
    void rowsMarkMissingSizes() {
        QFETCH(QString, kind);
        const QStringList lines = tw::SizeReport::table().split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            if (line.startsWith(kind + QLatin1Char(' '))) {
                QTEST(line.simplified(), "row");
                return;
            }
        }
        QFAIL("row missing");
    }

    void listSizes() {
        const QStringList lines = tw::SizeReport::listSizes().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 52);
        QCOMPARE(lines.at(0), QStringLiteral("clock:small,wide,large,banner,wideTall"));
        QCOMPARE(lines.at(50), QStringLiteral("mirror:small,tall,wide,large,wideTall,huge"));
        QCOMPARE(lines.at(51), QString());
    }
};

QTEST_GUILESS_MAIN(TestSizeReport)
#include "tst_sizereport.moc"
