#include "platform/linux/FreedesktopNotifications.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QVariantMap>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcNotifications, "Notifications")

} // namespace

void FreedesktopNotifications::notify(const QString& title, const QString& body) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCWarning(lcNotifications, "no session bus to show \"%s\"", qUtf8Printable(title));
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // app_name, replaces_id, app_icon, summary, body, actions, hints, expire_timeout (-1: the
    // server's default).
    call << QCoreApplication::applicationName() << 0U << QStringLiteral("tarnwick") << title << body
         << QStringList() << QVariantMap() << -1;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [title](QDBusPendingCallWatcher* finished) {
                const QDBusPendingReply<uint> reply = *finished;
                if (reply.isError()) {
                    qCWarning(lcNotifications, "could not show \"%s\": %s", qUtf8Printable(title),
                              qUtf8Printable(reply.error().message()));
                }
                finished->deleteLater();
            });
}

} // namespace tw
