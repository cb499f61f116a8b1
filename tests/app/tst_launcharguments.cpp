#include "app/LaunchArguments.h"

#include <QTest>

using tw::LaunchArguments;

class TestLaunchArguments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void values_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("flag");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("expected"); // values joined by "|", or "absent"
        const QString program = QStringLiteral("tarnwick");
        QTest::newRow("boolean present")
            << QStringList{program, QStringLiteral("--counts")} << "--counts" << 0 << "";
        QTest::newRow("boolean absent") << QStringList{program} << "--counts" << 0 << "absent";
        QTest::newRow("exact case")
            << QStringList{program, QStringLiteral("--Counts")} << "--counts" << 0 << "absent";
        QTest::newRow("whole argument")
            << QStringList{program, QStringLiteral("--counts=1")} << "--counts" << 0 << "absent";
        QTest::newRow("one value")
            << QStringList{program, QStringLiteral("--theme"), QStringLiteral("ocean")} << "--theme"
            << 1 << "ocean";
        QTest::newRow("value missing")
            << QStringList{program, QStringLiteral("--theme")} << "--theme" << 1 << "absent";
        QTest::newRow("two values, one given")
            << QStringList{program, QStringLiteral("--web"), QStringLiteral("example.com")}
            << "--web" << 2 << "absent";
        QTest::newRow("two values")
            << QStringList{program, QStringLiteral("--web"), QStringLiteral("example.com"),
                           QStringLiteral("/tmp/a.png"), QStringLiteral("--dark")}
            << "--web" << 2 << "example.com|/tmp/a.png";
        QTest::newRow("first occurrence wins")
            << QStringList{program, QStringLiteral("--theme"), QStringLiteral("ocean"),
                           QStringLiteral("--theme"), QStringLiteral("rose")}
            << "--theme" << 1 << "ocean";
        QTest::newRow("a value may look like a flag")
            << QStringList{program, QStringLiteral("--theme"), QStringLiteral("--dark")}
            << "--theme" << 1 << "--dark";
        QTest::newRow("first occurrence lacks its value, no second chance")
            << QStringList{program, QStringLiteral("--web"), QStringLiteral("a"),
                           QStringLiteral("--web")}
            << "--web" << 2 << "a|--web";
    }
    void values() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, flag);
        QFETCH(int, count);
        const std::optional<QStringList> values = LaunchArguments(arguments).values(flag, count);
        QTEST(values ? values->join(QLatin1Char('|')) : QStringLiteral("absent"), "expected");
    }

    void singleValue() {
        const LaunchArguments arguments(
            {QStringLiteral("tarnwick"), QStringLiteral("--scale"), QStringLiteral("2")});
        QCOMPARE(arguments.value(QStringLiteral("--scale")), QStringLiteral("2"));
        QCOMPARE(arguments.value(QStringLiteral("--lang")), std::nullopt);
        QVERIFY(arguments.has(QStringLiteral("--scale")));
        QVERIFY(!arguments.has(QStringLiteral("--lang")));
    }
};

QTEST_GUILESS_MAIN(TestLaunchArguments)
#include "tst_launcharguments.moc"
