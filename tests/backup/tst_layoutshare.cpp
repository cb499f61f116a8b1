#include "GoldenFile.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "backup/LayoutShare.h"
#include "grid/RectEdges.h"
#include "model/WidgetRegistry.h"
#include "platform/null/FixedDisplays.h"
#include "platform/null/MemoryDefaults.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

const QRectF screen(0, 0, 1440, 900);

WidgetInstance placed(const QString& kind, WidgetSize size, double x, double y,
                      const WidgetSettings& settings = {}) {
    WidgetInstance instance;
    instance.kind = kind;
    instance.size = size;
    instance.posX = x;
    instance.posY = y;
    if (!settings.isEmpty()) {
        instance.settings = settings;
    }
    return instance;
}

Board board(const QList<Board::Item>& items) {
    Board result;
    result.appVersion = QStringLiteral("0.1.0");
    result.name = QStringLiteral("Desk");
    result.createdAt = QDateTime(QDate(2026, 11, 24), QTime(9, 0), Qt::UTC);
    result.items = items;
    return result;
}

Board::Item item(const QString& kind, double dx = 0, double dy = 0,
                 WidgetSize size = WidgetSize::small) {
    return {.kind = kind, .size = size, .dx = dx, .dy = dy, .settings = std::nullopt};
}

// Readable, yet with a long name over two lines, numbers as text, items that cannot be used and
// a look out of range.
QByteArray hostileBoard() {
    QByteArray bytes = "{\"format\":1,\"name\":\"Desk\\n" + QByteArray(5000, 'x') + "\",";
    bytes += R"("width":"wide","height":-5,"items":[)";
    bytes += R"({"kind":"clock","size":"small","dx":"far","dy":"up","settings":{"a":"1","b":2}},)";
    bytes += R"({"kind":7,"size":"small"},{"kind":"battery","size":"enormous"},"clock",null,)";
    bytes += R"({"kind":"battery","size":"wide","dx":-40,"dy":12.5}],)";
    bytes += R"("look":{"palette":3,"glassStyle":"clear","glassStrength":40}})";
    return bytes;
}

} // namespace

