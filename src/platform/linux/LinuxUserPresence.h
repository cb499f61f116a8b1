// Presence on a Linux desktop: the idle time from the X server's screen-saver extension (else
// logind's IdleHint and IdleSinceHint), and away while logind says the session is locked or not
// the active one, while the machine prepares for sleep, or while the displays are dark.
#pragma once

#include "platform/UserPresence.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

struct xcb_connection_t;

namespace tw {

class Clock;
class Displays;

class LinuxUserPresence final : public UserPresence {
    Q_OBJECT
public:
    struct Services {
        // Null where no X server is reached: logind's idle hint is used then.
        xcb_connection_t* x11 = nullptr;
        // The bus logind is on (the system bus).
        QDBusConnection logind;
        // The session's object path; empty to ask logind for this process's session.
        QString session;
        const Clock& clock;
        // Their dark and sleeping count as away; may be null.
        const Displays* displays = nullptr;
    };

    explicit LinuxUserPresence(const Services& services, QObject* parent = nullptr);

    double idleSeconds() const override;
    bool isAway() const override;

private Q_SLOTS:
    void onLock();
    void onUnlock();
    void onPrepareForSleep(bool start);
    void onPropertiesChanged(const QString& interface, const QVariantMap& changed,
                             const QStringList& invalidated);

private:
    void findSession();
    void follow(const QString& session);
    void take(const QVariantMap& properties);
    void update();

    Services m_services;
    quint32 m_root = 0;
    bool m_serverIdle = false;
    QString m_session;
    bool m_locked = false;
    bool m_inactive = false;
    bool m_sleeping = false;
    bool m_dark = false;
    bool m_idleHint = false;
    // Microseconds since 1970 when the session went idle, as logind keeps it.
    quint64 m_idleSince = 0;
    bool m_away = false;
};

} // namespace tw
