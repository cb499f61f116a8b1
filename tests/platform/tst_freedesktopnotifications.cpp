#include "SessionBusMock.h"
#include "platform/linux/FreedesktopNotifications.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTest>

namespace tw {

// The real sender against python3-dbusmock's notification server on a private session bus.
class TestFreedesktopNotifications : public QObject {
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

private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
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
        m_bus.stopServices();
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

QTEST_GUILESS_MAIN(tw::TestFreedesktopNotifications)
#include "tst_freedesktopnotifications.moc"
