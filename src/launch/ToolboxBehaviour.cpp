#include "launch/ToolboxBehaviour.h"

#include "platform/Notifications.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcToolbox, "Toolbox")

ToolboxBehaviour::ToolboxBehaviour(SystemActions& actions, Scheduler& scheduler,
                                   Notifications& notifications, QObject* parent)
    : TileBehaviour(parent)
    , m_actions(actions)
    , m_scheduler(scheduler)
    , m_notifications(notifications) {
    connect(&m_actions, &SystemActions::changed, this, [this] { Q_EMIT changed(QUuid()); });
}

const QList<SystemAction>& ToolboxBehaviour::all() {
    static const QList<SystemAction> actions{SystemAction::lockScreen, SystemAction::displayOff,
                                             SystemAction::screenshot, SystemAction::doNotDisturb};
    return actions;
}

QString ToolboxBehaviour::commandOf(SystemAction action) {
    switch (action) {
    case SystemAction::lockScreen:
        return QStringLiteral("lock");
    case SystemAction::displayOff:
        return QStringLiteral("displayOff");
    case SystemAction::screenshot:
        return QStringLiteral("screenshot");
    case SystemAction::doNotDisturb:
        return QStringLiteral("doNotDisturb");
    }
    return {};
}

std::optional<SystemAction> ToolboxBehaviour::actionOf(const QString& command) {
    for (const SystemAction action : all()) {
        if (commandOf(action) == command) {
            return action;
        }
    }
    return std::nullopt;
}

QList<SystemAction> ToolboxBehaviour::offered() const {
    QList<SystemAction> out;
    for (const SystemAction action : all()) {
        if (m_actions.offers(action)) {
            out << action;
        }
    }
    return out;
}

bool ToolboxBehaviour::press(const WidgetInstance& tile, const QString& command) {
    Q_UNUSED(tile)
    const std::optional<SystemAction> action = actionOf(command);
    if (!action || !m_actions.offers(*action)) {
        return false;
    }
    const auto run = [this, action = *action] {
        const LaunchResult result = m_actions.run(action);
        if (!result.isSuccess()) {
            qCWarning(lcToolbox, "%s failed: %s", qUtf8Printable(commandOf(action)),
                      qUtf8Printable(result.error()));
            m_notifications.notify(L("toolbox.failed", QStringLiteral("That did not work")),
                                   result.error());
        }
        Q_EMIT changed(QUuid());
    };
    if (*action == SystemAction::displayOff) {
        m_pending =
            m_scheduler.singleShot(displayOffDelay, std::chrono::milliseconds(50), this, run);
    } else {
        run();
    }
    return true;
}

} // namespace tw
