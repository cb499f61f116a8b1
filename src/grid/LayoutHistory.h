// Undo and redo of the arrangement by difference: each save is compared with the last layout
// recorded, and changes that follow each other within a second merge into one step.
#pragma once

#include "model/GridLayout.h"

#include <QList>

#include <chrono>
#include <optional>

namespace tw {

class LayoutHistory {
public:
    static constexpr int limit = 40;
    static constexpr std::chrono::milliseconds burstWindow{1000};

    // Whether record() found a change and so moved the history on.
    enum class Recorded { nothing, change };

    // Forgets both stacks; `current` is the new baseline and the next change starts a step.
    void reset(const GridLayout& current);

    // Compares `current` with the baseline by instances only (page count and save stamp aside).
    // A change pushes the baseline as an undo step unless the last change came less than the
    // burst window before `now`, empties the redo stack and becomes the baseline.
    Recorded record(const GridLayout& current, std::chrono::nanoseconds now);
    // Makes `current` the baseline and leaves the stacks alone: the layout undo or redo put in.
    void adopt(const GridLayout& current);

    // The layout to go back (or forward) to; `current` goes on the other stack. Nothing when
    // there is nothing to undo (redo).
    std::optional<GridLayout> takeUndo(const GridLayout& current);
    std::optional<GridLayout> takeRedo(const GridLayout& current);

    bool canUndo() const { return !m_undo.isEmpty(); }
    bool canRedo() const { return !m_redo.isEmpty(); }
    int undoCount() const { return static_cast<int>(m_undo.size()); }
    int redoCount() const { return static_cast<int>(m_redo.size()); }

private:
    std::optional<GridLayout> m_committed;
    QList<GridLayout> m_undo; // oldest first
    QList<GridLayout> m_redo; // newest last
    // Monotonic time of the last recorded change; none is the distant past.
    std::optional<std::chrono::nanoseconds> m_lastChangeAt;
};

} // namespace tw
