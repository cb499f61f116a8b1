// Short messages to the person through the desktop's own notification bubbles.
#pragma once

#include <QString>

namespace tw {

class Notifications {
public:
    Notifications() = default;
    virtual ~Notifications() = default;
    Q_DISABLE_COPY_MOVE(Notifications)

    // Shows `title` with `body` beneath it and returns at once; a desktop that cannot show it
    // only costs a line in the log.
    virtual void notify(const QString& title, const QString& body) = 0;
};

} // namespace tw
