// The controller against a real grid store on a temporary directory, real panels on the
// off-screen platform, and manual time.
#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedReadings.h"
#include "TestRows.h"
#include "custom/CustomWidgetRuntime.h"
#include "desktop/DesktopController.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "grid/GridStore.h"
#include "grid/OverlapResolver.h"
#include "grid/RectEdges.h"
#include "look/ThemeStore.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"
#include "net/QtHttpClient.h"
#include "platform/null/FixedColorScheme.h"
#include "platform/null/FixedDisplays.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/NullDesktopWindowing.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"
#include "readings/Readings.h"
#include "settings/AppSettings.h"
#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"
#include "weather/WeatherServices.h"

#include <QCursor>
#include <QDropEvent>
#include <QEnterEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QRectF kScreen(0, 0, 1920, 1080);

// A face that shows nothing but asks for readings.
class ReadingFace final : public WidgetFace {
public:
    explicit ReadingFace(ReadingFeeds feeds)
        : m_feeds(feeds) {}
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return std::nullopt;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
    ReadingFeeds feeds(WidgetSize, const WidgetSettings&) const override { return m_feeds; }

private:
    ReadingFeeds m_feeds;
};

// A face that needs the person to choose something before it can show anything.
class ChooseFirstFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return std::nullopt;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
    bool opensSettingsOnClick(const FaceContext&) const override { return true; }
};

// A face whose top-left quarter links to `link`.
class LinkFace final : public WidgetFace {
public:
    explicit LinkFace(QUrl link)
        : m_link(std::move(link)) {}
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return std::nullopt;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext&) const override {
        if (!QRectF(rect.topLeft(), rect.size() / 2).contains(point)) {
            return {};
        }
        Spot spot;
        spot.link = m_link;
        spot.help = QStringLiteral("help");
        return spot;
    }

private:
    QUrl m_link;
};

// A face whose top-left quarter is the control "empty".
class CommandFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return std::nullopt;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext&) const override {
        Spot spot;
        if (QRectF(rect.topLeft(), rect.size() / 2).contains(point)) {
            spot.command = QStringLiteral("empty");
        }
        return spot;
    }
};

// Writes down what the desktop tells it; takes only the "empty" control, keys and drops of text.
class RecordingBehaviour final : public TileBehaviour {
public:
    QList<QList<BehaviourTile>> tiles;
    QStringList events;
    void setTiles(const QList<BehaviourTile>& now) override { tiles << now; }
    bool press(const WidgetInstance&, const QString& command) override {
        events << u"press "_s + command;
        return command == u"empty"_s;
    }
    bool takesKeys() const override { return true; }
    bool key(const WidgetInstance&, const Key& key) override {
        events << u"key "_s + key.text;
        return true;
    }
    bool takesDrops() const override { return true; }
    bool acceptsDrop(const WidgetInstance&, const QMimeData& data) const override {
        return data.hasText();
    }
    bool drop(const WidgetInstance&, const QMimeData& data) override {
        events << u"drop "_s + data.text();
        return true;
    }
    QList<MenuItem> menuItems(const WidgetInstance&) const override {
        return {{.title = u"Empty Trash"_s, .command = u"empty-all"_s}};
    }
};

// The catalogue entries of the custom kinds the runtime knows, as the store would give them.
class BoardDefinitions final : public CustomWidgetDefinitions {
public:
    const CustomBoard* board = nullptr;
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override {
        const CustomWidgetDefinition* custom = board ? board->definition(kind) : nullptr;
        if (custom == nullptr) {
            return std::nullopt;
        }
        WidgetDefinition definition{WidgetRegistry::builtInDefinition(u"clock"_s)->metadata};
        definition.metadata.kind = kind;
        definition.metadata.allowedSizes = {WidgetSize::small};
        definition.metadata.defaultSize = WidgetSize::small;
        return definition;
    }
};

struct Fixture {
    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    MemoryDefaults defaults;
    FixedDisplays displays{
        {ScreenInfo{QStringLiteral("main"), QStringLiteral("Main"), kScreen, kScreen, true}}};
    BoardDefinitions customDefinitions;
    WidgetRegistry registry{&customDefinitions};
    NullDesktopWindowing windowing;
    NullWorkspace workspace;
    NullNotifications notifications;
    FixedColorScheme colorScheme{ColorScheme::Light};
    FaceRegistry faces;
    AppSettings settings{defaults};
    ScriptedSystemSource system;
    InlineRunner runner;
    Readings readings{{.system = &system}, clock, &runner};
    LoopbackHttpServer server;
    QtHttpClient http{scheduler};
    Endpoints endpoints = Endpoints::under(server.url(QString()).toString());
    WeatherServices weather{{.http = http,
                             .endpoints = endpoints,
                             .clock = clock,
                             .scheduler = scheduler,
                             .defaults = defaults,
                             .location = nullptr}};
    CustomWidgetRuntime custom{http, clock, &readings.board()};
    RecordingBehaviour trash;
    TileBehaviours behaviours;
    std::unique_ptr<ThemeStore> theme;
    std::unique_ptr<TickCoordinator> ticker;
    std::unique_ptr<MinuteCoordinator> minutes;
    std::unique_ptr<GridStore> grid;
    std::unique_ptr<DesktopController> controller;

