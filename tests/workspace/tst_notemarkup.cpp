#include "TestRows.h"
#include "workspace/NoteMarkup.h"

#include <QTest>

using namespace tw;
using tw::test::row;

class TestNoteMarkup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // One line: its kind ("text", "bullet", "task", "done"), level, what shows and the bold runs
    // as "start+length" pairs.
    void line_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("bold");
        row("plain", "milk and eggs", "text", 0, "milk and eggs", "");
        row("dash item", "- milk", "bullet", 0, "milk", "");
        row("star item", "* milk", "bullet", 0, "milk", "");
        row("a dash without a blank is text", "-milk", "text", 0, "-milk", "");
        row("open task", "[ ] call Ann", "task", 0, "call Ann", "");
        row("ticked task, either case", "[X] call Ann", "done", 0, "call Ann", "");
        row("task after a dash", "- [x] call Ann", "done", 0, "call Ann", "");
        row("nested two levels", "    - deep", "bullet", 2, "deep", "");
        row("levels stop at the deepest", "                  - deeper", "bullet", 4, "deeper", "");
        row("leading blanks of text stay", "  indented", "text", 0, "  indented", "");
        row("bold run", "a **big** deal", "text", 0, "a big deal", "2+3");
        row("two runs", "**a** and **b**", "text", 0, "a and b", "0+1,6+1");
        row("an odd mark stays as typed", "**a** and **b", "text", 0, "a and **b", "0+1");
        row("empty bold shows nothing", "x****y", "text", 0, "xy", "");
        row("bold in a task", "[ ] **now**", "task", 0, "now", "0+3");
        row("empty item", "- ", "bullet", 0, "", "");
    }
    void line() {
        QFETCH(QString, line);
        QFETCH(QString, kind);
        QFETCH(int, level);
        QFETCH(QString, shown);
        QFETCH(QString, bold);
        const QList<NoteLine> lines = NoteMarkup::lines(line);
        QCOMPARE(lines.size(), 1);
        const NoteLine& parsed = lines[0];
        const QString kindName =
            parsed.kind == NoteLine::Kind::bullet ? QStringLiteral("bullet")
            : parsed.kind == NoteLine::Kind::task
                ? (parsed.done ? QStringLiteral("done") : QStringLiteral("task"))
                : QStringLiteral("text");
        QCOMPARE(kindName, kind);
        QCOMPARE(parsed.level, level);
        QCOMPARE(parsed.shown, shown);
        QStringList runs;
        for (const NoteLine::Run& run : parsed.bold) {
            runs.append(QStringLiteral("%1+%2").arg(run.start).arg(run.length));
        }
        QCOMPARE(runs.join(u','), bold);
        // Every shown character maps back to the same character of the note.
        QCOMPARE(parsed.noteOffsets.size(), parsed.shown.size() + 1);
        for (qsizetype i = 0; i < parsed.shown.size(); ++i) {
            QCOMPARE(line.at(parsed.noteOffsets[i]), parsed.shown.at(i));
        }
    }

    void linesKeepTheirOffsets() {
        const QString note = QStringLiteral("one\n- two\n\n[ ] four");
        const QList<NoteLine> lines = NoteMarkup::lines(note);
        QCOMPARE(lines.size(), 4);
        for (const NoteLine& line : lines) {
            QCOMPARE(note.mid(line.start, line.length).endsWith(line.shown), true);
        }
        QCOMPARE(lines[3].contentStart, note.indexOf(QStringLiteral("four")));
        QCOMPARE(NoteMarkup::lineAt(lines, 3), 0); // a line's end belongs to it
        QCOMPARE(NoteMarkup::lineAt(lines, 4), 1);
        QCOMPARE(NoteMarkup::lineAt(lines, 999), 3);
        QCOMPARE(NoteMarkup::lines(QString()).size(), 1);
    }

    void toggle_data() {
        QTest::addColumn<QString>("note");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("expected");
        row("ticks", "a\n[ ] b", 1, "a\n[x] b");
        row("clears an upper-case mark", "[X] b", 0, "[ ] b");
        row("after a dash", "  - [ ] b", 0, "  - [x] b");
        row("not a task", "- b", 0, "- b");
        row("no such line", "[ ] b", 5, "[ ] b");
    }
    void toggle() {
        QFETCH(QString, note);
        QFETCH(int, line);
        QFETCH(QString, expected);
        QCOMPARE(NoteMarkup::toggledTask(note, line), expected);
    }

    void continuation_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        row("text", "hello", "");
        row("item", "  * hello", "  * ");
        row("a done task continues open", "- [x] hello", "- [ ] ");
    }
    void continuation() {
        QFETCH(QString, line);
        QFETCH(QString, expected);
        QCOMPARE(NoteMarkup::continuation(line, NoteMarkup::lines(line)[0]), expected);
    }
};

QTEST_GUILESS_MAIN(TestNoteMarkup)
#include "tst_notemarkup.moc"
