#include "app/AppDelegate.h"
#include "app/SingleInstance.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

using Facts = AppDelegate::WindowAtLaunch;
Q_DECLARE_METATYPE(AppDelegate::WindowAtLaunch)

class tst_AppDelegate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void windowAtLaunch_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Facts>("facts");
        QTest::addColumn<bool>("opens");
        const Facts quietLogin{.launchedAsLoginItem = true, .openWindowAtLaunch = true};
        QTest::newRow("by hand, window at launch on") << QStringList{} << Facts{} << true;
        QTest::newRow("by hand, window at launch off")
            << QStringList{} << Facts{.openWindowAtLaunch = false} << false;
        QTest::newRow("login item stays quiet") << QStringList{} << quietLogin << false;
        QTest::newRow("new user") << QStringList{QStringLiteral("--new-user")} << quietLogin
                                  << true;
        QTest::newRow("updated user")
            << QStringList{QStringLiteral("--updated-user")} << quietLogin << true;
        QTest::newRow("config only")
            << QStringList{} << Facts{.configOnly = true, .openWindowAtLaunch = false} << true;
        QTest::newRow("first launch of a version")
            << QStringList{} << Facts{.firstLaunchOfVersion = true, .launchedAsLoginItem = true}
            << true;
    }
    void windowAtLaunch() {
        QFETCH(QStringList, arguments);
        QFETCH(Facts, facts);
        QFETCH(bool, opens);
        QCOMPARE(AppDelegate::shouldOpenWindowAtLaunch(arguments, facts), opens);
    }

    void environment_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<int>("expected"); // -1: none
        QTest::newRow("general") << "general" << int(AppDelegate::ConfigSection::general);
        QTest::newRow("about") << "about" << int(AppDelegate::ConfigSection::about);
        QTest::newRow("case matters") << "Layouts" << -1;
        QTest::newRow("unknown") << "widgets" << -1;
        QTest::newRow("empty") << "" << -1;
    }
    void environment() {
        QFETCH(QString, section);
        QFETCH(int, expected);
        const auto selection = AppDelegate::initialConfigSelectionFrom(section);
        QCOMPARE(selection ? int(*selection) : -1, expected);
        QVERIFY(AppDelegate::configOnlyFrom("1"));
        QVERIFY(!AppDelegate::configOnlyFrom("true"));
        QVERIFY(!AppDelegate::configOnlyFrom(""));
    }

    // A second start finds the first, asks it for its window and is told to end.
    void secondStartReachesTheFirst() {
        QTemporaryDir dir;
        const QString name = SingleInstance::serverName(dir.path());
        auto first = SingleInstance::claim(name);
        QVERIFY(first);
        QSignalSpy asked(first.get(), &SingleInstance::activationRequested);
        QVERIFY(!SingleInstance::claim(name));
        QTRY_COMPARE(asked.size(), 1);
        // Another data directory is another host.
        QTemporaryDir other;
        QVERIFY(SingleInstance::serverName(other.path()) != name);
        first.reset();
        QVERIFY(SingleInstance::claim(name));
    }
};

QTEST_MAIN(tst_AppDelegate)
#include "tst_appdelegate.moc"
