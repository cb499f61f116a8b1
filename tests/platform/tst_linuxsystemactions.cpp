#include "SessionBusMock.h"
#include "platform/linux/LinuxSystemActions.h"

#include <QDBusConnection>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

const QString logind = QStringLiteral("org.freedesktop.login1");

bool writeFile(const QString& path, const QByteArray& text, QFile::Permissions permissions = {}) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        return false;
    }
    file.close();
    return permissions == QFile::Permissions() || file.setPermissions(permissions);
}

} // namespace

// Lock through logind on a private bus, banners through GSettings' memory backend, a
// screenshot program and xset found in folders the test makes.
class TestLinuxSystemActions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        qputenv("GSETTINGS_BACKEND", "memory");
        // The data folders below are the test's own; the schemas stay the system's.
        qputenv("GSETTINGS_SCHEMA_DIR", "/usr/share/glib-2.0/schemas");
        QVERIFY(m_data.isValid());
        qputenv("XDG_DATA_HOME", m_data.filePath(QStringLiteral("home")).toUtf8());
        qputenv("XDG_DATA_DIRS", m_data.filePath(QStringLiteral("system")).toUtf8());
        qputenv(
            "PATH",
            (m_data.filePath(QStringLiteral("bin")) + QStringLiteral(":/usr/bin:/bin")).toUtf8());
        QVERIFY(QDir(m_data.path()).mkpath(QStringLiteral("system/applications")));
        QVERIFY(QDir(m_data.path()).mkpath(QStringLiteral("bin")));
    }

    void locksThroughLogind() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
        QVERIFY(m_bus.startService(
            logind, {QStringLiteral("--session"), QStringLiteral("-t"), QStringLiteral("logind")}));
        QCOMPARE(SessionBusMock::mockCall(logind, QStringLiteral("/org/freedesktop/login1"),
                                          QStringLiteral("AddSession"),
                                          {QStringLiteral("c7"), QStringLiteral("seat0"), 1000U,
                                           QStringLiteral("person"), true})
                     .type(),
                 QDBusMessage::ReplyMessage);
        LinuxSystemActions actions(session(QStringLiteral("c7")));
        QSignalSpy found(&actions, &SystemActions::changed);
        QVERIFY(found.wait(5000));
        QVERIFY(actions.offers(SystemAction::lockScreen));
        QSignalSpy locked(this, &TestLinuxSystemActions::lockSeen);
        QVERIFY(QDBusConnection::sessionBus().connect(
            logind, QStringLiteral("/org/freedesktop/login1/session/c7"),
            QStringLiteral("org.freedesktop.login1.Session"), QStringLiteral("Lock"), this,
            SIGNAL(lockSeen())));
        QVERIFY(actions.run(SystemAction::lockScreen).isSuccess());
        QVERIFY(locked.wait(5000));
        m_bus.stopServices();
    }

    void bannersAreDoNotDisturbOnGnomeOnly() {
        LinuxSystemActions elsewhere(session(QString(), {QStringLiteral("openbox")}));
        QVERIFY(!elsewhere.offers(SystemAction::doNotDisturb));
        QVERIFY(!elsewhere.run(SystemAction::doNotDisturb).isSuccess());

        LinuxSystemActions gnome(
            session(QString(), {QStringLiteral("ubuntu"), QStringLiteral("GNOME")}));
        if (!gnome.offers(SystemAction::doNotDisturb)) {
            QSKIP("GNOME's notification settings schema is not installed");
        }
        QSignalSpy changed(&gnome, &SystemActions::changed);
        QVERIFY(!gnome.doNotDisturb());
        QVERIFY(gnome.run(SystemAction::doNotDisturb).isSuccess());
        QVERIFY(gnome.doNotDisturb());
        QVERIFY(changed.count() > 0 || changed.wait(2000));
        QVERIFY(gnome.run(SystemAction::doNotDisturb).isSuccess());
        QVERIFY(!gnome.doNotDisturb());
    }

    void screenshotByTheDesktopsEntry_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<bool>("offered");
        QTest::addColumn<QString>("made");
        QTest::newRow("a known program")
            << "org.gnome.Screenshot.desktop" << QByteArray("Name=Shots\nExec=touch %1/known\n")
            << true << "known";
        QTest::newRow("any entry that says so")
            << "grabber.desktop"
            << QByteArray("Name=Grabber\nKeywords=Screenshot;Capture;\nExec=touch %1/keyword %U\n")
            << true << "keyword";
        QTest::newRow("hidden entries are not offered")
            << "gnome-screenshot.desktop"
            << QByteArray("Name=Shots\nNoDisplay=false\nHidden=true\nExec=touch %1/x\n") << false
            << "";
    }
    void screenshotByTheDesktopsEntry() {
        QFETCH(QString, file);
        QFETCH(QByteArray, entry);
        QFETCH(bool, offered);
        QFETCH(QString, made);
        QTemporaryDir out;
        const QString applications = m_data.filePath(QStringLiteral("system/applications/"));
        QVERIFY(
            writeFile(applications + file, "[Desktop Entry]\nType=Application\n" +
                                               QString::fromUtf8(entry).arg(out.path()).toUtf8()));
        LinuxSystemActions actions(session());
        QCOMPARE(actions.offers(SystemAction::screenshot), offered);
        if (offered) {
            QVERIFY(actions.run(SystemAction::screenshot).isSuccess());
            QTRY_VERIFY(QFile::exists(out.filePath(made)));
        }
        QVERIFY(QFile::remove(applications + file));
    }

    void displaysOffThroughTheXServer() {
        QTemporaryDir out;
        const QString xset = m_data.filePath(QStringLiteral("bin/xset"));
        QVERIFY(writeFile(xset,
                          "#!/bin/sh\necho \"$@\" > " +
                              out.filePath(QStringLiteral("args")).toUtf8() + "\n",
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(!LinuxSystemActions(session(QString(), {}, QString()))
                     .offers(SystemAction::displayOff));
        LinuxSystemActions actions(session(QString(), {}, QStringLiteral(":42")));
        QVERIFY(actions.offers(SystemAction::displayOff));
        QVERIFY(actions.run(SystemAction::displayOff).isSuccess());
        QFile args(out.filePath(QStringLiteral("args")));
        QTRY_VERIFY(args.exists() && args.size() > 0);
        QVERIFY(args.open(QIODevice::ReadOnly));
        QCOMPARE(args.readAll().trimmed(), QByteArray("-display :42 dpms force off"));
        QVERIFY(QFile::remove(xset));
    }

Q_SIGNALS:
    void lockSeen();

private:
    // No logind unless one is asked for: the private bus has none.
    static LinuxSystemActions::Session
    session(const QString& id = {}, const QStringList& desktops = {}, const QString& display = {}) {
        return {.logind = id.isEmpty() ? QDBusConnection(QStringLiteral("none"))
                                       : QDBusConnection::sessionBus(),
                .sessionId = id,
                .display = display,
                .desktops = desktops};
    }

    SessionBusMock m_bus;
    QTemporaryDir m_data;
};

QTEST_GUILESS_MAIN(TestLinuxSystemActions)
#include "tst_linuxsystemactions.moc"
