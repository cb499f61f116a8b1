// GridStore: stacks (several widgets of one size in one spot) and moving tiles on the desktop.
#include "grid/GridStore.h"
#include "model/Metrics.h"

#include <QHash>
#include <QLocale>

#include <algorithm>
#include <limits>

namespace tw {

namespace {
const QString kStackSeconds = QStringLiteral("stackSeconds");

int stackOrder(const WidgetInstance& instance) {
    return instance.stackIndex.value_or(std::numeric_limits<int>::max());
}
} // namespace

void GridStore::detach(GridLayout& layout, int index) {
    if (index < 0 || index >= layout.instances.size()) {
        return;
    }
    WidgetInstance& instance = layout.instances[index];
    instance.stackID.reset();
    instance.stackIndex.reset();
}

void GridStore::normalizeStack(GridLayout& layout, const QUuid& stackID) {
    QList<qsizetype> members;
    for (qsizetype i = 0; i < layout.instances.size(); ++i) {
        if (layout.instances.at(i).stackID == stackID) {
            members.append(i);
        }
    }
    std::stable_sort(members.begin(), members.end(), [&](qsizetype a, qsizetype b) {
        return stackOrder(layout.instances.at(a)) < stackOrder(layout.instances.at(b));
    });
    for (qsizetype n = 0; n < members.size(); ++n) {
        layout.instances[members.at(n)].stackIndex = static_cast<int>(n);
    }
}

void GridStore::repairStack(GridLayout& layout, const QUuid& stackID) {
    QList<int> members;
    for (qsizetype i = 0; i < layout.instances.size(); ++i) {
        if (layout.instances.at(i).stackID == stackID) {
            members.append(static_cast<int>(i));
        }
    }
    if (members.size() == 1) {
        detach(layout, members.first());
    } else if (members.size() > 1) {
        normalizeStack(layout, stackID);
    }
}

QList<WidgetInstance> GridStore::stackMembers(const QUuid& stackID) const {
    QList<WidgetInstance> members;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (instance.stackID == stackID) {
            members.append(instance);
        }
    }
    std::stable_sort(members.begin(), members.end(),
                     [](const WidgetInstance& a, const WidgetInstance& b) {
                         return stackOrder(a) < stackOrder(b);
                     });
    return members;
}

int GridStore::stackSeconds(const QUuid& stackID) const {
    for (const WidgetInstance& member : stackMembers(stackID)) {
        if (const std::optional<QString> text = member.setting(kStackSeconds)) {
            bool ok = false;
            const int seconds = text->trimmed().toInt(&ok);
            if (ok) {
                return seconds;
            }
        }
    }
    return 0;
}

void GridStore::setStackSeconds(const QUuid& stackID, int seconds) {
    GridLayout next = m_layout;
    bool any = false;
    for (WidgetInstance& instance : next.instances) {
        if (instance.stackID == stackID) {
            if (!instance.settings) {
                instance.settings.emplace();
            }
            instance.settings->insert(kStackSeconds, QString::number(seconds));
            any = true;
        }
    }
    if (!any) {
        return;
    }
    setLayout(std::move(next));
    save();
}

void GridStore::groupIntoStack(const QUuid& dragged, const QUuid& onto) {
    const int draggedIndex = indexOf(dragged);
    const int targetIndex = indexOf(onto);
    if (dragged == onto || draggedIndex < 0 || targetIndex < 0) {
        return;
    }
    GridLayout next = m_layout;
    WidgetInstance& target = next.instances[targetIndex];
    const WidgetInstance& moving = next.instances.at(draggedIndex);
    if (moving.stackID && moving.stackID == target.stackID) {
        return;
    }
    if (!target.stackID) {
        target.stackID = QUuid::createUuid();
        target.stackIndex = 0;
    }
    const QUuid stackID = *target.stackID;
    const std::optional<double> posX = target.posX;
    const std::optional<double> posY = target.posY;
    const WidgetSize size = target.size;

    QList<QUuid> movers;
    if (moving.stackID) {
        for (const WidgetInstance& member : stackMembers(*moving.stackID)) {
            movers.append(member.id);
        }
    } else {
        movers.append(dragged);
    }
    // Numbered 0 ... n − 1 first, so the newcomers count on from n whatever a file held.
    normalizeStack(next, stackID);
    int nextIndex = -1;
    for (const WidgetInstance& instance : std::as_const(next.instances)) {
        if (instance.stackID == stackID) {
            nextIndex = std::max(nextIndex, instance.stackIndex.value_or(0));
        }
    }
    for (const QUuid& id : std::as_const(movers)) {
        const auto it = std::find_if(next.instances.begin(), next.instances.end(),
                                     [&](const WidgetInstance& i) { return i.id == id; });
        it->stackID = stackID;
        it->stackIndex = ++nextIndex;
        it->posX = posX;
        it->posY = posY;
        // A stack holds one size: the newcomers take the target's, as a resize of one would.
        it->size = size;
    }
    normalizeStack(next, stackID);
    setLayout(std::move(next));
    save();
}

void GridStore::removeFromStack(const QUuid& id) {
    const int index = indexOf(id);
    if (index < 0) {
        return;
    }
    GridLayout next = m_layout;
    const std::optional<QUuid> stackID = next.instances.at(index).stackID;
    detach(next, index);
    if (stackID) {
        repairStack(next, *stackID);
    }
    WidgetInstance& taken = next.instances[index];
    if (taken.posX && taken.posY) {
        // Beside the stack on its row, the spacing apart; the desktop pushes it on from there
        // when that place is taken or off the screen.
        taken.posX = *taken.posX + taken.pixelSize().width() + Metrics::cellSpacing;
    }
    setLayout(std::move(next));
    save();
}

void GridStore::updatePosition(const QUuid& id, double x, double y) {
    updatePositions({{id, QPointF(x, y)}});
}

void GridStore::updatePositions(const QList<std::pair<QUuid, QPointF>>& moves) {
    QHash<QUuid, QPointF> byID;
    QHash<QUuid, QPointF> byStack;
    for (const auto& [id, place] : moves) {
        const int index = indexOf(id);
        if (index < 0) {
            continue;
        }
        byID.insert(id, place);
        // A stack moves as one.
        if (const std::optional<QUuid> stackID = m_layout.instances.at(index).stackID) {
            byStack.insert(*stackID, place);
        }
    }
    if (byID.isEmpty()) {
        return;
    }
    GridLayout next = m_layout;
    for (WidgetInstance& instance : next.instances) {
        std::optional<QPointF> place;
        if (const auto own = byID.constFind(instance.id); own != byID.cend()) {
            place = *own;
        } else if (instance.stackID) {
            if (const auto stack = byStack.constFind(*instance.stackID); stack != byStack.cend()) {
                place = *stack;
            }
        }
        if (place) {
            instance.posX = place->x();
            instance.posY = place->y();
        }
    }
    setLayout(std::move(next));
    save();
}

void GridStore::setSize(const QList<QUuid>& ids, WidgetSize size) {
    QSet<QUuid> stacks;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (instance.stackID && ids.contains(instance.id)) {
            stacks.insert(*instance.stackID);
        }
    }
    GridLayout next = m_layout;
    bool changed = false;
    for (WidgetInstance& instance : next.instances) {
        const bool chosen =
            ids.contains(instance.id) || (instance.stackID && stacks.contains(*instance.stackID));
        if (chosen && instance.size != size) {
            instance.size = size;
            changed = true;
        }
    }
    if (!changed) {
        return;
    }
    // A larger tile may now cover cells of the settings grid that others hold.
    normalizePlacements(next);
    setLayout(std::move(next));
    save();
}

} // namespace tw
