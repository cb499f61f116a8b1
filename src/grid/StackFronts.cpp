#include "grid/StackFronts.h"

#include "grid/GridStore.h"
#include "platform/Clock.h"

#include <algorithm>

namespace tw {

StackFronts::StackFronts(const GridStore& grid, const Clock& clock)
    : m_grid(grid)
    , m_clock(clock) {}

QHash<QUuid, QList<QUuid>> StackFronts::stacks() const {
    QHash<QUuid, QList<QUuid>> members;
    for (const WidgetInstance& instance : m_grid.layout().instances) {
        if (instance.stackID && !members.contains(*instance.stackID)) {
            QList<QUuid>& ids = members[*instance.stackID];
            for (const WidgetInstance& member : m_grid.stackMembers(*instance.stackID)) {
                ids.append(member.id);
            }
        }
    }
    return members;
}

QSet<QUuid> StackFronts::hidden() const {
    QSet<QUuid> hidden;
    const auto all = stacks();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QList<QUuid>& members = it.value();
        if (members.size() < 2) {
            continue;
        }
        const int active = m_rotation.active(it.key(), static_cast<int>(members.size()));
        for (int i = 0; i < members.size(); ++i) {
            if (i != active) {
                hidden.insert(members.at(i));
            }
        }
    }
    return hidden;
}

int StackFronts::active(const QUuid& stackID) const {
    return m_rotation.active(stackID, static_cast<int>(m_grid.stackMembers(stackID).size()));
}

std::optional<QUuid> StackFronts::front(const QUuid& stackID) const {
    const QList<WidgetInstance> members = m_grid.stackMembers(stackID);
    const int index = m_rotation.active(stackID, static_cast<int>(members.size()));
    if (index < 0 || index >= members.size()) {
        return std::nullopt;
    }
    return members.at(index).id;
}

bool StackFronts::advance(const QDateTime& now, const std::function<bool(const QUuid&)>& held) {
    QList<StackRotation::Stack> beat;
    const auto all = stacks();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QList<QUuid>& members = it.value();
        beat.append({
            .id = it.key(),
            .count = static_cast<int>(members.size()),
            .seconds = m_grid.stackSeconds(it.key()),
            .held = std::any_of(members.cbegin(), members.cend(), held),
        });
    }
    return m_rotation.advance(beat, now);
}

bool StackFronts::step(const QUuid& stackID, int by) {
    const auto count = static_cast<int>(m_grid.stackMembers(stackID).size());
    if (count < 1) {
        return false;
    }
    m_rotation.step(stackID, by, count, m_clock.now());
    return true;
}

std::optional<int> StackFronts::stepForClick(QPointF pointInTile, double tileWidth) {
    switch (StackRotation::zoneAt(pointInTile, tileWidth)) {
    case StackRotation::Zone::previous:
        return -1;
    case StackRotation::Zone::next:
        return 1;
    case StackRotation::Zone::dots:
        return 0;
    case StackRotation::Zone::tile:
        break;
    }
    return std::nullopt;
}

int StackFronts::indexOf(const QUuid& stackID, const QUuid& member) const {
    const QList<WidgetInstance> members = m_grid.stackMembers(stackID);
    const auto it = std::find_if(members.cbegin(), members.cend(),
                                 [&](const WidgetInstance& i) { return i.id == member; });
    return it == members.cend() ? -1 : static_cast<int>(it - members.cbegin());
}

void StackFronts::bringToFront(const QUuid& stackID, const QUuid& member) {
    if (const int index = indexOf(stackID, member); index >= 0) {
        m_rotation.show(stackID, index, m_clock.now());
    }
}

void StackFronts::keepInFront(const QUuid& stackID, const QUuid& member) {
    if (const int index = indexOf(stackID, member); index >= 0) {
        m_rotation.setActive(stackID, index);
    }
}

void StackFronts::restart(const QUuid& stackID) {
    m_rotation.restart(stackID, m_clock.now());
}

} // namespace tw
