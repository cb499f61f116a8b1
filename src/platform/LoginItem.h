// Starting the program when the person logs in, the way this system does it.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

class LoginItem {
public:
    LoginItem() = default;
    virtual ~LoginItem() = default;
    Q_DISABLE_COPY_MOVE(LoginItem)

    virtual bool isEnabled() const = 0;
    // False when the system's record could not be written or removed; nothing changed then.
    virtual bool setEnabled(bool enabled) = 0;
    // Whether a process with these arguments was started by the login.
    virtual bool startedAtLogin(const QStringList& arguments) const = 0;
};

} // namespace tw
