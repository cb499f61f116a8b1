// Notifications through the desktop's notification server (org.freedesktop.Notifications on the
// session bus).
#pragma once

#include "platform/Notifications.h"

#include <QObject>

namespace tw {

class FreedesktopNotifications final : public QObject, public Notifications {
    Q_OBJECT
public:
    using QObject::QObject;

    // Sends without waiting; a missing server or bus is logged once per message.
    void notify(const QString& title, const QString& body) override;
};

} // namespace tw
