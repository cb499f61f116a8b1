// Notifications that show nothing and remember what they were given: tests and off-screen pictures.
#pragma once

#include "platform/Notifications.h"

#include <QList>

namespace tw {

class NullNotifications final : public Notifications {
public:
    struct Shown {
        QString title;
        QString body;
    };

    void notify(const QString& title, const QString& body) override {
        m_shown.append({title, body});
    }
    const QList<Shown>& shown() const { return m_shown; }

private:
    QList<Shown> m_shown;
};

} // namespace tw
