#include "TarnwickProcess.h"
#include "app/LaunchArguments.h"

#include <QTest>

using tw::LaunchArguments;
using tw::test::words;

class TestLaunchArguments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void values_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("flag");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("expected"); // values joined by "|", or "absent"
        QTest::newRow("boolean present") << "tarnwick --counts"
                                         << "--counts" << 0 << "";
        QTest::newRow("boolean absent") << "tarnwick"
                                        << "--counts" << 0 << "absent";
        QTest::newRow("exact case") << "tarnwick --Counts"
                                    << "--counts" << 0 << "absent";
        QTest::newRow("whole argument") << "tarnwick --counts=1"
                                        << "--counts" << 0 << "absent";
        QTest::newRow("one value") << "tarnwick --theme ocean"
                                   << "--theme" << 1 << "ocean";
        QTest::newRow("value missing") << "tarnwick --theme"
                                       << "--theme" << 1 << "absent";
        QTest::newRow("two values, one given") << "tarnwick --web example.com"
                                               << "--web" << 2 << "absent";
        QTest::newRow("two values") << "tarnwick --web example.com /tmp/a.png --dark"
                                    << "--web" << 2 << "example.com|/tmp/a.png";
        QTest::newRow("first occurrence wins") << "tarnwick --theme ocean --theme rose"
                                               << "--theme" << 1 << "ocean";
        QTest::newRow("a value may look like a flag") << "tarnwick --theme --dark"
                                                      << "--theme" << 1 << "--dark";
        QTest::newRow("first occurrence lacks its value, no second chance")
            << "tarnwick --web a --web"
            << "--web" << 2 << "a|--web";
    }
    void values() {
        QFETCH(QString, line);
        QFETCH(QString, flag);
        QFETCH(int, count);
        const std::optional<QStringList> values = LaunchArguments(words(line)).values(flag, count);
        QTEST(values ? values->join(QLatin1Char('|')) : QStringLiteral("absent"), "expected");
    }

    void singleValue() {
        const LaunchArguments arguments(words(QStringLiteral("tarnwick --scale 2")));
        QCOMPARE(arguments.value(QStringLiteral("--scale")), QStringLiteral("2"));
        QCOMPARE(arguments.value(QStringLiteral("--lang")), std::nullopt);
        QVERIFY(arguments.has(QStringLiteral("--scale")));
        QVERIFY(!arguments.has(QStringLiteral("--lang")));
    }
};

QTEST_GUILESS_MAIN(TestLaunchArguments)
#include "tst_launcharguments.moc"