    Fixture() {
        qputenv("TKW_APP_SUPPORT_DIR", dir.path().toUtf8());
        customDefinitions.board = &custom.board();
        behaviours.add(u"trash"_s, &trash);
        theme = std::make_unique<ThemeStore>(defaults, clock,
                                             dir.filePath(QStringLiteral("theme.json")));
        ticker = std::make_unique<TickCoordinator>(scheduler, clock, clock);
        minutes = std::make_unique<MinuteCoordinator>(*ticker);
        grid = std::make_unique<GridStore>(GridStore::Services{
            .clock = clock, .scheduler = scheduler, .registry = registry, .displays = &displays});
        controller = std::make_unique<DesktopController>(DesktopController::Services{
            .theme = *theme,
            .ticker = *ticker,
            .minutes = *minutes,
            .grid = *grid,
            .settings = settings,
            .displays = displays,
            .windowing = windowing,
            .scheduler = scheduler,
            .clock = clock,
            .registry = registry,
            .faces = faces,
            .workspace = &workspace,
            .notifications = &notifications,
            .colorScheme = &colorScheme,
            .readings = &readings,
            .weather = &weather,
            .custom = &custom,
            .behaviours = &behaviours,
        });
        controller->show();
    }

    WidgetInstance byKind(const char* kind) const {
        for (const WidgetInstance& i : grid->layout().instances) {
            if (i.kind == QLatin1String(kind)) {
                return i;
            }
        }
        return {};
    }
    QUuid id(const char* kind) const { return byKind(kind).id; }
    // A face of the test's own for `kind`; the tiles of that kind go first, so that no panel
    // keeps drawing with the face it replaces.
    void useFace(const char* kind, std::unique_ptr<WidgetFace> face) {
        const QList<WidgetInstance> before = grid->layout().instances;
        for (const WidgetInstance& i : before) {
            if (i.kind == QLatin1String(kind)) {
                grid->remove(i.id);
            }
        }
        faces.add(QLatin1String(kind), std::move(face));
    }
    // `member` stacked onto `front`; the stack's id.
    QUuid stack(const QUuid& member, const QUuid& front) {
        grid->groupIntoStack(member, front);
        return *grid->instance(front)->stackID;
    }
    QRectF tile(const WidgetInstance& i) const {
        return RectEdges::tileRect(*i.posX, *i.posY, i.pixelSize());
    }
    // Drags a panel so that its tile's lower-left corner lands at `tileOrigin`, and lets go.
    void dropAt(const QUuid& id, QPointF tileOrigin) {
        controller->panel(id)->setFrameOrigin(tileOrigin - QPointF(22, 22));
        controller->handleDragEnded(id);
    }
    // The calendar stacked onto the clock, turning every 4 s.
    QUuid turningStack() {
        const QUuid turning = stack(id("calendar"), id("clock"));
        controller->setStackRotate(turning, 4);
        return turning;
    }
    // Covers or uncovers a panel, past the debounce.
    void cover(const QUuid& id, bool covered) {
        Q_EMIT windowing.coveredChanged(controller->panel(id)->windowHandle(), covered);
        scheduler.advance(DesktopController::occlusionDebounce);
    }
    qsizetype requestsTo(const QByteArray& prefix) const {
        return std::count_if(
            server.requests().cbegin(), server.requests().cend(),
            [&](const auto& request) { return request.target.startsWith(prefix); });
    }
    int visiblePanels() const {
        int n = 0;
        for (const QUuid& id : controller->panelIDs()) {
            n += controller->panel(id)->isVisible() ? 1 : 0;
        }
        return n;
    }
};

} // namespace

