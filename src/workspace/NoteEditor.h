// Typing into a sticky note without a selection: a caret moved by the arrows, Home and End;
// Backspace and Delete; Enter continuing a list; select-all as the one selection, which the next
// key replaces, copies or cuts.
#pragma once

#include <QString>
#include <Qt>

namespace tw {

struct NoteEdit {
    QString text;
    int caret = 0;
    // Everything is selected (Ctrl+A): the next text replaces it, Backspace clears it.
    bool all = false;

    bool operator==(const NoteEdit&) const = default;
};

class NoteEditor {
public:
    // What the key asks of whoever holds the note.
    enum class Outcome {
        ignored, // not a key of the note's
        edited,  // the text changed
        moved,   // only the caret or the selection changed
        copy,    // put `copied` on the clipboard
        cut,     // put `copied` on the clipboard; the text changed
        paste,   // insert the clipboard's text with `insert`
        finish,  // editing ends (Escape)
    };

    struct Result {
        Outcome outcome = Outcome::ignored;
        QString copied;
    };

    // A note holds at most this many characters; typing past it does nothing.
    static constexpr int longest = 20000;

    static Result key(NoteEdit& edit, int key, Qt::KeyboardModifiers modifiers,
                      const QString& text);
    // Inserts typed or pasted text at the caret (over everything when all is selected): line
    // breaks made plain, tabs as two blanks, other control characters dropped, cut to fit.
    // False when nothing could go in.
    static bool insert(NoteEdit& edit, const QString& text);
    // Puts the caret at `offset`, held inside the text, and drops the selection.
    static void placeCaret(NoteEdit& edit, int offset);
};

} // namespace tw
