#include "TestRows.h"
#include "workspace/NoteEditor.h"

#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

// "ab|c": the text with the caret where the bar is.
NoteEdit editOf(const QString& marked) {
    NoteEdit edit;
    edit.caret = static_cast<int>(marked.indexOf(u'|'));
    edit.text = QString(marked).remove(edit.caret, 1);
    return edit;
}

QString marked(const NoteEdit& edit) {
    return QString(edit.text).insert(edit.caret, u'|');
}

struct Step {
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    QString text;
};

// Steps apart by blanks: "<Left>", "^A" (with Control), "_" a typed blank, else typed text.
QList<Step> stepsOf(const QString& script) {
    static const QHash<QString, int> keys{
        {QStringLiteral("<Left>"), Qt::Key_Left},      {QStringLiteral("<Right>"), Qt::Key_Right},
        {QStringLiteral("<Up>"), Qt::Key_Up},          {QStringLiteral("<Down>"), Qt::Key_Down},
        {QStringLiteral("<Home>"), Qt::Key_Home},      {QStringLiteral("<End>"), Qt::Key_End},
        {QStringLiteral("<Back>"), Qt::Key_Backspace}, {QStringLiteral("<Del>"), Qt::Key_Delete},
        {QStringLiteral("<Enter>"), Qt::Key_Return},   {QStringLiteral("<Esc>"), Qt::Key_Escape}};
    QList<Step> steps;
    for (const QString& word : script.split(u' ', Qt::SkipEmptyParts)) {
        if (keys.contains(word)) {
            steps.append({keys[word], Qt::NoModifier, {}});
        } else if (word.size() == 2 && word[0] == u'^') {
            steps.append({Qt::Key_A + (word[1].unicode() - u'A'), Qt::ControlModifier, {}});
        } else {
            const QString text = word == QLatin1String("_") ? QStringLiteral(" ") : word;
            steps.append({0, Qt::NoModifier, text});
        }
    }
    return steps;
}

} // namespace

class TestNoteEditor : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void keys_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("after");
        row("typing", "|", "Hi _ there", "Hi there|");
        row("backspace and delete", "ab|cd", "<Back> <Del>", "a|d");
        row("backspace at the start does nothing", "|ab", "<Back>", "|ab");
        row("a surrogate pair is one character", "a\U0001F600|", "<Back>", "a|");
        row("left over a pair", "a\U0001F600|", "<Left> x", "ax|\U0001F600");
        row("home and end of the line", "one\ntw|o\n3", "<Home> x <End> y", "one\nxtwoy|\n3");
        row("up keeps the column", "abcd\nxy|z", "<Up>", "ab|cd\nxyz");
        row("up from a short line to a long one", "a\nxyz|", "<Up>", "a|\nxyz");
        row("up on the first line goes to the start", "ab|c", "<Up>", "|abc");
        row("down on the last line goes to the end", "a|bc", "<Down>", "abc|");
        row("enter continues a list", "- milk|", "<Enter> eggs", "- milk\n- eggs|");
        row("enter continues a task open", "[x] done|", "<Enter>", "[x] done\n[ ] |");
        row("enter on an empty item ends the list", "- a\n- |", "<Enter>", "- a\n|");
        row("enter before the marker is a plain break", "|- a", "<Enter>", "\n|- a");
        row("ctrl+a then typing replaces all", "abc|", "^A z", "z|");
        row("ctrl+a then backspace clears", "ab|c", "^A <Back>", "|");
        row("ctrl+a then right goes to the end", "|abc", "^A <Right> !", "abc!|");
        row("ctrl+x cuts everything", "ab|c", "^X", "|");
        row("control characters are not typed", "|", "\x07", "|");
        row("escape changes nothing", "a|b", "<Esc>", "a|b");
    }
    void keys() {
        QFETCH(QString, before);
        QFETCH(QString, script);
        QFETCH(QString, after);
        NoteEdit edit = editOf(before);
        for (const Step& step : stepsOf(script)) {
            NoteEditor::key(edit, step.key, step.modifiers, step.text);
        }
        QCOMPARE(marked(edit), after);
    }

    void outcomes_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("copied");
        row("typing edits", "|", "a", int(NoteEditor::Outcome::edited), "");
        row("arrows move", "a|", "<Left>", int(NoteEditor::Outcome::moved), "");
        row("copy gives the whole note", "a|b", "^C", int(NoteEditor::Outcome::copy), "ab");
        row("cut gives it too", "a|b", "^X", int(NoteEditor::Outcome::cut), "ab");
        row("paste asks for the clipboard", "|", "^V", int(NoteEditor::Outcome::paste), "");
        row("escape finishes", "|", "<Esc>", int(NoteEditor::Outcome::finish), "");
        row("other shortcuts are not the note's", "|", "^Q", int(NoteEditor::Outcome::ignored), "");
    }
    void outcomes() {
        QFETCH(QString, before);
        QFETCH(QString, script);
        QFETCH(int, outcome);
        QFETCH(QString, copied);
        NoteEdit edit = editOf(before);
        const Step step = stepsOf(script).constFirst();
        const NoteEditor::Result result =
            NoteEditor::key(edit, step.key, step.modifiers, step.text);
        QCOMPARE(int(result.outcome), outcome);
        QCOMPARE(result.copied, copied);
    }

    void insertCleansAndCaps() {
        NoteEdit edit;
        QVERIFY(NoteEditor::insert(edit, QStringLiteral("a\r\nb\rc\td\x01")));
        QCOMPARE(edit.text, QStringLiteral("a\nb\nc  d"));
        edit.text = QString(NoteEditor::longest - 1, u'x');
        edit.caret = 0;
        // Only one character fits, and half a surrogate pair never goes in.
        QVERIFY(!NoteEditor::insert(edit, QStringLiteral("\U0001F600")));
        QVERIFY(NoteEditor::insert(edit, QStringLiteral("yz")));
        QCOMPARE(edit.text.size(), NoteEditor::longest);
        QCOMPARE(edit.caret, 1);
        QVERIFY(!NoteEditor::insert(edit, QStringLiteral("more")));
    }
};

QTEST_GUILESS_MAIN(TestNoteEditor)
#include "tst_noteeditor.moc"
