#include "app/AppDelegate.h"
#include "app/SingleInstance.h"
#include "platform/null/MemoryDefaults.h"

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

    // TKW_CONFIG_SECTION and TKW_SETTINGS_PAGE, else the page left in the preferences.
    void environment_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("expected"); // section/page; "-" for none
        QTest::newRow("section") << "about"
                                 << ""
                                 << ""
                                 << "about/";
        QTest::newRow("case matters") << "Layouts"
                                      << ""
                                      << ""
                                      << "-/";
        QTest::newRow("unknown section") << "widgets"
                                         << ""
                                         << ""
                                         << "-/";
        QTest::newRow("nothing: the gallery") << ""
                                              << ""
                                              << ""
                                              << "-/";
        QTest::newRow("page opens its section") << ""
                                                << "look"
                                                << ""
                                                << "appearance/look";
        QTest::newRow("page in its section") << "general"
                                             << "energy"
                                             << ""
                                             << "general/energy";
        QTest::newRow("page of another section") << "general"
                                                 << "look"
                                                 << ""
                                                 << "general/";
        QTest::newRow("unknown page") << ""
                                      << "nowhere"
                                      << ""
                                      << "-/";
        QTest::newRow("stored page") << ""
                                     << ""
                                     << "look"
                                     << "appearance/look";
        QTest::newRow("environment before stored") << ""
                                                   << "lock"
                                                   << "look"
                                                   << "appearance/lock";
    }
    void environment() {
        QFETCH(QString, section);
        QFETCH(QString, page);
        QFETCH(QString, stored);
        QFETCH(QString, expected);
        qputenv("TKW_CONFIG_SECTION", section.toUtf8());
        qputenv("TKW_SETTINGS_PAGE", page.toUtf8());
        MemoryDefaults defaults;
        if (!stored.isEmpty()) {
            defaults.setValue(AppDelegate::settingsPageKey, stored);
        }
        const ConfigSelection selection = AppDelegate::initialConfigSelection(defaults);
        const QString got =
            (selection.section ? rawValue(*selection.section) : QStringLiteral("-")) +
            QLatin1Char('/') + selection.page;
        QCOMPARE(got, expected);
        // The stored page is used once.
        QVERIFY(!defaults.contains(AppDelegate::settingsPageKey));
        QVERIFY(AppDelegate::configOnlyFrom("1"));
        QVERIFY(!AppDelegate::configOnlyFrom("true"));
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
        QCOMPARE(asked.takeFirst(), (QVariantList{QString(), QString()}));
        // It asks for the section and page it was started with; blanks cannot smuggle words.
        QVERIFY(!SingleInstance::claim(name, QStringLiteral("appearance"), QStringLiteral("look")));
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(asked.takeFirst(),
                 (QVariantList{QStringLiteral("appearance"), QStringLiteral("look")}));
        QVERIFY(!SingleInstance::claim(name, QStringLiteral("a b"), QStringLiteral("look")));
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(asked.takeFirst(), (QVariantList{QString(), QStringLiteral("look")}));
        // Files are handed over whole, blanks and line ends in their names too, and raise no
        // window of their own.
        QSignalSpy opened(first.get(), &SingleInstance::openRequested);
        const QStringList files = SingleInstance::filesToOpen(
            {QStringLiteral("tarnwick"), QStringLiteral("--new-user"),
             dir.filePath(QStringLiteral("My prices.twkwidget")), QStringLiteral("notes.txt"),
             dir.filePath(QStringLiteral("two\nlines %41.TWKWIDGET")),
             QStringLiteral("Desk.twkboard"), dir.filePath(QStringLiteral("Backup.TWKLAYOUT")),
             QStringLiteral("--board.twkboard")});
        QCOMPARE(files.size(), 4);
        QCOMPARE(files.at(2), QDir::current().absoluteFilePath(QStringLiteral("Desk.twkboard")));
        QVERIFY(!SingleInstance::claim(name, {}, {}, files));
        QTRY_COMPARE(opened.size(), 4);
        for (int i = 0; i < files.size(); ++i) {
            QCOMPARE(opened.at(i).value(0).toString(), files.at(i));
        }
        QCOMPARE(asked.size(), 0);
        // Another data directory is another host.
        QTemporaryDir other;
        QVERIFY(SingleInstance::serverName(other.path()) != name);
        first.reset();
        QVERIFY(SingleInstance::claim(name));
    }
};

QTEST_MAIN(tst_AppDelegate)
#include "tst_appdelegate.moc"
