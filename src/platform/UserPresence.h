// Whether a person is at the machine: how long since the last keyboard or pointer input, and
// whether the session is away (the screen locked or dark, the machine asleep, another session in
// front).
#pragma once

#include <QObject>

namespace tw {

class UserPresence : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Seconds since the last input; 0 where the system cannot tell.
    virtual double idleSeconds() const = 0;
    virtual bool isAway() const = 0;

Q_SIGNALS:
    void awayChanged(bool away);
};

} // namespace tw
