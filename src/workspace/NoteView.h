// What a sticky note tile shows now: its text, and while it is being typed into, the caret.
#pragma once

#include <QString>

#include <optional>

namespace tw {

struct NoteView {
    QString text;
    // The caret's offset in the text while the tile is being typed into; none otherwise.
    std::optional<int> caret;
    // Everything is selected.
    bool all = false;
    // Why the text is not safe on disk; empty when it is.
    QString problem;

    bool operator==(const NoteView&) const = default;
};

} // namespace tw
