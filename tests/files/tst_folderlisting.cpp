#include "Files.h"
#include "TestRows.h"
#include "files/FolderListing.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::names;
using tw::test::row;

class TestFolderListing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void order_data() {
        QTest::addColumn<QString>("sort");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<int>("limit");
        QTest::addColumn<QStringList>("names");
        // Written oldest first: b.txt (3 bytes), a10.pdf (1), a9.png (5), then the folders.
        row("name, numbers as numbers", "name", false, 10,
            names({"Music", "zeta", "a9.png", "a10.pdf", "b.txt"}));
        row("newest first", "modified", false, 10,
            names({"Music", "zeta", "a9.png", "a10.pdf", "b.txt"}));
        row("largest first", "size", false, 10,
            names({"Music", "zeta", "a9.png", "b.txt", "a10.pdf"}));
        row("by kind", "kind", false, 10, names({"Music", "zeta", "a10.pdf", "a9.png", "b.txt"}));
        row("hidden shown", "name", true, 10,
            names({".config", "Music", "zeta", ".profile", "a9.png", "a10.pdf", "b.txt"}));
        row("limited", "name", false, 2, names({"Music", "zeta"}));
    }
    void order() {
        QFETCH(QString, sort);
        QFETCH(bool, hidden);
        QFETCH(int, limit);
        QFETCH(QStringList, names);
        QTemporaryDir dir;
        const QDir root(dir.path());
        const QDateTime base = QDateTime::currentDateTime().addDays(-1);
        int minutes = 0;
        for (const auto& [name, bytes] :
             {std::pair{"b.txt", "abc"}, std::pair{"a10.pdf", "a"}, std::pair{"a9.png", "abcde"},
              std::pair{".profile", "x"}}) {
            const QString path = root.filePath(QString::fromUtf8(name));
            QVERIFY(tw::test::writeFile(path, bytes));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(
                file.setFileTime(base.addSecs(60 * ++minutes), QFileDevice::FileModificationTime));
        }
        for (const char* folder : {"zeta", "Music", ".config"}) {
            QVERIFY(root.mkdir(QString::fromUtf8(folder)));
        }
        const FolderListing listing = FolderListing::read(
            dir.path(), FolderListing::sortNamed(sort),
            hidden ? FolderListing::Hidden::shown : FolderListing::Hidden::left, limit);
        QVERIFY(listing.exists && listing.readable);
        QStringList got;
        for (const FolderItem& item : listing.items) {
            got.append(item.name);
        }
        QCOMPARE(got, names);
        QCOMPARE(listing.total, hidden ? 7 : 5);
        QCOMPARE(listing.items.first().iconName, QStringLiteral("folder"));
    }

    void missing() {
        QTemporaryDir dir;
        const FolderListing listing =
            FolderListing::read(dir.filePath(QStringLiteral("gone")), FolderListing::Sort::name,
                                FolderListing::Hidden::left, 10);
        QVERIFY(!listing.exists && !listing.readable && listing.items.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFolderListing)
#include "tst_folderlisting.moc"
