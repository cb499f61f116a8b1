#include "ambient/CompanionBehaviour.h"

#include "platform/Clock.h"
#include "platform/PointerPosition.h"
#include "platform/Scheduler.h"

#include <QLineF>

namespace tw {

CompanionBehaviour::CompanionBehaviour(const Clock& clock, Scheduler& scheduler,
                                       const PointerPosition& pointer, QObject* parent)
    : TileBehaviour(parent)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_pointer(pointer) {}

std::optional<CompanionBehaviour::Look> CompanionBehaviour::look(const QUuid& tile) const {
    const auto found = m_tiles.constFind(tile);
    if (found == m_tiles.constEnd()) {
        return std::nullopt;
    }
    return Look{.mood = found->mind.mood(), .gaze = found->mind.gaze()};
}

void CompanionBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, Tile> kept;
    for (const BehaviourTile& entry : tiles) {
        const WidgetInstance& instance = entry.instance;
        Tile tile = m_tiles.value(instance.id, Tile{.mind = CompanionMind(m_clock.uptime()),
                                                    .hours = {},
                                                    .middle = std::nullopt,
                                                    .inView = false,
                                                    .shownGaze = {}});
        tile.hours = CompanionMind::Hours::from(instance.settings.value_or(WidgetSettings()));
        tile.inView = entry.inView;
        tile.middle.reset();
        if (instance.posX && instance.posY) {
            const QSizeF size = instance.pixelSize();
            tile.middle =
                QPointF(*instance.posX + size.width() / 2, *instance.posY - size.height() / 2);
        }
        kept.insert(instance.id, tile);
    }
    m_tiles = kept;
    tick();
}

bool CompanionBehaviour::press(const WidgetInstance& tile, const QString&) {
    const auto found = m_tiles.find(tile.id);
    if (found == m_tiles.end()) {
        return false;
    }
    found->mind.poke(m_clock.uptime());
    tick();
    return true;
}

void CompanionBehaviour::tick() {
    const auto now = m_clock.uptime();
    const QTime local = m_clock.now().time();
    std::optional<QPointF> pointer;
    bool asked = false;
    for (auto it = m_tiles.begin(); it != m_tiles.end(); ++it) {
        Tile& tile = it.value();
        if (!tile.inView) {
            continue;
        }
        if (tile.mind.wantsPointer() && tile.middle) {
            if (!asked) {
                pointer = m_pointer.position();
                asked = true;
            }
            if (pointer) {
                // The mind thinks as the eyes draw: y down.
                const QPointF offset = *pointer - *tile.middle;
                tile.mind.seePointer(QPointF(offset.x(), -offset.y()), now);
            }
        }
        const bool moodChanged = tile.mind.update(now, local, tile.hours);
        // Eyes follow in steps a person can see, not in every jitter of the hand.
        const bool looked = QLineF(tile.shownGaze, tile.mind.gaze()).length() > 0.03;
        if (moodChanged || looked) {
            tile.shownGaze = tile.mind.gaze();
            Q_EMIT changed(it.key());
        }
    }
    reschedule();
}

void CompanionBehaviour::reschedule() {
    std::chrono::milliseconds interval{0};
    for (const Tile& tile : std::as_const(m_tiles)) {
        if (tile.inView) {
            interval = tile.mind.wantsPointer()
                           ? lookEvery
                           : std::max<std::chrono::milliseconds>(interval, restEvery);
            if (interval == lookEvery) {
                break;
            }
        }
    }
    if (interval == m_interval && (interval.count() == 0 || m_task.isActive())) {
        return;
    }
    m_interval = interval;
    m_task.cancel();
    if (interval.count() > 0) {
        m_task = m_scheduler.repeating(interval, interval / 10, this, [this] { tick(); });
    }
}

} // namespace tw
