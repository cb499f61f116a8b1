// A sticky note's journal as a killed process may leave it, whatever it holds: the newest whole
// record comes out no longer than a note file may be, and the note it gives reads as lines that
// cover it and whose shown characters come from it.
#include "Require.h"
#include "workspace/NoteEditor.h"
#include "workspace/NoteMarkup.h"
#include "workspace/NoteStore.h"

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<QString> text = NoteStore::lastRecord(input);
    const QString note = text ? *text : QString::fromUtf8(input);
    require(!text || text->size() <= NoteStore::largestFile, "a record over the cap");
    // Lone surrogates (escaped in the JSON) have no UTF-8 of their own to travel in.
    if (text && QString::fromUtf8(text->toUtf8()) == *text) {
        require(NoteStore::lastRecord(NoteStore::record(*text)) == text,
                "a record that does not read back");
    }
    const QList<NoteLine> lines = NoteMarkup::lines(note);
    int covered = 0;
    for (const NoteLine& line : lines) {
        require(line.start == covered, "lines with a gap between them");
        require(line.noteOffsets.size() == line.shown.size() + 1, "offsets out of step");
        for (qsizetype i = 0; i < line.shown.size(); ++i) {
            require(note.at(line.noteOffsets[i]) == line.shown.at(i),
                    "a shown character not typed");
        }
        covered = line.end() + 1;
    }
    require(covered == note.size() + 1, "lines that do not cover the note");
    for (qsizetype i = 0; i < lines.size(); ++i) {
        require(NoteMarkup::toggledTask(note, i).size() == note.size(), "a toggle that resizes");
    }
    // Typing the note in never grows past the cap nor loses the caret.
    NoteEdit edit;
    NoteEditor::insert(edit, note);
    require(edit.text.size() <= NoteEditor::longest, "a note over the cap");
    require(edit.caret >= 0 && edit.caret <= edit.text.size(), "a caret outside the note");
    return 0;
}
