#include "SessionBusMock.h"
#include "TestRows.h"
#include "platform/linux/FreedesktopNotifications.h"
#include "platform/linux/PortalColorScheme.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(tw::ColorScheme)

namespace tw {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");

QDBusMessage mockCall(const QString& method, const QVariantList& arguments) {
    return SessionBusMock::mockCall(portal, portalPath, method, arguments);
}

void setPaletteDark(bool dark) {
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Window, dark ? QColor(30, 30, 30) : QColor(240, 240, 240));
    QGuiApplication::setPalette(palette);
}

} // namespace

// The real colour-scheme watcher and notification sender against a portal and a notification
// server served by python3-dbusmock on a private session bus.
class TestDesktopBus : public QObject {
    Q_OBJECT

    // Summary and body of every Notify call the mocked server received.
    static QStringList notified() {
        const QDBusMessage reply =
            SessionBusMock::mockCall(QStringLiteral("org.freedesktop.Notifications"),
                                     QStringLiteral("/org/freedesktop/Notifications"),
                                     QStringLiteral("GetMethodCalls"), {QStringLiteral("Notify")});
        QStringList lines;
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return {reply.errorMessage()};
        }
        // a(tav): a time stamp and the arguments of each call.
        const auto calls = reply.arguments().value(0).value<QDBusArgument>();
        calls.beginArray();
        while (!calls.atEnd()) {
            quint64 stamp = 0;
            QVariantList arguments;
            calls.beginStructure();
            calls >> stamp >> arguments;
            calls.endStructure();
            lines.append(arguments.value(3).toString() + QLatin1String(" | ") +
                         arguments.value(4).toString());
        }
        calls.endArray();
        return lines;
    }

    // A portal whose Settings interface has `method` ("ReadOne" or "Read") answering with the
    // Python expression `value`; an empty method leaves the bus without a portal.
    bool startPortal(const QString& method, const QString& value) {
        if (method.isEmpty()) {
            return true;
        }
        if (!m_bus.startService(portal, {portal, portalPath, settings})) {
            return false;
        }
        const QDBusMessage reply =
            mockCall(QStringLiteral("AddMethod"),
                     {settings, method, QStringLiteral("ss"), QStringLiteral("v"),
                      QString(QStringLiteral("ret = ") + value)});
        return reply.type() == QDBusMessage::ReplyMessage;
    }

    static void emitSettingChanged(const QString& key, uint value) {
        mockCall(QStringLiteral("EmitSignal"),
                 {settings, QStringLiteral("SettingChanged"), QStringLiteral("ssv"),
                  QVariantList{QStringLiteral("org.freedesktop.appearance"), key,
                               QVariant::fromValue(value)}});
    }

    // Lets the watcher ask the portal, once the event loop runs, and waits for the answer: the
    // pending call it keeps goes once answered.
    static void settle(const PortalColorScheme& watcher) {
        QCoreApplication::processEvents();
        QVERIFY(!watcher.findChildren<QDBusPendingCallWatcher*>().isEmpty());
        QTRY_VERIFY(watcher.findChildren<QDBusPendingCallWatcher*>().isEmpty());
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void firstReading_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("paletteDark");
        QTest::addColumn<ColorScheme>("expected");
        using test::row;
        row("dark over a light palette", "ReadOne", "dbus.UInt32(1)", false, ColorScheme::Dark);
        row("light over a dark palette", "ReadOne", "dbus.UInt32(2)", true, ColorScheme::Light);
        row("an older portal wraps the value twice", "Read", "dbus.UInt32(1, variant_level=2)",
            false, ColorScheme::Dark);
        row("no preference: the palette", "ReadOne", "dbus.UInt32(0)", true, ColorScheme::Dark);
        row("a value of another type: the palette", "ReadOne", "'dark'", false, ColorScheme::Light);
        row("no portal: the palette", "", "", true, ColorScheme::Dark);
    }
    void firstReading() {
        QFETCH(QString, method);
        QFETCH(QString, value);
        QFETCH(bool, paletteDark);
        setPaletteDark(paletteDark);
        QVERIFY(startPortal(method, value));
        PortalColorScheme watcher;
        settle(watcher);
        QTEST(watcher.colorScheme(), "expected");
    }

    void followsTheDesktopAsItChanges() {
        setPaletteDark(false);
        QVERIFY(startPortal(QStringLiteral("ReadOne"), QStringLiteral("dbus.UInt32(2)")));
        PortalColorScheme watcher;
        QSignalSpy changes(&watcher, &ColorSchemeWatcher::colorSchemeChanged);
        settle(watcher);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Light);

        emitSettingChanged(QStringLiteral("accent-color"), 1);
        emitSettingChanged(QStringLiteral("color-scheme"), 1);
        QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 1, 5000);
        QCOMPARE(changes.first().first().value<ColorScheme>(), ColorScheme::Dark);

        // The portal's word outranks the palette until it says it has no preference.
        setPaletteDark(false);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Dark);
        emitSettingChanged(QStringLiteral("color-scheme"), 0);
        QTRY_COMPARE_WITH_TIMEOUT(watcher.colorScheme(), ColorScheme::Light, 5000);
        setPaletteDark(true);
        QCOMPARE(watcher.colorScheme(), ColorScheme::Dark);
        QCOMPARE(changes.count(), 3);
    }

    void aMessageReachesTheServer() {
        QVERIFY(m_bus.startService(
            QStringLiteral("org.freedesktop.Notifications"),
            {QStringLiteral("--template"), QStringLiteral("notification_daemon")}));
        FreedesktopNotifications notifications;
        notifications.notify(QStringLiteral("Nothing opens calendars"),
                             QStringLiteral("Install a calendar app."));
        QTRY_COMPARE_WITH_TIMEOUT(
            notified(),
            QStringList{QStringLiteral("Nothing opens calendars | Install a calendar app.")}, 5000);
    }

    void noServerCostsOneLogLine() {
        static QStringList logged;
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { logged.append(text); });
        FreedesktopNotifications notifications;
        notifications.notify(QStringLiteral("Lost"), QString());
        QTRY_COMPARE_WITH_TIMEOUT(logged.size(), 1, 5000);
        qInstallMessageHandler(previous);
        QVERIFY2(logged.first().startsWith(QLatin1String("could not show \"Lost\": ")),
                 qPrintable(logged.first()));
    }

private:
    SessionBusMock m_bus;
};

} // namespace tw

QTEST_MAIN(tw::TestDesktopBus)
#include "tst_desktopbus.moc"
