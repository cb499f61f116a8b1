// Runs on a real X server (tests/e2e/xsession.py) inside a private session bus: the displays go
// dark and light again through the X server's screen saver, its power saving, and a desktop's
// screen-saver service.
#include "platform/linux/X11ScreenPower.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace tw;

namespace {

void xset(const QStringList& arguments) {
    QCOMPARE(QProcess::execute(QStringLiteral("xset"), arguments), 0);
}

void announce(const QString& path, const QString& interface, bool active) {
    QDBusMessage signal =
        QDBusMessage::createSignal(path, interface, QStringLiteral("ActiveChanged"));
    signal << active;
    QVERIFY(QDBusConnection::sessionBus().send(signal));
}

bool hasPowerSaving() {
    QProcess query;
    query.start(QStringLiteral("xset"), {QStringLiteral("q")});
    query.waitForFinished(5000);
    return query.readAllStandardOutput().contains("DPMS is");
}

} // namespace

class tst_X11ScreenPower : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (QGuiApplication::platformName() != QLatin1String("xcb")) {
            QSKIP("needs an X server (run through tests/e2e/xsession.py)");
        }
    }

    void darkAndLitAgain_data() {
        QTest::addColumn<QStringList>("dark");
        QTest::addColumn<QStringList>("lit");
        QTest::newRow("screen saver")
            << QStringList{QStringLiteral("s"), QStringLiteral("activate")}
            << QStringList{QStringLiteral("s"), QStringLiteral("reset")};
        QTest::newRow("power saving")
            << QStringList{QStringLiteral("dpms"), QStringLiteral("force"), QStringLiteral("off")}
            << QStringList{QStringLiteral("dpms"), QStringLiteral("force"), QStringLiteral("on")};
    }
    void darkAndLitAgain() {
        QFETCH(QStringList, dark);
        QFETCH(QStringList, lit);
        auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (dark.first() == QLatin1String("dpms") && !hasPowerSaving()) {
            QSKIP("this X server has no power-saving extension");
        }
        X11ScreenPower power(x11->connection());
        QVERIFY(!power.isAsleep());
        QSignalSpy changed(&power, &X11ScreenPower::asleepChanged);
        xset({QStringLiteral("+dpms")});
        xset(dark);
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(power.isAsleep());
        xset(lit);
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(changed.at(1).at(0).toBool(), false);
    }

    // A saver on the session bus, under whichever name the desktop publishes it.
    void aDesktopSaverOnTheSessionBus() {
        if (!QDBusConnection::sessionBus().isConnected()) {
            QSKIP("needs a session bus (run under dbus-run-session)");
        }
        X11ScreenPower power(nullptr);
        QSignalSpy changed(&power, &X11ScreenPower::asleepChanged);
        const QString gnome = QStringLiteral("org.gnome.ScreenSaver");
        announce(QStringLiteral("/org/gnome/ScreenSaver"), gnome, true);
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(power.isAsleep());
        announce(QStringLiteral("/org/freedesktop/ScreenSaver"),
                 QStringLiteral("org.freedesktop.ScreenSaver"), false);
        QTRY_COMPARE(changed.size(), 2);
        QVERIFY(!power.isAsleep());
    }
};

QTEST_MAIN(tst_X11ScreenPower)
#include "tst_x11screenpower.moc"
