#include "workspace/NoteEditor.h"

#include "workspace/NoteMarkup.h"

#include <algorithm>

namespace tw {

namespace {

QString cleaned(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r') {
            out.append(u'\n');
            if (i + 1 < text.size() && text[i + 1] == u'\n') {
                ++i;
            }
        } else if (c == u'\t') {
            out.append(QStringLiteral("  "));
        } else if (c == u'\n' ||
                   (c.category() != QChar::Other_Control && c.category() != QChar::Other_Format)) {
            out.append(c);
        }
    }
    return out;
}

int lineStart(const QString& text, int caret) {
    const qsizetype at = caret > 0 ? text.lastIndexOf(u'\n', caret - 1) : -1;
    return static_cast<int>(at + 1);
}

int lineEnd(const QString& text, int caret) {
    const qsizetype at = text.indexOf(u'\n', caret);
    return static_cast<int>(at < 0 ? text.size() : at);
}

// The caret one line up or down at the same column, or at the start or end of the note.
int verticalMove(const QString& text, int caret, int direction) {
    const int start = lineStart(text, caret);
    const int column = caret - start;
    if (direction < 0) {
        if (start == 0) {
            return 0;
        }
        const int above = lineStart(text, start - 1);
        return std::min(above + column, start - 1);
    }
    const int end = lineEnd(text, caret);
    if (end >= text.size()) {
        return static_cast<int>(text.size());
    }
    const int below = end + 1;
    return std::min(below + column, lineEnd(text, below));
}

bool removeAll(NoteEdit& edit) {
    const bool had = !edit.text.isEmpty();
    edit.text.clear();
    edit.caret = 0;
    edit.all = false;
    return had;
}

// Enter: a new line, carrying on the list the caret is in; Enter on an empty item ends the list.
void newLine(NoteEdit& edit) {
    const QList<NoteLine> lines = NoteMarkup::lines(edit.text);
    const NoteLine& line = lines[NoteMarkup::lineAt(lines, edit.caret)];
    if (line.kind != NoteLine::Kind::text && line.contentStart == line.end() &&
        edit.caret == line.end()) {
        edit.text.remove(line.start, line.length);
        edit.caret = line.start;
        return;
    }
    QString added = QStringLiteral("\n");
    if (edit.caret >= line.contentStart) {
        added += NoteMarkup::continuation(edit.text, line);
    }
    NoteEditor::insert(edit, added);
}

} // namespace

bool NoteEditor::insert(NoteEdit& edit, const QString& text) {
    QString piece = cleaned(text);
    if (edit.all) {
        edit.text.clear();
        edit.caret = 0;
        edit.all = false;
    }
    const qsizetype room = longest - edit.text.size();
    if (piece.size() > room) {
        piece.truncate(std::max<qsizetype>(0, room));
        // Never leave half of a surrogate pair.
        if (!piece.isEmpty() && piece.back().isHighSurrogate()) {
            piece.chop(1);
        }
    }
    if (piece.isEmpty()) {
        return false;
    }
    edit.caret = std::clamp(edit.caret, 0, static_cast<int>(edit.text.size()));
    edit.text.insert(edit.caret, piece);
    edit.caret += static_cast<int>(piece.size());
    return true;
}

void NoteEditor::placeCaret(NoteEdit& edit, int offset) {
    edit.caret = std::clamp(offset, 0, static_cast<int>(edit.text.size()));
    if (edit.caret > 0 && edit.caret < edit.text.size() && edit.text[edit.caret].isLowSurrogate()) {
        --edit.caret;
    }
    edit.all = false;
}

NoteEditor::Result NoteEditor::key(NoteEdit& edit, int key, Qt::KeyboardModifiers modifiers,
                                   const QString& text) {
    edit.caret = std::clamp(edit.caret, 0, static_cast<int>(edit.text.size()));
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const int size = static_cast<int>(edit.text.size());
    const auto moveTo = [&edit](int offset) {
        placeCaret(edit, offset);
        return Result{Outcome::moved, {}};
    };
    // A step over a whole character, surrogate pairs included.
    const auto step = [&edit](int direction) {
        int at = edit.caret + direction;
        if (at > 0 && at < edit.text.size() && edit.text[at].isLowSurrogate()) {
            at += direction;
        }
        return std::clamp(at, 0, static_cast<int>(edit.text.size()));
    };
    if (control) {
        switch (key) {
        case Qt::Key_A:
            edit.all = true;
            return {Outcome::moved, {}};
        case Qt::Key_C:
            return {Outcome::copy, edit.text};
        case Qt::Key_X: {
            const QString copied = edit.text;
            return removeAll(edit) ? Result{Outcome::cut, copied} : Result{Outcome::moved, {}};
        }
        case Qt::Key_V:
            return {Outcome::paste, {}};
        case Qt::Key_Home:
            return moveTo(0);
        case Qt::Key_End:
            return moveTo(size);
        default:
            return {};
        }
    }
    switch (key) {
    case Qt::Key_Escape:
        edit.all = false;
        return {Outcome::finish, {}};
    case Qt::Key_Left:
        return moveTo(edit.all ? 0 : step(-1));
    case Qt::Key_Right:
        return moveTo(edit.all ? size : step(1));
    case Qt::Key_Up:
        return moveTo(verticalMove(edit.text, edit.caret, -1));
    case Qt::Key_Down:
        return moveTo(verticalMove(edit.text, edit.caret, 1));
    case Qt::Key_Home:
        return moveTo(lineStart(edit.text, edit.caret));
    case Qt::Key_End:
        return moveTo(lineEnd(edit.text, edit.caret));
    case Qt::Key_Backspace:
    case Qt::Key_Delete: {
        if (edit.all) {
            return {removeAll(edit) ? Outcome::edited : Outcome::moved, {}};
        }
        const int from = key == Qt::Key_Backspace ? step(-1) : edit.caret;
        const int to = key == Qt::Key_Backspace ? edit.caret : step(1);
        if (from == to) {
            return {Outcome::moved, {}};
        }
        edit.text.remove(from, to - from);
        edit.caret = from;
        return {Outcome::edited, {}};
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (edit.all) {
            removeAll(edit);
        }
        if (edit.text.size() >= longest) {
            return {Outcome::moved, {}};
        }
        newLine(edit);
        return {Outcome::edited, {}};
    default:
        break;
    }
    if (modifiers.testFlag(Qt::AltModifier) || modifiers.testFlag(Qt::MetaModifier)) {
        return {};
    }
    const QString typed = cleaned(text).remove(u'\n');
    if (typed.isEmpty()) {
        return {};
    }
    return {insert(edit, typed) ? Outcome::edited : Outcome::moved, {}};
}

} // namespace tw
