// The companions on the desktop: each tile's CompanionMind, fed the pointer a few times a second
// while the tile is in view and the companion is up (not at all while it is covered, or asleep
// for the night), and a poke on a click.
#pragma once

#include "ambient/CompanionMind.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QHash>
#include <QUuid>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class PointerPosition;
class Scheduler;

class CompanionBehaviour : public TileBehaviour {
    Q_OBJECT
public:
    // How often the pointer is looked for while a companion is up, and the time of day while
    // all are asleep.
    static constexpr std::chrono::milliseconds lookEvery{200};
    static constexpr std::chrono::seconds restEvery{30};

    CompanionBehaviour(const Clock& clock, Scheduler& scheduler, const PointerPosition& pointer,
                       QObject* parent = nullptr);

    struct Look {
        CompanionMind::Mood mood = CompanionMind::Mood::idle;
        QPointF gaze;
    };
    // What the tile's companion does now; nullopt for a tile not on the desktop.
    std::optional<Look> look(const QUuid& tile) const;

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;

private:
    struct Tile {
        CompanionMind mind;
        CompanionMind::Hours hours;
        // The middle of the tile in global points (y up); nullopt for a tile placed by the grid.
        std::optional<QPointF> middle;
        bool inView = false;
        QPointF shownGaze;
    };

    void tick();
    void reschedule();

    const Clock& m_clock;
    Scheduler& m_scheduler;
    const PointerPosition& m_pointer;
    QHash<QUuid, Tile> m_tiles;
    ScheduledTask m_task;
    std::chrono::milliseconds m_interval{0};
};

} // namespace tw
