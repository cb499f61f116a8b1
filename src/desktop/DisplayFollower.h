// The desktop's side of display changes: the veil that hides the panels while a change settles
// (never for longer than its guard), the arrangement remembered for the settled set, and the
// panels put back where the grid says after every settle and wake.
#pragma once

#include "displays/ScreenTopologyWatcher.h"
#include "platform/ScheduledTask.h"

#include <QObject>

#include <chrono>
#include <vector>

namespace tw {

class Displays;
class GridStore;
class Scheduler;
class TopologyMemory;

class DisplayFollower final : public QObject {
    Q_OBJECT
public:
    // The watcher and the memory may be absent: then only screen changes and wakes are followed.
    struct Services {
        const Displays& displays;
        Scheduler& scheduler;
        GridStore& grid;
        ScreenTopologyWatcher* watcher = nullptr;
        TopologyMemory* memory = nullptr;
    };

    static constexpr std::chrono::milliseconds veilGuard{8000};
    static constexpr std::chrono::milliseconds veilReturn{350};
    static constexpr std::chrono::milliseconds wakeRepeats[] = {std::chrono::milliseconds{1500},
                                                                std::chrono::milliseconds{4000}};

    explicit DisplayFollower(const Services& services, QObject* parent = nullptr);

    void setVeil(bool veiled);
    bool isVeiled() const { return m_veiled; }
    // A settled set: its remembered arrangement when the set changed and one is kept, else the
    // panels back where the grid says.
    void adoptArrangement(const ScreenTopologyWatcher::Change& change);
    // Widgets parked here until their own display returns.
    int visitorCount() const;

Q_SIGNALS:
    // The panels are to stand where the grid says.
    void syncWanted();
    // The veil falls at once; it lifts after the panels have taken their places.
    void veilChanged(bool veiled);

private:
    void reassertAfterDisplaysReturned();

    Services m_services;
    bool m_veiled = false;
    ScheduledTask m_veilTask;
    std::vector<ScheduledTask> m_wakeTasks;
};

} // namespace tw
