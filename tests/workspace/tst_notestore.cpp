#include "Files.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "workspace/NoteStore.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

namespace {

const QUuid kNote = QUuid::fromString(QStringLiteral("{6f1c1f7e-0000-4000-8000-000000000001}"));

QStringList corrupt(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral("*.corrupt")}, QDir::Files);
}

// Copies the notes folder as a process killed now would leave it.
void copyFolder(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QString& name : QDir(from).entryList(QDir::Files)) {
        QFile::copy(QDir(from).filePath(name), QDir(to).filePath(name));
    }
}

} // namespace

class TestNoteStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // What a killed process leaves: every change before the kill comes back.
    void killedWhileTyping() {
        QTemporaryDir dir;
        test::ManualScheduler scheduler;
        NoteStore store(dir.path(), scheduler);
        store.setText(kNote, QStringLiteral("first"));
        scheduler.advance(NoteStore::pause);
        QVERIFY(!QFile::exists(store.journalPath(kNote)));
        QString typed = QStringLiteral("first");
        for (const char* piece : {" line", "\nsecond \"quoted\"", " ✓"}) {
            typed += QString::fromUtf8(piece);
            store.setText(kNote, typed);
        }
        QTemporaryDir after;
        const QString notes = QDir(after.path()).filePath(QStringLiteral("notes"));
        copyFolder(QDir(dir.path()).filePath(QStringLiteral("notes")), notes);
        test::ManualScheduler later;
        NoteStore restarted(after.path(), later);
        QCOMPARE(restarted.text(kNote), typed);
        // The recovered text is written in the note's file and the journal is gone.
        QCOMPARE(QString::fromUtf8(readFile(restarted.filePath(kNote))), typed);
        QVERIFY(!QFile::exists(restarted.journalPath(kNote)));
    }

    void writesWhenTypingPausesOrGoesOnTooLong() {
        QTemporaryDir dir;
        test::ManualScheduler scheduler;
        NoteStore store(dir.path(), scheduler);
        QSignalSpy changed(&store, &NoteStore::changed);
        for (int i = 0; i < 30; ++i) {
            store.setText(kNote, QString(i + 1, u'a'));
            scheduler.advance(std::chrono::milliseconds(400));
        }
        // Never a pause of 1.5 s, yet the file was written within 10 s.
        QVERIFY(QFile::exists(store.filePath(kNote)));
        QCOMPARE(changed.size(), 30);
        scheduler.advance(NoteStore::pause);
        QCOMPARE(readFile(store.filePath(kNote)), QByteArray(30, 'a'));
        QVERIFY(!QFile::exists(store.journalPath(kNote)));
    }

    // The note's file and journal as found at a start: what the note reads and what is set aside.
    void load_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("journal");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("setAside");
        row("nothing yet", QByteArray(), QByteArray(), "", 0);
        row("the file", QByteArray("- milk\n"), QByteArray(), "- milk\n", 0);
        row("the journal's last line wins", QByteArray("old"),
            QByteArray("{\"text\":\"a\"}\n{\"text\":\"ab\"}\n"), "ab", 0);
        row("a line cut by a kill is skipped", QByteArray("old"),
            QByteArray("{\"text\":\"ab\"}\n{\"text\":\"ab"), "ab", 0);
        row("a journal of nothing readable is set aside", QByteArray("old"),
            QByteArray("garbage\n{\"text\":3}"), "old", 1);
        row("bytes that are no UTF-8 are set aside and read leniently",
            QByteArray("a\xff"
                       "b"),
            QByteArray(), "a\uFFFDb", 1);
        row("a file over the cap is set aside", QByteArray(NoteStore::largestFile + 1, 'x'),
            QByteArray(), "", 1);
    }
    void load() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, journal);
        QFETCH(QString, text);
        QFETCH(int, setAside);
        QTemporaryDir dir;
        test::ManualScheduler scheduler;
        NoteStore store(dir.path(), scheduler);
        if (!file.isEmpty()) {
            QVERIFY(writeFile(store.filePath(kNote), file));
        }
        if (!journal.isEmpty()) {
            QVERIFY(writeFile(store.journalPath(kNote), journal));
        }
        QCOMPARE(store.text(kNote), text);
        QCOMPARE(corrupt(QFileInfo(store.filePath(kNote)).absolutePath()).size(), setAside);
        QVERIFY(store.problem(kNote).isEmpty());
    }

    // A disk that refuses every write: the text stays in memory and the tile is told.
    void refusedWritesKeepTheText() {
        QTemporaryDir dir;
        QVERIFY(writeFile(QDir(dir.path()).filePath(QStringLiteral("notes")), "not a folder"));
        test::ManualScheduler scheduler;
        NoteStore store(dir.path(), scheduler);
        store.setText(kNote, QStringLiteral("keep me"));
        scheduler.advance(NoteStore::longest);
        QCOMPARE(store.text(kNote), QStringLiteral("keep me"));
        QVERIFY(!store.problem(kNote).isEmpty());
    }

    // Something that is no file in a note's place is never written over.
    void notAFileIsLeftAlone() {
        QTemporaryDir dir;
        test::ManualScheduler scheduler;
        NoteStore store(dir.path(), scheduler);
        QVERIFY(QDir().mkpath(store.filePath(kNote)));
        store.setText(kNote, QStringLiteral("x"));
        store.flush();
        QVERIFY(QFileInfo(store.filePath(kNote)).isDir());
        QVERIFY(!store.problem(kNote).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestNoteStore)
#include "tst_notestore.moc"