class tst_DesktopController : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void firstStartPlacesTheFirstDesktopWithoutOverlap() {
        Fixture f;
        QCOMPARE(f.controller->panelIDs().size(), 3);
        QVERIFY(f.ticker->desktopActive());
        QList<QRectF> tiles;
        for (const WidgetInstance& i : f.grid->layout().instances) {
            QVERIFY(i.posX && i.posY);
            const QRectF t = f.tile(i);
            QVERIFY(kScreen.contains(t));
            QCOMPARE(f.controller->panel(i.id)->tileRect(), t);
            QCOMPARE(f.controller->panel(i.id)->frame().size(), t.size() + QSizeF(44, 44));
            for (const QRectF& other : tiles) {
                QVERIFY(!OverlapResolver::overlaps(t, other));
            }
            tiles.append(t);
        }
        // The weather stands beneath the clock, as the logical grid has it.
        QVERIFY(f.byKind("weather").posY < f.byKind("clock").posY);
    }

    // A new tile is ringed for a while; lock-screen-only tiles get no panel.
    void addedTiles() {
        Fixture f;
        const auto added = f.grid->addFree(QStringLiteral("stocks"), WidgetSize::small,
                                           std::nullopt, QPointF(1500, 900));
        QVERIFY(added);
        f.grid->highlight(added->id);
        QCOMPARE(f.controller->panel(added->id)->highlight(), 1.0);
        f.scheduler.advance(GridStore::highlightDuration);
        QCOMPARE(f.controller->panel(added->id)->highlight(), 0.0);
        const auto lockOnly =
            f.grid->addFree(QStringLiteral("battery"), WidgetSize::small,
                            WidgetSettings{{QStringLiteral("lockOnly"), QStringLiteral("true")}},
                            QPointF(1700, 900));
        QVERIFY(lockOnly);
        QVERIFY(!f.controller->panel(lockOnly->id));
        QCOMPARE(f.controller->panelIDs().size(), 4);
    }

    void aTileOffEveryDisplayIsClampedBack() {
        Fixture f;
        const QUuid clock = f.id("clock");
        f.grid->updatePosition(clock, 5000, -300);
        // Its corner on the display, half of it in view.
        QCOMPARE(f.controller->panel(clock)->tileRect(), QRectF(1920 - 102, 102 - 204, 204, 204));
    }

    // Let go partly off the display, a tile is kept where it is shown. Fully onto a tile of its
    // size it stacks, and is the one on show; half onto another size it slides off.
    void drops_data() {
        QTest::addColumn<QString>("onto");
        QTest::addColumn<QPointF>("dropped");
        QTest::addColumn<QPointF>("kept");
        row("off the left edge", "", QPointF(-100, 500), QPointF(0, 704));
        row("half past the right edge", "", QPointF(1800, 500), QPointF(1800, 704));
        row("mostly past the right edge", "", QPointF(1900, 500), QPointF(1818, 704));
        row("fully onto the same size", "calendar", QPointF(10, 10), QPointF());
        row("half onto another size", "weather", QPointF(0, 102 - 48), QPointF());
    }
    void drops() {
        QFETCH(QString, onto);
        QFETCH(QPointF, dropped);
        Fixture f;
        const QUuid clock = f.id("clock");
        const QUuid moved = onto.isEmpty() ? clock : f.byKind(qPrintable(onto)).id;
        f.dropAt(moved, onto.isEmpty() ? dropped : f.tile(f.byKind("clock")).topLeft() + dropped);
        const auto saved = f.grid->instance(moved);
        if (onto.isEmpty()) {
            QTEST(QPointF(*saved->posX, *saved->posY), "kept");
            QCOMPARE(f.controller->panel(moved)->tileRect(), f.tile(*saved));
        } else if (onto == QLatin1String("calendar")) {
            QVERIFY(saved->stackID && saved->stackID == f.grid->instance(clock)->stackID);
            QCOMPARE(saved->posX, f.grid->instance(clock)->posX);
            QCOMPARE(f.visiblePanels(), 2);
            QVERIFY(f.controller->panel(moved)->isVisible());
            QVERIFY(f.controller->isHiddenStackMember(clock));
        } else {
            QVERIFY(!saved->stackID);
            for (const WidgetInstance& other : f.grid->layout().instances) {
                QVERIFY(other.id == moved ||
                        !OverlapResolver::overlaps(f.tile(*saved), f.tile(other)));
            }
        }
    }

    // Tiles the program places itself are no change of the user's: what came before stays
    // undoable, and undoing the addition doesn't bring back a tile without a place.
    void placingANewTileKeepsTheHistory() {
        Fixture f;
        const WidgetInstance clock = f.byKind("clock");
        f.grid->updatePosition(clock.id, 900, 700);
        f.clock.advance(std::chrono::seconds(2));
        const auto added = f.grid->addFree(QStringLiteral("battery"), WidgetSize::small);
        QVERIFY(added && f.grid->instance(added->id)->posX.has_value());
        QVERIFY(f.grid->undo());
        QVERIFY(!f.grid->instance(added->id));
        QVERIFY(f.grid->undo());
        QCOMPARE(f.grid->instance(clock.id)->posX, clock.posX);
    }

    // The tick runs while panels are shown: hiding the desktop or removing its last tile stops
    // it. Minutes tiles sleep between minutes; one shown again starts from the time of its return.
    void desktopActiveFollowsTheShownPanels() {
        Fixture f;
        const QUuid clock = f.id("clock");
        // A small digital clock shows hours and minutes only.
        f.grid->setSize({clock}, WidgetSize::small);
        f.controller->hide();
        QVERIFY(!f.ticker->desktopActive());
        QCOMPARE(f.visiblePanels(), 0);
        f.clock.setNow(f.clock.now().addSecs(300));
        f.controller->toggle();
        QVERIFY(f.ticker->desktopActive());
        QCOMPARE(f.visiblePanels(), 3);
        QCOMPARE(f.controller->panel(clock)->context().now, f.clock.now());
        // A copy: each removal replaces the store's list.
        const QList<WidgetInstance> all = f.grid->layout().instances;
        for (const WidgetInstance& i : all) {
            QVERIFY(f.ticker->desktopActive());
            f.grid->remove(i.id);
        }
        QVERIFY(f.controller->panelIDs().isEmpty());
        QVERIFY(!f.ticker->desktopActive());
    }

    // The rhythm is the rotation's own; here, that the tick turns a stack on show and a hidden
    // desktop's stays still.
    void stacksTurnOnTheTickWhileShown() {
        Fixture f;
        const QUuid stack = f.turningStack();
        const QDateTime t0 = f.clock.now();
        const int first = f.controller->activeIndex(stack);
        f.controller->advanceStacks(t0.addSecs(4));
        QCOMPARE(f.controller->activeIndex(stack), 1 - first);
        QVERIFY(!f.controller->isHiddenStackMember(f.grid->stackMembers(stack).at(1 - first).id));
        f.controller->hide();
        f.controller->advanceStacks(t0.addSecs(30));
        QCOMPARE(f.controller->activeIndex(stack), 1 - first);
    }

    void clickZonesOfAStack_data() {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("index");
        row("left arrow", QPointF(22 + 10, 150), 1);
        row("right arrow", QPointF(22 + 204 - 10, 150), 1);
        row("dots do not step", QPointF(22 + 100, 22 + 10), 0);
    }
    void clickZonesOfAStack() {
        QFETCH(QPointF, point);
        Fixture f;
        const QUuid stack = f.stack(f.id("calendar"), f.id("clock"));
        QVERIFY(f.controller->handlePlainClick(f.id("clock"), point));
        QTEST(f.controller->activeIndex(stack), "index");
    }

    void aClickOpensThePersonsApplicationOrSaysWhyNot() {
        Fixture f;
        f.workspace.addRoleApplication(AppRole::clock, QStringLiteral("/apps/clock"));
        QVERIFY(f.controller->handlePlainClick(f.id("clock"), {100, 100}));
        QCOMPARE(f.workspace.requests(), QStringList{QStringLiteral("application /apps/clock")});
        QTest::ignoreMessage(QtCriticalMsg, "action failed: no application for the role weather");
        QVERIFY(f.controller->handlePlainClick(f.id("weather"), {100, 100}));
        QCOMPARE(f.notifications.shown().size(), 1);
        QCOMPARE(f.notifications.shown().first().title,
                 QStringLiteral("Nothing opens the weather"));
    }

    // The activity tile's click switches its program list, unless its click was given a job.
    void aClickSwitchesTheActivityList_data() {
        QTest::addColumn<QString>("clickAction");
        QTest::addColumn<QStringList>("lists");
        row("switches back and forth", QString(),
            QStringList{QStringLiteral("memory"), QStringLiteral("cpu")});
        row("a chosen action wins", QStringLiteral("none"), QStringList{QString(), QString()});
    }
    void aClickSwitchesTheActivityList() {
        QFETCH(QString, clickAction);
        QFETCH(QStringList, lists);
        Fixture f;
        WidgetSettings settings;
        if (!clickAction.isEmpty()) {
            settings.insert(WidgetAction::actionKey(), clickAction);
        }
        const auto tile = f.grid->addFree(QStringLiteral("activity"), WidgetSize::large, settings,
                                          QPointF(600, 600));
        QVERIFY(tile);
        for (const QString& list : lists) {
            QCOMPARE(f.controller->handlePlainClick(tile->id, {100, 100}), !list.isEmpty());
            QCOMPARE(f.grid->instance(tile->id)
                         ->settings.value_or(WidgetSettings())
                         .value(QStringLiteral("list")),
                     list);
        }
    }

    // "Automatic" glass is light on a dark desktop and dark on a light one.
    void automaticGlassFollowsTheDesktop() {
        Fixture f;
        const auto shade = [&] {
            return f.controller->panel(f.id("clock"))->context().glass.shade;
        };
        f.theme->setGlassTint(ThemeStore::GlassTint::Auto);
        QCOMPARE(shade(), GlassLook::Shade::Dark);
        f.colorScheme.setColorScheme(ColorScheme::Dark);
        QCOMPARE(shade(), GlassLook::Shade::Light);
        f.theme->setGlassTint(ThemeStore::GlassTint::Dark);
        QCOMPARE(shade(), GlassLook::Shade::Dark);
    }

    // A stack member's new size is the stack's; a grown tile moves off its neighbour, which
    // stays. Either is one step of history, whose undo restores the panels.
    void resizing() {
        Fixture f;
        const WidgetInstance clock = f.byKind("clock");
        const QUuid calendar = f.id("calendar");
        f.stack(calendar, clock.id);
        f.clock.advance(std::chrono::seconds(2));
        const QSizeF before = f.controller->panel(clock.id)->frame().size();
        f.controller->setWidgetSize(calendar, WidgetSize::small);
        QCOMPARE(f.grid->instance(clock.id)->size, WidgetSize::small);
        QCOMPARE(f.grid->instance(calendar)->size, WidgetSize::small);
        QCOMPARE(f.controller->panel(clock.id)->frame().size(), QSizeF(96 + 44, 96 + 44));
        QVERIFY(f.grid->undo());
        QCOMPARE(f.grid->instance(calendar)->size, clock.size);
        QVERIFY(f.grid->instance(calendar)->stackID.has_value());
        QCOMPARE(f.controller->panel(clock.id)->frame().size(), before);

        const auto battery = f.grid->addFree(QStringLiteral("battery"), WidgetSize::small,
                                             std::nullopt, QPointF(1500, 900));
        const QUuid weather = f.id("weather");
        f.grid->updatePosition(weather, 1500 + 96 + 12, 900);
        f.clock.advance(std::chrono::seconds(2));
        f.controller->setWidgetSize(battery->id, WidgetSize::wide);
        QCOMPARE(*f.grid->instance(weather)->posX, 1608.0);
        const auto grown = f.grid->instance(battery->id);
        QCOMPARE(QPointF(*grown->posX, *grown->posY), QPointF(1608 - 12 - 204, 900));
        QCOMPARE(f.controller->panel(battery->id)->tileRect(), f.tile(*grown));
        QVERIFY(f.grid->undo());
        QCOMPARE(f.grid->instance(battery->id)->size, WidgetSize::small);
        QCOMPARE(*f.grid->instance(battery->id)->posX, 1500.0);
    }

    // The menu acts on the tile it was opened on, though the stack turned meanwhile; the tile
    // taken out stands beside the stack, and the one on show stays on show.
    void removeFromStackWhileTheStackTurns() {
        Fixture f;
        const QUuid clock = f.id("clock");
        const QUuid calendar = f.id("calendar");
        const QUuid stack = f.stack(calendar, clock);
        f.stack(f.id("weather"), clock);
        std::unique_ptr<QMenu> menu(f.controller->contextMenu(clock));
        f.controller->stepStack(stack, 1);
        QVERIFY(f.controller->panel(calendar)->isVisible());
        for (QAction* action : menu->actions()) {
            if (action->text() == QStringLiteral("Remove from Stack")) {
                action->trigger();
            }
        }
        const auto out = f.grid->instance(clock);
        QVERIFY(!out->stackID);
        QCOMPARE(QPointF(*out->posX, *out->posY), QPointF(48 + 204 + 12, 1080 - 48));
        QVERIFY(f.controller->panel(clock)->isVisible());
        QVERIFY(f.controller->panel(calendar)->isVisible());
        QCOMPARE(f.grid->stackMembers(stack).size(), 2);
    }

    void contextMenuInItsOrder_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("titles");
        const QString rest = QStringLiteral("Size|Glass|Show Next|Rotate Every|Remove from Stack|"
                                            "Remove Widget");
        row("with settings", "clock", QStringLiteral("Widget Settings…|") + rest);
        row("without settings", "worldclock", rest);
    }
    void contextMenuInItsOrder() {
        QFETCH(QString, kind);
        Fixture f;
        const QUuid clock = f.id("clock");
        const bool own = kind == QLatin1String("clock");
        f.stack(own ? f.id("calendar") : f.grid->addFree(kind)->id, clock);
        std::unique_ptr<QMenu> menu(f.controller->contextMenu(f.byKind(qPrintable(kind)).id));
        const auto titles = [](const QMenu* m) {
            QStringList shown;
            for (const QAction* action : m->actions()) {
                shown.append(action->text());
            }
            return shown.join(QLatin1Char('|'));
        };
        QTEST(titles(menu.get()), "titles");
        const QAction* rotate = menu->actions().at(own ? 4 : 3);
        QCOMPARE(titles(rotate->menu()), QStringLiteral("Off|4 s|8 s|15 s"));
    }

    // A panel's pace follows the mode in force, the window in front, its cover and the pointer,
    // as each changes.
    void pace_data() {
        QTest::addColumn<AppSettings::EnergyMode>("mode");
        QTest::addColumn<bool>("constrained");
        QTest::addColumn<bool>("appActive");
        QTest::addColumn<bool>("occluded");
        QTest::addColumn<bool>("hovering");
        QTest::addColumn<AnimationPace::Kind>("pace");
        QTest::addColumn<bool>("transitions");
        using Mode = AppSettings::EnergyMode;
        using Kind = AnimationPace::Kind;
        row("high", Mode::high, false, false, false, false, Kind::Smooth, true);
        row("the window in front", Mode::high, false, true, false, true, Kind::Paused, true);
        row("covered", Mode::high, false, false, true, true, Kind::Paused, false);
        row("balanced under the pointer", Mode::balanced, false, false, false, true, Kind::Smooth,
            true);
        row("balanced elsewhere", Mode::balanced, false, false, false, false, Kind::Paused, true);
        row("high with power short", Mode::high, true, false, false, true, Kind::Paused, false);
    }
    void pace() {
        QFETCH(AppSettings::EnergyMode, mode);
        QFETCH(bool, constrained);
        QFETCH(bool, appActive);
        QFETCH(bool, occluded);
        QFETCH(bool, hovering);
        Fixture f;
        const QUuid clock = f.id("clock");
        PanelState* state = f.controller->panelState(clock);
        state->setHovering(hovering);
        state->setOccluded(occluded);
        f.settings.setEnergyMode(mode);
        f.settings.setPowerConstrained(constrained);
        f.settings.setAppActive(appActive);
        const FaceContext& context = f.controller->panel(clock)->context();
        QTEST(context.pace.kind(), "pace");
        QTEST(context.surface.allowsTransitions, "transitions");
        // A tile drawn anew keeps it.
        f.controller->setWidgetSize(clock, WidgetSize::small);
        QTEST(f.controller->panel(clock)->context().pace.kind(), "pace");
    }

    // An animated scene moves only as the pace allows, and goes on where it stopped.
    void scenesMoveAtThePace_data() {
        QTest::addColumn<AppSettings::EnergyMode>("mode");
        QTest::addColumn<bool>("occluded");
        QTest::addColumn<bool>("hovering");
        QTest::addColumn<QString>("animate");
        QTest::addColumn<bool>("moves");
        using Mode = AppSettings::EnergyMode;
        row("high", Mode::high, false, false, "", true);
        row("covered", Mode::high, true, false, "", false);
        row("energy saver", Mode::saver, false, true, "", false);
        row("balanced under the pointer", Mode::balanced, false, true, "", true);
        row("balanced elsewhere", Mode::balanced, false, false, "", false);
        row("the tile's scene is off", Mode::high, false, false, "false", false);
    }
    void scenesMoveAtThePace() {
        QFETCH(AppSettings::EnergyMode, mode);
        QFETCH(bool, occluded);
        QFETCH(bool, hovering);
        QFETCH(QString, animate);
        QFETCH(bool, moves);
        Fixture f;
        f.settings.setEnergyMode(mode);
        WidgetSettings settings{{QStringLiteral("mode"), QStringLiteral("manual")},
                                {QStringLiteral("condition"), QStringLiteral("rain")}};
        if (!animate.isEmpty()) {
            settings.insert(QStringLiteral("animate"), animate);
        }
        const auto tile = f.grid->addFree(QStringLiteral("weather"), WidgetSize::wide, settings,
                                          QPointF(1500, 900));
        QVERIFY(tile);
        PanelState* state = f.controller->panelState(tile->id);
        state->setOccluded(occluded);
        state->setHovering(hovering);
        const auto sceneTime = [&] { return f.controller->panel(tile->id)->context().sceneTime; };
        f.scheduler.advance(std::chrono::seconds(2));
        QCOMPARE(sceneTime() > 1.5, moves);
        if (!moves) {
            QCOMPARE(sceneTime(), 0.0);
            return;
        }
        // Covered for an hour: on its return the scene takes up from the same frame.
        state->setOccluded(true);
        const double stopped = sceneTime();
        f.scheduler.advance(std::chrono::hours(1));
        QCOMPARE(sceneTime(), stopped);
        state->setOccluded(false);
        f.scheduler.advance(std::chrono::seconds(1));
        QVERIFY(sceneTime() > stopped && sceneTime() < stopped + 1.1);
    }

    // A tile that can show nothing until a choice is made opens its settings on a click.
    void aClickOpensTheSettingsOfATileThatNeedsAChoice() {
        Fixture f;
        f.useFace("weather", std::make_unique<ChooseFirstFace>());
        const auto tile = f.grid->addFree(QStringLiteral("weather"), WidgetSize::small,
                                          std::nullopt, QPointF(1500, 900));
        QVERIFY(tile);
        QList<QUuid> opened;
        f.controller->widgetSettingsOpener = [&](const QUuid& id) { opened << id; };
        QVERIFY(f.controller->handlePlainClick(tile->id, {60, 60}));
        QCOMPARE(opened, QList<QUuid>{tile->id});
    }

    // A click opens the web page the face offers at that point, and nothing but a web page.
    void aClickOpensTheLinkAtItsPoint_data() {
        QTest::addColumn<QString>("link");
        QTest::addColumn<bool>("topLeft");
        QTest::addColumn<QStringList>("opened");
        row("a web page", "https://x.example/a", true, QStringList{u"open https://x.example/a"_s});
        row("elsewhere on the tile", "https://x.example/a", false, QStringList());
        row("a file", "file:///etc/passwd", true, QStringList());
    }
    void aClickOpensTheLinkAtItsPoint() {
        QFETCH(QString, link);
        QFETCH(bool, topLeft);
        Fixture f;
        f.useFace("worldmap", std::make_unique<LinkFace>(QUrl(link)));
        const auto tile =
            f.grid->addFree(u"worldmap"_s, WidgetSize::small, std::nullopt, QPointF(1500, 900));
        QVERIFY(tile);
        const QRectF inside = TileRenderer::contentRect(
            QSizeF(96, 96), TileShape::of(f.registry.definition(u"worldmap"_s)->metadata));
        // Internal orientation: y up from the panel's bottom edge, 22 points of margin.
        const QPointF at =
            topLeft ? inside.topLeft() + QPointF(4, 4) : inside.bottomRight() - QPointF(4, 4);
        const bool used = f.controller->handlePlainClick(tile->id, {22 + at.x(), 118 - at.y()});
        QCOMPARE(used, topLeft && link.startsWith(u"https"_s));
        QTEST(f.workspace.requests(), "opened");
        QCOMPARE(f.controller->panel(tile->id)->spotAt({22 + at.x(), 118 - at.y()}).help,
                 topLeft ? u"help"_s : QString());
    }

    // A kind with a behaviour of its own learns its tiles and which are in view, and takes the
    // clicks, keys (until it is done with them), drops and menu entries of its tiles.
    void aBehaviourTakesItsTiles() {
        Fixture f;
        f.useFace("trash", std::make_unique<CommandFace>());
        const auto tile =
            f.grid->addFree(u"trash"_s, WidgetSize::small, std::nullopt, QPointF(1500, 900));
        QVERIFY(tile);
        QCOMPARE(f.trash.tiles.last(), (QList<BehaviourTile>{{*tile, true}}));
        f.cover(tile->id, true);
        QCOMPARE(f.trash.tiles.last(), (QList<BehaviourTile>{{*tile, false}}));
        const qsizetype told = f.trash.tiles.size();
        f.cover(tile->id, true);
        QCOMPARE(f.trash.tiles.size(), told);

        const QRectF inside = TileRenderer::contentRect(
            QSizeF(96, 96), TileShape::of(f.registry.definition(u"trash"_s)->metadata));
        // Internal orientation: y up from the panel's bottom edge, 22 points of margin.
        const QPointF control = inside.topLeft() + QPointF(4, 4);
        const QPointF elsewhere = inside.bottomRight() - QPointF(4, 4);
        QVERIFY(f.controller->handlePlainClick(tile->id, {22 + control.x(), 118 - control.y()}));
        QVERIFY(
            !f.controller->handlePlainClick(tile->id, {22 + elsewhere.x(), 118 - elsewhere.y()}));
        DesktopPanel& panel = *f.controller->panel(tile->id);
        QCOMPARE(panel.focusPolicy(), Qt::ClickFocus);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_s);
        QCoreApplication::sendEvent(&panel, &key);
        // A tile done with its keys loses the focus.
        panel.activateWindow();
        panel.setFocus();
        QTRY_VERIFY(panel.hasFocus());
        Q_EMIT f.trash.keysDone(tile->id);
        QVERIFY(!panel.hasFocus());
        QMimeData text;
        text.setText(u"note"_s);
        QDragEnterEvent enter(QPoint(60, 60), Qt::CopyAction, &text, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(&panel, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(60, 60), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&panel, &drop);
        std::unique_ptr<QMenu> menu(f.controller->contextMenu(tile->id));
        QCOMPARE(menu->actions().first()->text(), u"Empty Trash"_s);
        menu->actions().first()->trigger();
        QCOMPARE(f.trash.events, (QStringList{u"press empty"_s, u"press "_s, u"key a"_s,
                                              u"drop note"_s, u"press empty-all"_s}));

        f.grid->remove(tile->id);
        QCOMPARE(f.trash.tiles.last(), QList<BehaviourTile>());
    }

    // The veil lifts 8 s after it fell at the latest, the panels 0.35 s later; a panel covered
    // while veiled stays as it was until then.
    void theVeilAndOcclusion() {
        Fixture f;
        DisplayFollower& follower = f.controller->displayFollower();
        QObject* window = f.controller->panel(f.id("clock"))->windowHandle();
        PanelState* state = f.controller->panelState(f.id("clock"));
        Q_EMIT f.windowing.coveredChanged(window, true);
        QVERIFY(!state->occluded());
        f.scheduler.advance(DesktopController::occlusionDebounce);
        QVERIFY(state->occluded());
        follower.setVeil(true);
        Q_EMIT f.windowing.coveredChanged(window, false);
        f.scheduler.advance(std::chrono::milliseconds(7900));
        QVERIFY(follower.isVeiled());
        QVERIFY(state->occluded());
        f.scheduler.advance(std::chrono::milliseconds(100));
        QVERIFY(follower.isVeiled());
        f.scheduler.advance(std::chrono::milliseconds(350));
        QVERIFY(!follower.isVeiled());
        QVERIFY(!state->occluded());
    }

    // The readings asked for are those of the tiles in view: none while covered or hidden. A
    // tile that comes into view has its figures at once.
    void readingsFollowTheTilesInView() {
        Fixture f;
        QCOMPARE(f.readings.demand(), ReadingFeeds());
        f.useFace("network", std::make_unique<ReadingFace>(ReadingFeed::network));
        const auto network = f.grid->addFree(QStringLiteral("network"), WidgetSize::small,
                                             std::nullopt, QPointF(1500, 900));
        QVERIFY(network);
        QCOMPARE(f.readings.demand(), ReadingFeeds(ReadingFeed::network));
        QVERIFY(f.readings.board().network.has_value());
        QCOMPARE(f.controller->panel(network->id)->context().readings, &f.readings.board());

        f.cover(network->id, true);
        QCOMPARE(f.readings.demand(), ReadingFeeds());
        f.cover(network->id, false);
        QCOMPARE(f.readings.demand(), ReadingFeeds(ReadingFeed::network));
        f.controller->hide();
        QCOMPARE(f.readings.demand(), ReadingFeeds());
    }

    // A custom tile's source is fetched when it comes into view and on the tick while it is in
    // view; tokens of the machine's readings make the tile ask for them.
    void customTilesFollowTheView() {
        Fixture f;
        f.server.route("/feed", LoopbackHttpServer::ok(R"({"v": 1})"));
        CustomWidgetDefinition definition;
        CustomSource source;
        source.url = f.server.url(u"/feed"_s).toString();
        source.refreshSeconds = 60;
        definition.source = source;
        definition.rows = {CustomRow()};
        definition.rows[0].elements = {CustomElement()};
        definition.rows[0].elements[0].text = u"{data:v}"_s;
        f.custom.setDefinitions({definition});
        const auto fetches = [&] { return f.requestsTo("/feed"); };

        const auto tile =
            f.grid->addFree(definition.kind(), WidgetSize::small, std::nullopt, QPointF(1500, 900));
        QVERIFY(tile);
        QCOMPARE(f.controller->panel(tile->id)->context().custom, &f.custom.board());
        QVERIFY(QTest::qWaitFor(
            [&] { return f.custom.board().sourceState(definition)->json.has_value(); }, 5000));
        QCOMPARE(fetches(), 1);
        QCOMPARE(f.readings.demand(), ReadingFeeds());

        definition.rows[0].elements[0].text = u"{data:v} {cpu}"_s;
        f.custom.setDefinitions({definition});
        QVERIFY(f.readings.demand().testFlags(ReadingFeeds(ReadingFeed::system) |
                                              ReadingFeed::battery));

        f.cover(tile->id, true);
        f.scheduler.advance(std::chrono::seconds(61));
        QTest::qWait(50);
        QCOMPARE(fetches(), 1);
        f.cover(tile->id, false);
        QVERIFY(QTest::qWaitFor([&] { return fetches() == 2; }, 5000));
    }

    // A place's weather is fetched when a tile showing it comes into view and kept fresh only
    // while one is in view.
    void weatherFollowsTheTilesInView() {
        Fixture f;
        const auto forecasts = [&] {
            return f.requestsTo("/forecast/v1/forecast?latitude=52.5200&");
        };
        const WidgetSettings berlin{{QStringLiteral("location"), QStringLiteral("custom")},
                                    {QStringLiteral("locLat"), QStringLiteral("52.52")},
                                    {QStringLiteral("locLon"), QStringLiteral("13.405")}};
        const auto tile = f.grid->addFree(QStringLiteral("weather"), WidgetSize::small, berlin,
                                          QPointF(1500, 900));
        QVERIFY(tile);
        QVERIFY(QTest::qWaitFor([&] { return forecasts() == 1; }, 5000));
        QCOMPARE(f.controller->panel(tile->id)->context().weather, &f.weather.board());

        f.cover(tile->id, true);
        f.scheduler.advance(WeatherService::goodFor);
        QTest::qWait(50);
        QCOMPARE(forecasts(), 1);
        f.cover(tile->id, false);
        QVERIFY(QTest::qWaitFor([&] { return forecasts() == 2; }, 5000));
    }

    // Whatever moved a panel while the displays were in flux, it ends where the grid says.
    void panelsReturnWhereTheGridSays_data() {
        QTest::addColumn<QString>("event");
        row("the machine woke", "wake");
        row("the displays woke", "screens wake");
        row("a settle that changed nothing", "unchanged");
        row("the veil lifted", "veil");
    }
    void panelsReturnWhereTheGridSays() {
        QFETCH(QString, event);
        Fixture f;
        DesktopPanel* panel = f.controller->panel(f.id("clock"));
        const QPointF home = panel->frame().topLeft();
        if (event == QLatin1String("veil")) {
            f.controller->displayFollower().setVeil(true);
        }
        panel->setFrameOrigin(QPointF(700, 100));
        if (event == QLatin1String("wake")) {
            Q_EMIT f.displays.didWake();
            // The window server moves the panel after the first sync; the repeats put it back.
            for (const int ms : {1500, 2500}) {
                QCOMPARE(panel->frame().topLeft(), home);
                panel->setFrameOrigin(QPointF(700, 100));
                f.scheduler.advance(std::chrono::milliseconds(ms));
            }
        } else if (event == QLatin1String("screens wake")) {
            Q_EMIT f.displays.screensDidWake();
        } else if (event == QLatin1String("unchanged")) {
            f.controller->displayFollower().adoptArrangement(
                {.displays = {}, .topologyChanged = false});
        } else {
            // Dropped while veiled, the screen event leaves the work to the veil's end.
            Q_EMIT f.displays.screensChanged();
            QCOMPARE(panel->frame().topLeft(), QPointF(700, 100));
            f.controller->displayFollower().setVeil(false);
            f.scheduler.advance(DisplayFollower::veilReturn);
        }
        QCOMPARE(panel->frame().topLeft(), home);
    }

    // A stack member sent back lets go of the pointer; the one brought forward takes it up, so a
    // pointer that has left lets the stack turn again.
    void hoverFollowsTheMemberOnShow() {
        Fixture f;
        const QUuid stack = f.turningStack();
        const int front = f.controller->activeIndex(stack);
        const QList<WidgetInstance> members = f.grid->stackMembers(stack);
        DesktopPanel* shown = f.controller->panel(members.at(front).id);
        DesktopPanel* next = f.controller->panel(members.at(1 - front).id);
        QCursor::setPos(shown->mapToGlobal(shown->rect().center()));
        QEnterEvent enter(QPointF(50, 50), QPointF(50, 50), QPointF(50, 50));
        QCoreApplication::sendEvent(shown, &enter);
        QVERIFY(f.controller->panelState(shown->instanceID())->hovering());
        f.controller->stepStack(stack, 1);
        QVERIFY(!f.controller->panelState(shown->instanceID())->hovering());
        QCOMPARE(f.controller->panelState(next->instanceID())->hovering(),
                 next->rect().contains(next->mapFromGlobal(QCursor::pos())));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(next, &leave);
        f.controller->advanceStacks(f.clock.now().addSecs(5));
        QCOMPARE(f.controller->activeIndex(stack), front);
    }

    // The edges a drag snaps to are those of the display under the tile at each step, not of
    // the one it started on; a sync during a drag leaves the dragged panel alone.
    void dragging() {
        Fixture f;
        const QUuid clock = f.id("clock");
        DesktopPanel* panel = f.controller->panel(clock);
        QList<QRectF> asked;
        panel->snapBounds = [&asked](const QRectF& tile) -> std::optional<QRectF> {
            asked.append(tile);
            return std::nullopt;
        };
        const QPoint grip = panel->rect().center();
        QTest::mousePress(panel, Qt::LeftButton, {}, grip);
        for (int step = 1; step <= 3; ++step) {
            QTest::mouseMove(panel, grip + QPoint(40 * step, 0));
        }
        QTest::mouseRelease(panel, Qt::LeftButton, {}, panel->rect().center());
        QVERIFY(asked.size() >= 2);
        QVERIFY(asked.last().x() > asked.first().x());
        QCOMPARE(asked.last().size(), panel->tileRect().size());

        panel->onUserDrag();
        panel->setFrameOrigin(QPointF(900, 300));
        f.controller->sync();
        QCOMPARE(panel->frame().topLeft(), QPointF(900, 300));
        panel->onDragEnded();
        QCOMPARE(*f.grid->instance(clock)->posX, 922.0);
    }
};

QTEST_MAIN(tst_DesktopController)
#include "tst_desktopcontroller.moc"
