#include "grid/LayoutHistory.h"

namespace tw {

void LayoutHistory::reset(const GridLayout& current) {
    m_undo.clear();
    m_redo.clear();
    m_committed = current;
    m_lastChangeAt.reset();
}

LayoutHistory::Recorded LayoutHistory::record(const GridLayout& current,
                                              std::chrono::nanoseconds now) {
    if (!m_committed) {
        m_committed = current;
        return Recorded::nothing;
    }
    if (m_committed->instances == current.instances) {
        return Recorded::nothing;
    }
    if (!m_lastChangeAt || now - *m_lastChangeAt >= burstWindow) {
        if (m_undo.size() >= limit) {
            m_undo.remove(0, m_undo.size() - limit + 1);
        }
        m_undo.append(*m_committed);
    }
    // Also inside a burst: whatever could be redone no longer fits the layout that follows.
    m_redo.clear();
    // The window slides: a burst lasts as long as its changes come close together.
    m_lastChangeAt = now;
    m_committed = current;
    return Recorded::change;
}

void LayoutHistory::adopt(const GridLayout& current) {
    m_committed = current;
}

std::optional<GridLayout> LayoutHistory::takeUndo(const GridLayout& current) {
    if (m_undo.isEmpty()) {
        return std::nullopt;
    }
    m_redo.append(current);
    return m_undo.takeLast();
}

std::optional<GridLayout> LayoutHistory::takeRedo(const GridLayout& current) {
    if (m_redo.isEmpty()) {
        return std::nullopt;
    }
    m_undo.append(current);
    return m_redo.takeLast();
}

} // namespace tw
