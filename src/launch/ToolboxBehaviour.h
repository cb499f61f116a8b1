// The toolbox tile: the session's actions this desktop offers, each a button on the face whose
// command names it. The displays go off a moment after the click, so that the click's own
// release does not wake them.
#pragma once

#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"
#include "platform/SystemActions.h"

#include <QList>

namespace tw {

class Notifications;
class Scheduler;

class ToolboxBehaviour final : public TileBehaviour {
    Q_OBJECT
public:
    ToolboxBehaviour(SystemActions& actions, Scheduler& scheduler, Notifications& notifications,
                     QObject* parent = nullptr);

    bool press(const WidgetInstance& tile, const QString& command) override;

    // What the face shows, in order: those this desktop offers.
    QList<SystemAction> offered() const;
    bool doNotDisturb() const { return m_actions.doNotDisturb(); }

    // In the order of the face: lock, displays off, screenshot, do-not-disturb.
    static const QList<SystemAction>& all();
    static QString commandOf(SystemAction action);
    static std::optional<SystemAction> actionOf(const QString& command);
    static constexpr std::chrono::milliseconds displayOffDelay{600};

private:
    SystemActions& m_actions;
    Scheduler& m_scheduler;
    Notifications& m_notifications;
    ScheduledTask m_pending;
};

} // namespace tw
