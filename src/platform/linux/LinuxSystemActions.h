// The session's one-click actions on a freedesktop.org desktop: logind's Lock of the person's
// session (xdg-screensaver where logind is not there), the displays off through the X server's
// power saving (xset), the desktop's own screenshot program by its desktop entry, and GNOME's
// notification banners ("show-banners") as do-not-disturb.
#pragma once

#include "platform/SystemActions.h"

#include <QDBusConnection>
#include <QStringList>

#include <optional>

struct _GSettings;

namespace tw {

class LinuxSystemActions final : public SystemActions {
    Q_OBJECT
public:
    struct Session {
        // Where logind answers (the system bus in a session).
        QDBusConnection logind;
        // $XDG_SESSION_ID; empty: the session of this process.
        QString sessionId;
        // $DISPLAY: an X server whose power saving turns the displays off.
        QString display;
        // $XDG_CURRENT_DESKTOP, split.
        QStringList desktops;
    };

    explicit LinuxSystemActions(Session session, QObject* parent = nullptr);
    static Session currentSession();
    ~LinuxSystemActions() override;

    bool offers(SystemAction action) const override;
    LaunchResult run(SystemAction action) override;
    bool doNotDisturb() const override;

    // Screenshot programs known by their desktop-entry ids, most likely first; after them any
    // entry whose name or keywords say "screenshot".
    static const QStringList& screenshotEntries();

private:
    void findSession();
    static void onChanged(_GSettings* settings, const char* key, void* self);
    const std::optional<QStringList>& screenshotCommand() const;

    Session m_session;
    // logind's object of the person's session, once found.
    QString m_sessionPath;
    _GSettings* m_notifications = nullptr;
    mutable std::optional<std::optional<QStringList>> m_screenshot;
};

} // namespace tw
