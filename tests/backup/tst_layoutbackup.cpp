#include "Files.h"
#include "GoldenFile.h"
#include "backup/LayoutBackup.h"
#include "backup/PropertyList.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

LayoutBackup::Snapshot sample() {
    LayoutBackup::Snapshot snapshot;
    snapshot.appVersion = QStringLiteral("0.1.0");
    snapshot.exportedAt = QDateTime(QDate(2026, 11, 24), QTime(9, 30, 5), Qt::UTC);
    snapshot.files.insert(QStringLiteral("grid.json"), "{\"instances\":[],\"pageCount\":1}");
    snapshot.files.insert(QStringLiteral("theme.json"), "{\"id\":\"graphite\"}");
    snapshot.wallpapers.insert(QStringLiteral("dunes.png"), QByteArray("\x89PNG\r\n\x1a\n", 8));
    snapshot.defaults =
        PropertyList::encode({{QStringLiteral("tarnwick.energyMode"), QStringLiteral("saver")},
                              {QStringLiteral("tarnwick.tileScale"), 1.25},
                              {QStringLiteral("tarnwick.haptics"), false}});
    return snapshot;
}

} // namespace

class TestLayoutBackup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_dir.emplace();
        for (const QString& key : m_defaults.keys()) {
            m_defaults.remove(key);
        }
    }

    void roundTripMatchesGolden() {
        const QByteArray bytes = LayoutBackup::encode(sample());
        QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
        lines.removeLast();
        test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/sample.twklayout"), lines);
        const LayoutBackup::Decoded decoded =
            LayoutBackup::decode(test::readFile(QStringLiteral(TW_GOLDEN_DIR "/sample.twklayout")));
        QVERIFY(std::holds_alternative<LayoutBackup::Snapshot>(decoded));
        QCOMPARE(std::get<LayoutBackup::Snapshot>(decoded), sample());
    }

    void decodeRefuses_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const QString wrong = QStringLiteral("This is not a Tarnwick layout file.");
        QTest::newRow("newer") << QByteArray(R"({"format":2,"files":{}})")
                               << QStringLiteral("This layout was saved by a newer version. "
                                                 "Update the app first.");
        QTest::newRow("other JSON") << QByteArray(R"({"instances":[],"pageCount":1})") << wrong;
        QTest::newRow("format as text") << QByteArray(R"({"format":"1","files":{}})") << wrong;
        QTest::newRow("format zero") << QByteArray(R"({"format":0,"files":{}})") << wrong;
        QTest::newRow("array") << QByteArray("[1]") << wrong;
        QTest::newRow("not JSON") << QByteArray("\x89PNG") << wrong;
        QTest::newRow("truncated")
            << QByteArray("{\"format\":1,\"files\":{\"grid.json\":\"e30") << wrong;
        QTest::newRow("files as a list")
            << QByteArray(R"({"format":1,"files":["grid.json"]})") << wrong;
        QTest::newRow("deeply nested")
            << QByteArray("{\"format\":1,\"files\":{\"a\":") + QByteArray(100000, '[') +
                   QByteArray(100000, ']') + "}}"
            << wrong;
    }
    void decodeRefuses() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        const LayoutBackup::Decoded decoded = LayoutBackup::decode(bytes);
        QVERIFY(std::holds_alternative<LayoutBackup::BackupError>(decoded));
        QCOMPARE(LayoutBackup::message(std::get<LayoutBackup::BackupError>(decoded)), message);
    }

    void portableDefaults_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("portable");
        QTest::newRow("setting") << "tarnwick.energyMode" << true;
        QTest::newRow("unknown tarnwick key") << "tarnwick.someday.new" << true;
        QTest::newRow("wallpaper") << "twk_active_wallpaper" << true;
        QTest::newRow("version") << "tarnwick.lastLaunchedVersion" << false;
        QTest::newRow("first run") << "tarnwick.hasSeenGuide.v225" << false;
        QTest::newRow("hardware") << "tarnwick.bt.btdevices.list" << false;
        QTest::newRow("glass reset") << "tarnwick.x.glassReset.done" << false;
        QTest::newRow("other program") << "AppleLanguages" << false;
    }
    void portableDefaults() {
        QFETCH(QString, key);
        QFETCH(bool, portable);
        QCOMPARE(LayoutBackup::isPortableDefault(key), portable);
    }

    void propertyListKeepsTypes() {
        const QVariantMap values{
            {QStringLiteral("text"), QStringLiteral("a <b> & \"c\"")},
            {QStringLiteral("int"), qlonglong(-42)},
            {QStringLiteral("real"), 0.1},
            {QStringLiteral("yes"), true},
            {QStringLiteral("bytes"), QByteArray("\0\1\2", 3)},
            {QStringLiteral("list"), QVariantList{QStringLiteral("x"), qlonglong(1)}},
            {QStringLiteral("nested"), QVariantMap{{QStringLiteral("k"), false}}},
        };
        QCOMPARE(PropertyList::decode(PropertyList::encode(values)), values);
        QVERIFY(!PropertyList::decode("<plist><dict><key>a</key><bogus/></dict></plist>"));
        QVERIFY(!PropertyList::decode("<plist><array/></plist>"));
    }

    // The current setup: old files, an old wallpaper, old preferences.
    void applyReplacesEverything() {
        const QDir dir(m_dir->path());
        test::writeFile(dir.filePath(QStringLiteral("grid.json")), "old grid");
        test::writeFile(dir.filePath(QStringLiteral("topology.json")), "old topology");
        test::writeFile(dir.filePath(QStringLiteral("notices-cache.json")), "kept");
        test::writeFile(dir.filePath(QStringLiteral("Wallpapers/mine.png")), "mine");
        m_defaults.setValue(QStringLiteral("tarnwick.moveNeedsShift"), true);
        m_defaults.setValue(QStringLiteral("tarnwick.lastLaunchedVersion"),
                            QStringLiteral("0.0.9"));

        LayoutBackup::Snapshot snapshot = sample();
        snapshot.wallpapers.insert(QStringLiteral("../escape.png"), "x");
        snapshot.wallpapers.insert(QStringLiteral("a/b.png"), "x");
        snapshot.wallpapers.insert(dir.filePath(QStringLiteral("absolute.png")), "x");
        snapshot.wallpapers.insert(QStringLiteral("..\\up.png"), "x");
        snapshot.wallpapers.insert(QStringLiteral("line\nbreak.png"), "x");
        snapshot.wallpapers.insert(QString(300, QLatin1Char('w')) + QStringLiteral(".png"), "x");
        snapshot.files.insert(QStringLiteral("../outside.json"), "x");
        snapshot.files.insert(dir.filePath(QStringLiteral("abs.json")), "x");
        snapshot.files.insert(QStringLiteral("notices-cache.json"), "replaced");
        snapshot.defaults = PropertyList::encode(
            {{QStringLiteral("tarnwick.someday.new"), QStringLiteral("kept as is")},
             {QStringLiteral("tarnwick.hasSeenGuide"), true},
             {QStringLiteral("AppleLanguages"), QStringLiteral("fr")}});
        QCOMPARE(LayoutBackup::apply(snapshot, setup()), std::nullopt);

        QCOMPARE(test::readFile(dir.filePath(QStringLiteral("grid.json"))),
                 snapshot.files.value(QStringLiteral("grid.json")));
        QVERIFY2(!QFile::exists(dir.filePath(QStringLiteral("topology.json"))),
                 "a file the layout lacks is removed");
        QCOMPARE(test::readFile(dir.filePath(QStringLiteral("notices-cache.json"))), "kept");
        QCOMPARE(QDir(dir.filePath(QStringLiteral("Wallpapers"))).entryList(QDir::Files),
                 (QStringList{QStringLiteral("dunes.png"), QStringLiteral("mine.png")}));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("escape.png"))));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("absolute.png"))));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("../outside.json"))));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("abs.json"))));
        QCOMPARE(m_defaults.keys().size(), 2);
        QCOMPARE(m_defaults.value(QStringLiteral("tarnwick.someday.new")).toString(),
                 QStringLiteral("kept as is"));
        QCOMPARE(m_defaults.value(QStringLiteral("tarnwick.lastLaunchedVersion")).toString(),
                 QStringLiteral("0.0.9"));
        QCOMPARE(dir.entryList({QStringLiteral("restore-*")}, QDir::AllEntries), QStringList());
    }

    // Crash points: staged but not committed is dropped; committed is completed at the next start.
    void pendingRestore_data() {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QByteArray>("grid");
        QTest::newRow("staged only") << "restore-staging" << QByteArray("old");
        QTest::newRow("committed") << "restore-pending" << QByteArray("new");
    }
    void pendingRestore() {
        QFETCH(QString, folder);
        QFETCH(QByteArray, grid);
        const QDir dir(m_dir->path());
        test::writeFile(dir.filePath(QStringLiteral("grid.json")), "old");
        test::writeFile(dir.filePath(QStringLiteral("theme.json")), "old theme");
        test::writeFile(dir.filePath(folder + QStringLiteral("/files/grid.json")), "new");
        test::writeFile(dir.filePath(folder + QStringLiteral("/manifest.json")),
                        R"({"files":["grid.json"],"wallpapers":[],"defaults":false})");
        QCOMPARE(LayoutBackup::finishPendingRestore(setup()), grid == "new");
        QCOMPARE(test::readFile(dir.filePath(QStringLiteral("grid.json"))), grid);
        QCOMPARE(QFile::exists(dir.filePath(QStringLiteral("theme.json"))), grid == "old");
        QVERIFY(!QFileInfo::exists(dir.filePath(folder)));
    }

    void backUpCurrentSetupKeepsWallpapers() {
        const QDir dir(m_dir->path());
        test::writeFile(dir.filePath(QStringLiteral("grid.json")), "grid");
        test::writeFile(dir.filePath(QStringLiteral("Wallpapers/mine.png")), "mine");
        test::writeFile(dir.filePath(QStringLiteral("Wallpapers/.hidden")), "no");
        const QDateTime at(QDate(2026, 11, 24), QTime(10, 0, 1));
        const std::optional<QString> path = LayoutBackup::backUpCurrentSetup(setup(), at);
        QCOMPARE(path,
                 dir.filePath(QStringLiteral("Backups/before-import-2026-11-24-100001.twklayout")));
        const LayoutBackup::Decoded decoded = LayoutBackup::read(*path);
        const auto& snapshot = std::get<LayoutBackup::Snapshot>(decoded);
        QCOMPARE(snapshot.wallpapers.keys(), QStringList{QStringLiteral("mine.png")});
        QCOMPARE(snapshot.files.keys(), QStringList{QStringLiteral("grid.json")});
    }

private:
    LayoutBackup::Setup setup() {
        return {.directory = m_dir->path(),
                .defaults = m_defaults,
                .appVersion = QStringLiteral("0.1.0")};
    }

    std::optional<QTemporaryDir> m_dir;
    MemoryDefaults m_defaults;
};

QTEST_GUILESS_MAIN(TestLayoutBackup)
#include "tst_layoutbackup.moc"
