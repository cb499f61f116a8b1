#include "platform/linux/LinuxSystemActions.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgApplications.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>

#include <cstring>
#include <gio/gio.h>
#include <unistd.h>

namespace tw {

Q_LOGGING_CATEGORY(lcSystemActions, "SystemActions")

namespace {

const QString loginService = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString loginManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString loginSession = QStringLiteral("org.freedesktop.login1.Session");
constexpr const char* notificationsSchema = "org.gnome.desktop.notifications";
constexpr const char* bannersKey = "show-banners";
constexpr int callTimeout = 2000;

// Desktops that keep GNOME's notification settings and honour them.
bool keepsGnomeBanners(const QStringList& desktops) {
    for (const QString& desktop : desktops) {
        for (const char* name : {"gnome", "ubuntu", "unity", "budgie", "pantheon"}) {
            if (desktop.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
                return true;
            }
        }
    }
    return false;
}

// Looked up before use: creating settings of a schema that is not installed ends the process.
_GSettings* notificationSettings() {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    GSettingsSchema* schema =
        source == nullptr ? nullptr
                          : g_settings_schema_source_lookup(source, notificationsSchema, TRUE);
    if (schema == nullptr) {
        return nullptr;
    }
    GSettings* settings = nullptr;
    if (g_settings_schema_has_key(schema, bannersKey) != 0) {
        settings = g_settings_new_full(schema, nullptr, nullptr);
    }
    g_settings_schema_unref(schema);
    return settings;
}

LaunchResult startDetached(const QStringList& command) {
    if (command.isEmpty() || !QProcess::startDetached(command.first(), command.mid(1))) {
        return LaunchResult::failure(QLatin1String("could not start ") + command.value(0));
    }
    return LaunchResult::success();
}

} // namespace

LinuxSystemActions::LinuxSystemActions(Session session, QObject* parent)
    : SystemActions(parent)
    , m_session(std::move(session)) {
    if (keepsGnomeBanners(m_session.desktops)) {
        m_notifications = notificationSettings();
    }
    if (m_notifications != nullptr) {
        g_signal_connect(m_notifications, "changed", G_CALLBACK(onChanged), this);
        // GSettings tells of a change only to a key read since the handler was connected.
        doNotDisturb();
    }
    findSession();
}

LinuxSystemActions::Session LinuxSystemActions::currentSession() {
    return {.logind = QDBusConnection::systemBus(),
            .sessionId = qEnvironmentVariable("XDG_SESSION_ID"),
            // The X server of a Wayland session's X programs powers no display.
            .display = qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland")
                           ? QString()
                           : qEnvironmentVariable("DISPLAY"),
            .desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                            .split(QLatin1Char(':'), Qt::SkipEmptyParts)};
}

LinuxSystemActions::~LinuxSystemActions() {
    if (m_notifications != nullptr) {
        g_signal_handlers_disconnect_by_data(m_notifications, this);
        g_object_unref(m_notifications);
    }
}

const QStringList& LinuxSystemActions::screenshotEntries() {
    static const QStringList ids{
        QStringLiteral("org.gnome.Screenshot.desktop"),
        QStringLiteral("gnome-screenshot.desktop"),
        QStringLiteral("org.kde.spectacle.desktop"),
        QStringLiteral("org.flameshot.Flameshot.desktop"),
        QStringLiteral("flameshot.desktop"),
        QStringLiteral("xfce4-screenshooter.desktop"),
        QStringLiteral("org.xfce.screenshooter.desktop"),
        QStringLiteral("mate-screenshot.desktop"),
        QStringLiteral("screengrab.desktop"),
        QStringLiteral("org.ksnip.ksnip.desktop"),
        QStringLiteral("shutter.desktop"),
    };
    return ids;
}

void LinuxSystemActions::findSession() {
    if (!m_session.logind.isConnected()) {
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(loginService, loginPath, loginManager,
                                                       m_session.sessionId.isEmpty()
                                                           ? QStringLiteral("GetSessionByPID")
                                                           : QStringLiteral("GetSession"));
    call.setArguments(m_session.sessionId.isEmpty() ? QVariantList{static_cast<quint32>(::getpid())}
                                                    : QVariantList{m_session.sessionId});
    auto* watcher =
        new QDBusPendingCallWatcher(m_session.logind.asyncCall(call, callTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *w;
        if (!reply.isValid()) {
            qCInfo(lcSystemActions) << "no login session to lock:" << reply.error().message();
            return;
        }
        m_sessionPath = reply.value().path();
        Q_EMIT changed();
    });
}

const std::optional<QStringList>& LinuxSystemActions::screenshotCommand() const {
    if (!m_screenshot) {
        // Read once, when first asked: only a toolbox tile wants it.
        const XdgApplications applications = XdgApplications::scan();
        std::optional<QStringList> command;
        for (const QString& id : screenshotEntries()) {
            if (const std::optional<QString> path = applications.pathOf(id)) {
                const std::optional<DesktopEntry> entry = DesktopEntry::read(*path);
                if (entry && !entry->commandLine().isEmpty()) {
                    command = entry->commandLine();
                    break;
                }
            }
        }
        if (!command) {
            for (const XdgApplications::Found& found : applications.shown()) {
                if ((found.entry.name.contains(QLatin1String("screenshot"), Qt::CaseInsensitive) ||
                     found.entry.keywords.contains(QLatin1String("screenshot"),
                                                   Qt::CaseInsensitive)) &&
                    !found.entry.commandLine().isEmpty()) {
                    command = found.entry.commandLine();
                    break;
                }
            }
        }
        m_screenshot = command;
    }
    return *m_screenshot;
}

bool LinuxSystemActions::offers(SystemAction action) const {
    switch (action) {
    case SystemAction::lockScreen:
        return !m_sessionPath.isEmpty() ||
               !QStandardPaths::findExecutable(QStringLiteral("xdg-screensaver")).isEmpty();
    case SystemAction::displayOff:
        return !m_session.display.isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("xset")).isEmpty();
    case SystemAction::screenshot:
        return screenshotCommand().has_value();
    case SystemAction::doNotDisturb:
        return m_notifications != nullptr;
    }
    return false;
}

LaunchResult LinuxSystemActions::run(SystemAction action) {
    if (!offers(action)) {
        return LaunchResult::failure(QStringLiteral("this desktop cannot do that"));
    }
    switch (action) {
    case SystemAction::lockScreen: {
        if (!m_sessionPath.isEmpty()) {
            const QDBusMessage call = QDBusMessage::createMethodCall(
                loginService, m_sessionPath, loginSession, QStringLiteral("Lock"));
            // The locker answers logind's signal; nothing to wait for here.
            if (m_session.logind.send(call)) {
                return LaunchResult::success();
            }
        }
        return startDetached({QStringLiteral("xdg-screensaver"), QStringLiteral("lock")});
    }
    case SystemAction::displayOff:
        return startDetached({QStringLiteral("xset"), QStringLiteral("-display"), m_session.display,
                              QStringLiteral("dpms"), QStringLiteral("force"),
                              QStringLiteral("off")});
    case SystemAction::screenshot:
        return startDetached(*screenshotCommand());
    case SystemAction::doNotDisturb: {
        const bool quiet = doNotDisturb();
        if (g_settings_set_boolean(m_notifications, bannersKey, quiet ? TRUE : FALSE) == 0) {
            return LaunchResult::failure(QStringLiteral("the notification settings are read-only"));
        }
        g_settings_sync();
        return LaunchResult::success();
    }
    }
    return LaunchResult::failure(QStringLiteral("unknown action"));
}

bool LinuxSystemActions::doNotDisturb() const {
    return m_notifications != nullptr && g_settings_get_boolean(m_notifications, bannersKey) == 0;
}

void LinuxSystemActions::onChanged(_GSettings* settings, const char* key, void* self) {
    Q_UNUSED(settings)
    if (std::strcmp(key, bannersKey) == 0) {
        Q_EMIT static_cast<LinuxSystemActions*>(self)->changed();
    }
}

} // namespace tw
