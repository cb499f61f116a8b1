#include "desktop/DisplayFollower.h"

#include "displays/LayoutDisplay.h"
#include "displays/TopologyMemory.h"
#include "grid/GridStore.h"
#include "platform/Displays.h"
#include "platform/Scheduler.h"

#include <QLoggingCategory>

#include <algorithm>

namespace tw {

Q_LOGGING_CATEGORY(lcDesktop, "Desktop")

using namespace std::chrono_literals;

DisplayFollower::DisplayFollower(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    for (auto woke : {&Displays::didWake, &Displays::screensDidWake}) {
        connect(&m_services.displays, woke, this, [this] { reassertAfterDisplaysReturned(); });
    }
    // While veiled, screen events pass: the panels take their places when the veil lifts.
    connect(&m_services.displays, &Displays::screensChanged, this, [this] {
        if (!m_veiled) {
            Q_EMIT syncWanted();
        }
    });
    if (m_services.watcher != nullptr) {
        connect(m_services.watcher, &ScreenTopologyWatcher::settled, this,
                [this](const ScreenTopologyWatcher::Change& change) { adoptArrangement(change); });
        connect(m_services.watcher, &ScreenTopologyWatcher::isTransitioningChanged, this,
                [this](bool transitioning) { setVeil(transitioning); });
    }
}

void DisplayFollower::setVeil(bool veiled) {
    m_veilTask.cancel();
    if (veiled) {
        m_veiled = true;
        Q_EMIT veilChanged(true);
        // A change that never settles must not leave the desktop empty.
        m_veilTask =
            m_services.scheduler.singleShot(veilGuard, 500ms, this, [this] { setVeil(false); });
        return;
    }
    if (!m_veiled) {
        return;
    }
    m_veilTask = m_services.scheduler.singleShot(veilReturn, 0ms, this, [this] {
        m_veiled = false;
        Q_EMIT syncWanted();
        Q_EMIT veilChanged(false);
    });
}

// A settle that changed nothing still puts every panel back where the grid says: the window
// system may have moved them while the displays were in flux.
void DisplayFollower::adoptArrangement(const ScreenTopologyWatcher::Change& change) {
    if (change.topologyChanged && m_services.memory != nullptr) {
        const auto layout =
            m_services.memory->layoutForSettled(change.displays, m_services.grid.layout());
        if (layout && !layout->instances.isEmpty() && *layout != m_services.grid.layout()) {
            m_services.grid.replaceLayout(*layout);
            return;
        }
    }
    Q_EMIT syncWanted();
}

void DisplayFollower::reassertAfterDisplaysReturned() {
    qCInfo(lcDesktop, "displays returned: restoring widget positions");
    Q_EMIT syncWanted();
    m_wakeTasks.clear();
    for (const auto delay : wakeRepeats) {
        m_wakeTasks.push_back(
            m_services.scheduler.singleShot(delay, 100ms, this, [this] { Q_EMIT syncWanted(); }));
    }
}

int DisplayFollower::visitorCount() const {
    if (m_services.memory == nullptr) {
        return 0;
    }
    const QList<LayoutDisplay> displays = LayoutDisplay::currentDisplays(m_services.displays);
    const auto& instances = m_services.grid.layout().instances;
    return static_cast<int>(std::count_if(instances.cbegin(), instances.cend(), [&](const auto& i) {
        return m_services.memory->isVisitor(i.id, displays);
    }));
}

} // namespace tw
