// System actions that do nothing but remember what was asked: tests and pictures. Offers what it
// is told to.
#pragma once

#include "platform/SystemActions.h"

#include <QList>
#include <QSet>

namespace tw {

class FixedSystemActions final : public SystemActions {
public:
    explicit FixedSystemActions(QSet<SystemAction> offered = {}, QObject* parent = nullptr)
        : SystemActions(parent)
        , m_offered(std::move(offered)) {}

    bool offers(SystemAction action) const override { return m_offered.contains(action); }
    LaunchResult run(SystemAction action) override {
        m_runs.append(action);
        if (!offers(action)) {
            return LaunchResult::failure(QStringLiteral("not offered"));
        }
        if (action == SystemAction::doNotDisturb) {
            m_doNotDisturb = !m_doNotDisturb;
            Q_EMIT changed();
        }
        return LaunchResult::success();
    }
    bool doNotDisturb() const override { return m_doNotDisturb; }

    void setOffered(QSet<SystemAction> offered) {
        m_offered = std::move(offered);
        Q_EMIT changed();
    }
    const QList<SystemAction>& runs() const { return m_runs; }

private:
    QSet<SystemAction> m_offered;
    QList<SystemAction> m_runs;
    bool m_doNotDisturb = false;
};

} // namespace tw