class TestLayoutShare : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sanitize_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSettings>("settings");
        QTest::addColumn<WidgetSettings>("kept");
        const QString scale = QStringLiteral("tileScale");
        QTest::newRow("note text")
            << "stickynote"
            << WidgetSettings{{QStringLiteral("text"), QStringLiteral("pin 1234")},
                              {QStringLiteral("color"), QStringLiteral("yellow")}}
            << WidgetSettings{{QStringLiteral("color"), QStringLiteral("yellow")}};
        QTest::newRow("place")
            << "weather"
            << WidgetSettings{{QStringLiteral("location"), QStringLiteral("custom")},
                              {QStringLiteral("locLat"), QStringLiteral("41.1")},
                              {QStringLiteral("locName"), QStringLiteral("Porto")},
                              {scale, QStringLiteral("1.5")}}
            << WidgetSettings{{scale, QStringLiteral("1.5")}};
        QTest::newRow("smart home")
            << "smarthome"
            << WidgetSettings{{QStringLiteral("host"), QStringLiteral("10.0.0.2")},
                              {scale, QStringLiteral("2")}}
            << WidgetSettings{{scale, QStringLiteral("2")}};
        QTest::newRow("nothing left")
            << "countdown" << WidgetSettings{{QStringLiteral("title"), QStringLiteral("Wedding")}}
            << WidgetSettings{};
    }
    void sanitize() {
        QFETCH(QString, kind);
        QFETCH(WidgetSettings, settings);
        QFETCH(WidgetSettings, kept);
        QCOMPARE(LayoutShare::sanitize(kind, settings).value_or(WidgetSettings{}), kept);
        if (kept.isEmpty()) {
            QCOMPARE(LayoutShare::sanitize(kind, settings), std::nullopt);
        }
    }

    // The arrangement of one screen, stacks kept, written as a golden file.
    void makeBoardMatchesGolden() {
        const QUuid stack = QUuid::createUuid();
        WidgetInstance front = placed(QStringLiteral("clock"), WidgetSize::small, 100, 800);
        front.stackID = stack;
        front.stackIndex = 0;
        WidgetInstance back = placed(QStringLiteral("battery"), WidgetSize::small, 100, 800);
        back.stackID = stack;
        back.stackIndex = 1;
        WidgetInstance unplaced;
        unplaced.kind = QStringLiteral("calendar");
        const QList<WidgetInstance> instances{
            back,
            front,
            placed(QStringLiteral("stickynote"), WidgetSize::wide, 316, 692,
                   {{QStringLiteral("text"), QStringLiteral("secret")}}),
            placed(QStringLiteral("custom.00000000-0000-4000-8000-000000000001"), WidgetSize::small,
                   500, 500),
            placed(QStringLiteral("weather"), WidgetSize::small, 2000, 500),
            unplaced,
        };
        const Board::Decoded made = LayoutShare::makeBoard(
            QStringLiteral(" Desk "), instances, screen,
            Board::Look{.palette = QStringLiteral("graphite"),
                        .glassStyle = QStringLiteral("clear"),
                        .glassStrength = 0.5},
            QStringLiteral("0.1.0"), QDateTime(QDate(2026, 11, 24), QTime(9, 0), Qt::UTC));
        const Board& made_ = std::get<Board>(made);
        QStringList lines = QString::fromUtf8(made_.encode()).split(QLatin1Char('\n'));
        lines.removeLast();
        test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/desk.twkboard"), lines);
        QVERIFY(!made_.encode().contains("secret"));
        QCOMPARE(Board::decode(made_.encode()), Board::Decoded(made_));

        QCOMPARE(std::get<Board::Error>(LayoutShare::makeBoard({}, {instances.last()}, screen,
                                                               std::nullopt, {}, QDateTime())),
                 Board::Error::empty);
    }

    void decodeRefuses_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("error");
        QTest::newRow("newer") << QByteArray(R"({"format":2,"items":[]})")
                               << int(Board::Error::newer);
        QTest::newRow("layout file")
            << QByteArray(R"({"format":1,"files":{}})") << int(Board::Error::wrongFormat);
        QTest::newRow("too large") << QByteArray(R"({"format":1,"items":[],"name":")") +
                                          QByteArray(Board::maxBytes, 'a') + "\"}"
                                   << int(Board::Error::wrongFormat);
        QTest::newRow("older") << QByteArray(R"({"format":0,"items":[]})")
                               << int(Board::Error::wrongFormat);
        QTest::newRow("format as text")
            << QByteArray(R"({"format":"1","items":[]})") << int(Board::Error::wrongFormat);
        QTest::newRow("items not a list") << QByteArray(R"({"format":1,"items":{"kind":"clock"}})")
                                          << int(Board::Error::wrongFormat);
        QTest::newRow("truncated") << QByteArray("{\"format\":1,\"items\":[{\"kind\":\"clo")
                                   << int(Board::Error::wrongFormat);
        QTest::newRow("deeply nested")
            << QByteArray("{\"format\":1,\"items\":") + QByteArray(100000, '[') +
                   QByteArray(100000, ']') + "}"
            << int(Board::Error::wrongFormat);
        QTest::newRow("a list") << QByteArray("[1]") << int(Board::Error::wrongFormat);
    }
    void decodeRefuses() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, error);
        QCOMPARE(Board::decode(bytes), Board::Decoded(Board::Error(error)));
    }

    // A readable board from elsewhere: what cannot be used costs only itself.
    void decodeKeepsWhatItCan() {
        const Board::Decoded decoded = Board::decode(hostileBoard());
        QVERIFY(std::holds_alternative<Board>(decoded));
        const Board& board = std::get<Board>(decoded);
        QCOMPARE(board.name.size(), Board::maxNameLength);
        QVERIFY(board.name.startsWith(QStringLiteral("Desk xxx")));
        QCOMPARE(board.width, 0.0);
        QCOMPARE(board.height, 0.0);
        QCOMPARE(board.items.size(), 2);
        QCOMPARE(board.items[0].dx, 0.0);
        QCOMPARE(board.items[0].settings,
                 WidgetSettings({{QStringLiteral("a"), QStringLiteral("1")}}));
        QCOMPARE(board.items[1].dx, -40.0);
        QCOMPARE(board.look->palette, std::nullopt);
        QCOMPARE(board.look->glassStyle, QStringLiteral("clear"));
        QCOMPARE(board.look->glassStrength, 1.0);
    }

    // What a board must not carry is dropped on the way in as on the way out; an arrangement
    // too large for the screen still lands on it.
    void importDropsPersonalSettingsAndStaysOnScreen() {
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        WidgetRegistry registry;
        MemoryDefaults defaults;
        FixedDisplays displays(
            {{QStringLiteral("main"), QStringLiteral("Main"), screen, screen, true}});
        QTemporaryDir dir;
        GridStore grid({clock, scheduler, registry, &defaults, &displays, nullptr},
                       dir.filePath(QStringLiteral("grid.json")));
        Board::Item web = item(QStringLiteral("web"), 0, 0, WidgetSize::large);
        web.settings = WidgetSettings{{QStringLiteral("url"), QStringLiteral("http://x.test/")},
                                      {QStringLiteral("tileScale"), QStringLiteral("1")}};
        Board::Item note = item(QStringLiteral("stickynote"), 1e300, -1e300);
        note.settings = WidgetSettings{{QStringLiteral("text"), QStringLiteral("hi")},
                                       {QStringLiteral("locLat"), QStringLiteral("41")}};
        const LayoutShare::ImportResult result =
            LayoutShare::importBoard(board({web, note}), grid, registry, nullptr,
                                     GridStore::Replacing::no, LayoutShare::ApplyLook::no, screen);
        QCOMPARE(result.placed, 2);
        const WidgetInstance page = *grid.instance(result.ids[0]);
        QCOMPARE(page.settings,
                 WidgetSettings({{QStringLiteral("tileScale"), QStringLiteral("1")}}));
        const WidgetInstance placedNote = *grid.instance(result.ids[1]);
        QCOMPARE(placedNote.settings, std::nullopt);
        for (const WidgetInstance& added : {page, placedNote}) {
            QVERIFY(added.posX && added.posY);
            QVERIFY(
                screen.contains(RectEdges::tileRect(*added.posX, *added.posY, added.pixelSize())));
        }
    }

    void importCountsWhatItSkipsAndCanBeUndone() {
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        WidgetRegistry registry;
        MemoryDefaults defaults;
        FixedDisplays displays(
            {{QStringLiteral("main"), QStringLiteral("Main"), screen, screen, true}});
        QTemporaryDir dir;
        GridStore grid({clock, scheduler, registry, &defaults, &displays, nullptr},
                       dir.filePath(QStringLiteral("grid.json")));
        grid.append({placed(QStringLiteral("smarthome"), WidgetSize::small, 48, 852)},
                    GridStore::Replacing::no);
        const GridLayout before = grid.layout();
        // Changes close together count as one step of history.
        clock.advance(std::chrono::minutes(1));

        const Board shared =
            board({item(QStringLiteral("clock")), item(QStringLiteral("battery")),
                   item(QStringLiteral("hologram"), 108), item(QStringLiteral("smarthome"), 216),
                   item(QStringLiteral("weather"), 0, 108, WidgetSize::wide)});
        const LayoutShare::ImportResult result =
            LayoutShare::importBoard(shared, grid, registry, nullptr, GridStore::Replacing::no,
                                     LayoutShare::ApplyLook::no, screen);
        QCOMPARE(result.placed, 3);
        QCOMPARE(result.unavailable, 1);
        QCOMPARE(result.atMaximum, 1);
        QCOMPARE(LayoutShare::summary(result),
                 QStringLiteral("3 widgets added to your desktop. 1 are not available in this "
                                "version. 1 were skipped because you already have the most of "
                                "that widget."));
        // One stack of two where the items shared a place, the shape kept, nothing overlapped.
        QList<QRectF> frames;
        for (const QUuid& id : result.ids) {
            const WidgetInstance added = *grid.instance(id);
            QVERIFY(added.posX && added.posY);
            frames.append(RectEdges::tileRect(*added.posX, *added.posY, added.pixelSize()));
        }
        QCOMPARE(frames[0], frames[1]);
        QCOMPARE(grid.instance(result.ids[0])->stackID, grid.instance(result.ids[1])->stackID);
        QCOMPARE(frames[2].x(), frames[0].x());
        QCOMPARE(RectEdges::maxY(frames[2]), RectEdges::minY(frames[0]) - 12);
        for (const QRectF& frame : frames) {
            QVERIFY(screen.contains(frame));
            QVERIFY(!frame.intersects(
                RectEdges::tileRect(48, 852, nominalPixelSize(WidgetSize::small))));
        }
        QVERIFY(grid.undo());
        QCOMPARE(grid.layout().instances, before.instances);

        const LayoutShare::ImportResult replaced =
            LayoutShare::importBoard(shared, grid, registry, nullptr, GridStore::Replacing::yes,
                                     LayoutShare::ApplyLook::no, screen);
        QCOMPARE(replaced.placed, 4);
        QCOMPARE(grid.layout().instances.size(), 4);
    }

    void offerAndCaptionWords() {
        Board unnamed = board({item(QStringLiteral("clock")), item(QStringLiteral("battery"))});
        unnamed.name = QStringLiteral("  ");
        QCOMPARE(LayoutShare::offerTitle(unnamed), QStringLiteral("Add this board?"));
        QCOMPARE(LayoutShare::offerTitle(board({})), QStringLiteral("Add the board \"Desk\"?"));
        QCOMPARE(
            LayoutShare::offerBody(unnamed),
            QStringLiteral("2 widgets. Your own widgets stay unless you choose to replace them."));
        QVERIFY(
            LayoutShare::caption(QStringLiteral("Desk")).startsWith(QStringLiteral("\"Desk\": ")));
    }
};

QTEST_GUILESS_MAIN(TestLayoutShare)
#include "tst_layoutshare.moc"
