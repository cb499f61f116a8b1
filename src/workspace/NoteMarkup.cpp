#include "workspace/NoteMarkup.h"

#include <QStringView>

#include <algorithm>

namespace tw {

int NoteLine::shownIndex(int noteOffset) const {
    for (qsizetype i = 0; i < noteOffsets.size(); ++i) {
        if (noteOffsets[i] >= noteOffset) {
            return static_cast<int>(i);
        }
    }
    return static_cast<int>(shown.size());
}

namespace NoteMarkup {

namespace {

struct Marker {
    NoteLine::Kind kind = NoteLine::Kind::text;
    bool done = false;
    int length = 0;
};

Marker taskMarker(QStringView rest) {
    if (rest.size() >= 4 && rest[0] == u'[' && rest[2] == u']' && rest[3] == u' ') {
        const QChar mark = rest[1];
        if (mark == u' ') {
            return {NoteLine::Kind::task, false, 4};
        }
        if (mark == u'x' || mark == u'X') {
            return {NoteLine::Kind::task, true, 4};
        }
    }
    return {};
}

Marker markerOf(QStringView rest) {
    if (const Marker task = taskMarker(rest); task.kind == NoteLine::Kind::task) {
        return task;
    }
    if (rest.size() >= 2 && (rest[0] == u'-' || rest[0] == u'*' || rest[0] == u'\u2022') &&
        rest[1] == u' ') {
        const Marker task = taskMarker(rest.mid(2));
        if (task.kind == NoteLine::Kind::task) {
            return {task.kind, task.done, task.length + 2};
        }
        return {NoteLine::Kind::bullet, false, 2};
    }
    return {};
}

// Takes the "**" pairs out of the content, remembering where each shown character came from.
void fillShown(NoteLine& line, QStringView content, int offset) {
    QList<int> marks;
    for (qsizetype i = 0; i + 1 < content.size(); ++i) {
        if (content[i] == u'*' && content[i + 1] == u'*') {
            marks.append(static_cast<int>(i));
            ++i;
        }
    }
    if (marks.size() % 2 == 1) {
        marks.removeLast();
    }
    qsizetype next = 0;
    int runStart = -1;
    for (qsizetype i = 0; i < content.size(); ++i) {
        if (next < marks.size() && marks[next] == i) {
            if (runStart < 0) {
                runStart = static_cast<int>(line.shown.size());
            } else {
                const int length = static_cast<int>(line.shown.size()) - runStart;
                if (length > 0) {
                    line.bold.append({runStart, length});
                }
                runStart = -1;
            }
            ++next;
            ++i;
            continue;
        }
        line.shown.append(content[i]);
        line.noteOffsets.append(offset + static_cast<int>(i));
    }
    line.noteOffsets.append(offset + static_cast<int>(content.size()));
}

NoteLine parseLine(QStringView text, int start) {
    NoteLine line;
    line.start = start;
    line.length = static_cast<int>(text.size());
    int blanks = 0;
    int columns = 0;
    while (blanks < text.size() && (text[blanks] == u' ' || text[blanks] == u'\t')) {
        columns += text[blanks] == u'\t' ? 2 : 1;
        ++blanks;
    }
    const Marker marker = markerOf(text.mid(blanks));
    line.kind = marker.kind;
    line.done = marker.done;
    int contentFrom = 0;
    if (marker.kind != NoteLine::Kind::text) {
        line.level = std::min(columns / 2, NoteLine::deepest);
        contentFrom = blanks + marker.length;
    }
    line.contentStart = start + contentFrom;
    fillShown(line, text.mid(contentFrom), line.contentStart);
    return line;
}

} // namespace

QList<NoteLine> lines(const QString& note) {
    QList<NoteLine> result;
    int start = 0;
    while (true) {
        const qsizetype end = note.indexOf(u'\n', start);
        const qsizetype stop = end < 0 ? note.size() : end;
        result.append(parseLine(QStringView(note).mid(start, stop - start), start));
        if (end < 0) {
            break;
        }
        start = static_cast<int>(end) + 1;
    }
    return result;
}

qsizetype lineAt(const QList<NoteLine>& lines, int offset) {
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (offset <= lines[i].end()) {
            return i;
        }
    }
    return lines.size() - 1;
}

QString toggledTask(const QString& note, qsizetype index) {
    const QList<NoteLine> all = lines(note);
    if (index < 0 || index >= all.size() || all[index].kind != NoteLine::Kind::task) {
        return note;
    }
    // The mark sits three characters before the content: "[x] ".
    QString toggled = note;
    toggled[all[index].contentStart - 3] = all[index].done ? u' ' : u'x';
    return toggled;
}

QString continuation(const QString& note, const NoteLine& line) {
    if (line.kind == NoteLine::Kind::text) {
        return {};
    }
    QString prefix = note.mid(line.start, line.contentStart - line.start);
    if (line.kind == NoteLine::Kind::task) {
        prefix[prefix.size() - 3] = u' ';
    }
    return prefix;
}

} // namespace NoteMarkup

} // namespace tw
