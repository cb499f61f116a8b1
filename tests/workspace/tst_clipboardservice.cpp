#include "Files.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "platform/null/MemoryClipboard.h"
#include "workspace/ClipboardBehaviour.h"
#include "workspace/ClipboardService.h"

#include <QDir>
#include <QImage>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

void copyImage(Clipboard& clipboard, QColor color) {
    QImage image(40, 30, QImage::Format_ARGB32);
    image.fill(color);
    auto* data = new QMimeData();
    data->setImageData(image);
    clipboard.setContents(data);
}

QString texts(const ClipboardService& service) {
    QStringList all;
    for (const Clipping& clipping : service.items()) {
        all.append(clipping.kind == Clipping::Kind::image ? QStringLiteral("<picture>")
                                                          : clipping.text);
    }
    return all.join(u',');
}

} // namespace

class TestClipboardService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void watchesOnlyWhileATileIsThere() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        MemoryClipboard clipboard;
        ClipboardService service(clipboard, clock, scheduler, dir.path());
        clipboard.copyText(QStringLiteral("before"));
        service.setWatching(true);
        clipboard.copyText(QStringLiteral("one"));
        clipboard.copyText(QStringLiteral("two"));
        // What this program copies as a secret, no history keeps.
        clipboard.copyText(QStringLiteral("hunter2"), Clipboard::Secrecy::secret);
        QCOMPARE(texts(service), QStringLiteral("two,one"));
        QVERIFY(service.copyBack(1));
        QCOMPARE(clipboard.text(), QStringLiteral("one"));
        QCOMPARE(texts(service), QStringLiteral("one,two"));
        QVERIFY(!service.copyBack(7));
        service.setWatching(false);
        clipboard.copyText(QStringLiteral("after"));
        QCOMPARE(texts(service), QStringLiteral("one,two"));
        // Nothing is written while the history is not kept.
        scheduler.advance(std::chrono::seconds(5));
        QVERIFY(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
    }

    void keptAcrossARestartAndForgottenWhenTurnedOff() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        MemoryClipboard clipboard;
        QString file;
        QString pictures;
        {
            ClipboardService service(clipboard, clock, scheduler, dir.path());
            service.setWatching(true);
            service.setKeeping(true);
            clipboard.copyText(QStringLiteral("text"));
            copyImage(clipboard, Qt::green);
            scheduler.advance(std::chrono::seconds(2));
            file = service.filePath();
            pictures = service.imageFolder();
            QVERIFY(QFile::exists(file));
            QCOMPARE(QDir(pictures).entryList(QDir::Files).size(), 1);
        }
        ClipboardService again(clipboard, clock, scheduler, dir.path());
        again.setKeeping(true);
        QCOMPARE(texts(again), QStringLiteral("<picture>,text"));
        QCOMPARE(again.items()[0].image.pixelColor(1, 1), QColor(Qt::green));
        again.remove(0);
        scheduler.advance(std::chrono::seconds(2));
        QCOMPARE(QDir(pictures).entryList(QDir::Files).size(), 0);
        again.setKeeping(false);
        QVERIFY(!QFile::exists(file));
        QVERIFY(!QFileInfo::exists(pictures));
        QCOMPARE(texts(again), QStringLiteral("text"));
    }

    void unreadableFileIsSetAside() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        MemoryClipboard clipboard;
        ClipboardService service(clipboard, clock, scheduler, dir.path());
        QVERIFY(test::writeFile(service.filePath(), "{\"clippings\": [ broken"));
        service.setKeeping(true);
        QVERIFY(service.items().isEmpty());
        QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.corrupt")}).size(), 1);
    }

    // The tiles' settings as the desktop hands them over: watching while one is there, keeping
    // while one asks, pictures unless one says no; a click copies back or clears.
    void tilesDriveTheService() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        MemoryClipboard clipboard;
        ClipboardService service(clipboard, clock, scheduler, dir.path());
        ClipboardBehaviour behaviour(service);
        WidgetInstance tile;
        tile.kind = QStringLiteral("clipboard");
        tile.settings = WidgetSettings{{QStringLiteral("keep"), QStringLiteral("true")},
                                       {QStringLiteral("images"), QStringLiteral("false")}};
        behaviour.setTiles({{.instance = tile, .inView = false}});
        copyImage(clipboard, Qt::red);
        clipboard.copyText(QStringLiteral("a"));
        clipboard.copyText(QStringLiteral("b"));
        QCOMPARE(texts(service), QStringLiteral("b,a"));
        QVERIFY(behaviour.press(tile, QStringLiteral("copy:1")));
        QCOMPARE(texts(service), QStringLiteral("a,b"));
        QVERIFY(!behaviour.press(tile, QStringLiteral("copy:9")));
        scheduler.advance(std::chrono::seconds(2));
        QVERIFY(QFile::exists(service.filePath()));
        QCOMPARE(behaviour.menuItems(tile).size(), 1);
        QVERIFY(behaviour.press(tile, QStringLiteral("clear")));
        QVERIFY(service.items().isEmpty());
        behaviour.setTiles({});
        clipboard.copyText(QStringLiteral("unseen"));
        QVERIFY(service.items().isEmpty());
    }
};

QTEST_MAIN(TestClipboardService)
#include "tst_clipboardservice.moc"
