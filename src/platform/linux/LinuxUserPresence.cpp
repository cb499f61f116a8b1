#include "platform/linux/LinuxUserPresence.h"

#include "platform/Clock.h"
#include "platform/Displays.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>

#include <cstdlib>
#include <memory>
#include <unistd.h>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcPresence, "UserPresence")

const QString loginService = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString loginManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString loginSession = QStringLiteral("org.freedesktop.login1.Session");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};

// A call that must not hold anything up: logind answers at once or not at all.
constexpr int callTimeout = 2000;

} // namespace

LinuxUserPresence::LinuxUserPresence(const Services& services, QObject* parent)
    : UserPresence(parent)
    , m_services(services) {
    if (xcb_connection_t* x11 = m_services.x11) {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(x11)).data->root;
        const xcb_query_extension_reply_t* extension =
            xcb_get_extension_data(x11, &xcb_screensaver_id);
        m_serverIdle = extension != nullptr && extension->present;
    }
    if (const Displays* displays = m_services.displays) {
        connect(displays, &Displays::screensDidSleep, this, [this] {
            m_dark = true;
            update();
        });
        connect(displays, &Displays::screensDidWake, this, [this] {
            m_dark = false;
            update();
        });
    }
    QDBusConnection& bus = m_services.logind;
    if (!bus.isConnected()) {
        qCInfo(lcPresence, "the login manager is not reachable: a locked screen goes unseen");
        return;
    }
    bus.connect(loginService, loginPath, loginManager, QStringLiteral("PrepareForSleep"), this,
                SLOT(onPrepareForSleep(bool)));
    if (m_services.session.isEmpty()) {
        findSession();
    } else {
        follow(m_services.session);
    }
}

double LinuxUserPresence::idleSeconds() const {
    if (m_serverIdle) {
        xcb_connection_t* x11 = m_services.x11;
        const std::unique_ptr<xcb_screensaver_query_info_reply_t, ReplyFree> info(
            xcb_screensaver_query_info_reply(x11, xcb_screensaver_query_info(x11, m_root),
                                             nullptr));
        if (info) {
            return info->ms_since_user_input / 1000.0;
        }
    }
    if (!m_idleHint || m_idleSince == 0) {
        return 0;
    }
    const double now = static_cast<double>(m_services.clock.now().toMSecsSinceEpoch()) / 1000.0;
    return std::max(0.0, now - static_cast<double>(m_idleSince) / 1e6);
}

bool LinuxUserPresence::isAway() const {
    return m_away;
}

void LinuxUserPresence::findSession() {
    // A program started outside the session (from a unit, say) still belongs to the person's
    // graphical session when the environment names it.
    const QString named = QString::fromLocal8Bit(qgetenv("XDG_SESSION_ID"));
    QDBusMessage call = QDBusMessage::createMethodCall(
        loginService, loginPath, loginManager,
        named.isEmpty() ? QStringLiteral("GetSessionByPID") : QStringLiteral("GetSession"));
    call.setArguments(named.isEmpty() ? QVariantList{static_cast<quint32>(::getpid())}
                                      : QVariantList{named});
    auto* watcher =
        new QDBusPendingCallWatcher(m_services.logind.asyncCall(call, callTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *w;
        if (reply.isValid()) {
            follow(reply.value().path());
        } else {
            qCInfo(lcPresence) << "no login session found:" << reply.error().message();
        }
    });
}

void LinuxUserPresence::follow(const QString& session) {
    m_session = session;
    QDBusConnection& bus = m_services.logind;
    bus.connect(loginService, session, loginSession, QStringLiteral("Lock"), this, SLOT(onLock()));
    bus.connect(loginService, session, loginSession, QStringLiteral("Unlock"), this,
                SLOT(onUnlock()));
    bus.connect(loginService, session, properties, QStringLiteral("PropertiesChanged"), this,
                SLOT(onPropertiesChanged(QString, QVariantMap, QStringList)));
    QDBusMessage call =
        QDBusMessage::createMethodCall(loginService, session, properties, QStringLiteral("GetAll"));
    call.setArguments({loginSession});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, callTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<QVariantMap> reply = *w;
        if (reply.isValid()) {
            take(reply.value());
        }
    });
}

void LinuxUserPresence::take(const QVariantMap& changed) {
    if (changed.contains(QStringLiteral("LockedHint"))) {
        m_locked = changed.value(QStringLiteral("LockedHint")).toBool();
    }
    if (changed.contains(QStringLiteral("Active"))) {
        m_inactive = !changed.value(QStringLiteral("Active")).toBool();
    }
    if (changed.contains(QStringLiteral("IdleHint"))) {
        m_idleHint = changed.value(QStringLiteral("IdleHint")).toBool();
    }
    if (changed.contains(QStringLiteral("IdleSinceHint"))) {
        m_idleSince = changed.value(QStringLiteral("IdleSinceHint")).toULongLong();
    }
    update();
}

void LinuxUserPresence::onLock() {
    m_locked = true;
    update();
}

void LinuxUserPresence::onUnlock() {
    m_locked = false;
    update();
}

void LinuxUserPresence::onPrepareForSleep(bool start) {
    m_sleeping = start;
    update();
}

void LinuxUserPresence::onPropertiesChanged(const QString& interface, const QVariantMap& changed,
                                            const QStringList&) {
    if (interface == loginSession) {
        take(changed);
    }
}

void LinuxUserPresence::update() {
    const bool away = m_locked || m_inactive || m_sleeping || m_dark;
    if (away != m_away) {
        m_away = away;
        qCInfo(lcPresence) << (away ? "away" : "back");
        Q_EMIT awayChanged(away);
    }
}

} // namespace tw
