// One line of a sticky note as it reads: plain text, a list item or a task, with its bold runs.
#pragma once

#include <QList>
#include <QString>

namespace tw {

struct NoteLine {
    enum class Kind { text, bullet, task };

    struct Run {
        int start = 0;
        int length = 0;

        bool operator==(const Run&) const = default;
    };

    Kind kind = Kind::text;
    // A task that is ticked.
    bool done = false;
    // Leading blanks, as list levels (two blanks or a tab a level), at most `deepest`.
    int level = 0;
    // Where the line begins in the note and how long it is, its line break left out.
    int start = 0;
    int length = 0;
    // Where the text after the list or task marker begins in the note.
    int contentStart = 0;
    // The text after the marker with the bold marks taken out.
    QString shown;
    // For each character of `shown`, and one past its end, the offset in the note it came from.
    QList<int> noteOffsets;
    // Runs of `shown` in bold.
    QList<Run> bold;

    static constexpr int deepest = 4;

    bool operator==(const NoteLine&) const = default;

    int end() const { return start + length; }
    // The character of `shown` a note offset inside this line falls on (the marker counts as the
    // content's start).
    int shownIndex(int noteOffset) const;
};

} // namespace tw
