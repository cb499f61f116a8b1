// Typing into a note tile as the desktop hands it clicks and keys: the caret where the face says,
// keys edit the stored text, the clipboard takes and gives the text, and the end of typing
// writes the file.
#include "ManualScheduler.h"
#include "platform/null/MemoryClipboard.h"
#include "workspace/NoteStore.h"
#include "workspace/StickyNoteBehaviour.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

struct Fixture {
    QTemporaryDir dir;
    test::ManualScheduler scheduler;
    NoteStore store{dir.path(), scheduler};
    MemoryClipboard clipboard;
    StickyNoteBehaviour notes{store, clipboard};
    WidgetInstance tile = [] {
        WidgetInstance instance;
        instance.kind = QStringLiteral("stickynote");
        return instance;
    }();

    bool type(const QString& text) {
        return notes.key(tile, {.key = 0, .modifiers = Qt::NoModifier, .text = text});
    }
    bool press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return notes.key(tile, {.key = key, .modifiers = modifiers, .text = QString()});
    }
};

} // namespace

class TestStickyNoteBehaviour : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void typingAfterAClick() {
        Fixture f;
        // Keys before a click are not the note's.
        QVERIFY(!f.type(QStringLiteral("x")));
        QVERIFY(f.notes.press(f.tile, QStringLiteral("caret:0")));
        QVERIFY(f.notes.view(f.tile.id).caret.has_value());
        QVERIFY(f.type(QStringLiteral("- milk")));
        QVERIFY(f.press(Qt::Key_Return));
        QVERIFY(f.type(QStringLiteral("eggs")));
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("- milk\n- eggs"));
        QVERIFY(f.notes.press(f.tile, QStringLiteral("caret:3")));
        QVERIFY(f.press(Qt::Key_Delete));
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("- mlk\n- eggs"));
        // Escape ends typing and writes the file; further keys go elsewhere.
        QVERIFY(f.press(Qt::Key_Escape));
        QVERIFY(!f.notes.view(f.tile.id).caret);
        QVERIFY(QFile::exists(f.store.filePath(f.tile.id)));
        QVERIFY(!QFile::exists(f.store.journalPath(f.tile.id)));
        QVERIFY(!f.type(QStringLiteral("y")));
    }

    void clipboardAndTasks() {
        Fixture f;
        f.store.setText(f.tile.id, QStringLiteral("[ ] one\n[ ] two"));
        QVERIFY(f.notes.press(f.tile, QStringLiteral("task:1")));
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("[ ] one\n[x] two"));
        QVERIFY(!f.notes.press(f.tile, QStringLiteral("task:x")));
        QVERIFY(f.notes.press(f.tile, QStringLiteral("caret:999")));
        QCOMPARE(*f.notes.view(f.tile.id).caret, 15);
        QVERIFY(f.press(Qt::Key_C, Qt::ControlModifier));
        QCOMPARE(f.clipboard.contents()->text(), QStringLiteral("[ ] one\n[x] two"));
        QVERIFY(f.press(Qt::Key_A, Qt::ControlModifier));
        QVERIFY(f.notes.view(f.tile.id).all);
        auto* pasted = new QMimeData();
        pasted->setText(QStringLiteral("new\r\ntext"));
        f.clipboard.setContents(pasted);
        QVERIFY(f.press(Qt::Key_V, Qt::ControlModifier));
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("new\ntext"));
        // Losing the keyboard ends typing too.
        f.notes.focusChanged(f.tile, false);
        QVERIFY(!f.notes.view(f.tile.id).caret);
        QCOMPARE(f.notes.menuItems(f.tile).size(), 1);
    }

    void textFromTheSettingsSeedsANewNote() {
        Fixture f;
        f.tile.settings = WidgetSettings{{QStringLiteral("text"), QStringLiteral("from a board")}};
        f.notes.setTiles({{.instance = f.tile, .inView = true}});
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("from a board"));
        // A note with a file of its own keeps it.
        f.store.setText(f.tile.id, QStringLiteral("mine"));
        f.store.flush();
        f.notes.setTiles({{.instance = f.tile, .inView = true}});
        QCOMPARE(f.store.text(f.tile.id), QStringLiteral("mine"));
    }
};

QTEST_GUILESS_MAIN(TestStickyNoteBehaviour)
#include "tst_stickynotebehaviour.moc"
