// Display-only windows above the system's lock screen, one per screen, and the session's word on
// whether the screen is locked. Most systems allow no such windows; they say why.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

class LockScreenSurface : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Why nothing can be drawn above this system's lock screen; nullopt where it can.
    virtual std::optional<QString> unavailableReason() const = 0;
    bool canElevate() const { return !unavailableReason().has_value(); }
    // The session's own reading; false when it says nothing.
    virtual bool isScreenLocked() const = 0;

    // Opens one borderless, click-through window per screen, drawing at `fps` (0 for still), and
    // orders them front; answers how many.
    virtual int open(double fps) = 0;
    // Lifts the open windows above the lock screen; false leaves them where they are.
    virtual bool elevate() = 0;
    // Orders the windows out, or back front; they stay lifted either way.
    virtual void setSuspended(bool suspended) = 0;
    // Releases what elevate() took, orders every window out and forgets them.
    virtual void close() = 0;

    // A diagnosis of each step, as the "label : value" lines of the probe mode.
    virtual QStringList probe() = 0;

Q_SIGNALS:
    // Notices from the session; they can arrive out of order, so the controller checks them
    // against isScreenLocked().
    void screenLocked();
    void screenUnlocked();
    void willSleep();
    void sessionResigned();
};

} // namespace tw
