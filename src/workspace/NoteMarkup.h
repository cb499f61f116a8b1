// The little markup of sticky notes: "- " or "* " items, "[ ] " and "[x] " tasks (also after a
// "- "), and **bold** within a line. Everything else is plain text, shown as typed.
#pragma once

#include "workspace/NoteLine.h"

#include <QList>
#include <QString>

namespace tw::NoteMarkup {

QList<NoteLine> lines(const QString& note);

// The index of the line holding the note offset `offset` (a line's end belongs to it).
qsizetype lineAt(const QList<NoteLine>& lines, int offset);

// The note with the task on line `index` ticked or cleared; the note as it was when that line
// is no task.
QString toggledTask(const QString& note, qsizetype index);

// What a new line after `line` starts with to continue its list: the same blanks and marker, a
// task cleared; empty for plain text.
QString continuation(const QString& note, const NoteLine& line);

} // namespace tw::NoteMarkup
