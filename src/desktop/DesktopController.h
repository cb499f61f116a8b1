// Keeps one panel for every tile that belongs on the desktop, in step with the grid, the
// displays, the tick and what covers the panels. Where tiles belong is `TilePlacement`'s, which
// member of a stack is in front `StackFronts`'s, what a tile shows `TileContent`'s and the display
// changes `DisplayFollower`'s; the controller applies them to the panels.
#pragma once

#include "desktop/DesktopTile.h"
#include "desktop/DisplayFollower.h"
#include "desktop/TileContent.h"
#include "desktop/TileEdits.h"
#include "desktop/TilePlacement.h"
#include "faces/LiquidCache.h"
#include "faces/LiquidRenderQueue.h"
#include "faces/TileRenderer.h"
#include "grid/StackFronts.h"
#include "grid/StackScrollGesture.h"
#include "look/ThemeStore.h"
#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"
#include "tick/PaintLedger.h"

#include <QHash>
#include <QObject>
#include <QUuid>

#include <chrono>
#include <functional>
#include <map>

class QMenu;

namespace tw {

class AppSettings;
class Clock;
class ColorSchemeWatcher;
class AppUsageService;
class CalendarHub;
class CustomWidgetRuntime;
class DeskTimers;
class DesktopWindowing;
class Displays;
class FaceRegistry;
class GridStore;
class MinuteCoordinator;
class Notifications;
class Readings;
class Scheduler;
class ScreenTopologyWatcher;
class SpeedTestService;
class SymbolProvider;
class TickCoordinator;
class TopologyMemory;
class WeatherServices;
class MarketServices;
class WallpaperBackdrop;
class WidgetRegistry;
class Workspace;

class DesktopController final : public QObject {
    Q_OBJECT
public:
    // Everything the controller works with; all must outlive it. The watcher and the memory may
    // be absent (no display handling), as may the workspace and the notifications (clicks run
    // no action) and the colour scheme (the desktop counts as dark).
    struct Services {
        ThemeStore& theme;
        TickCoordinator& ticker;
        MinuteCoordinator& minutes;
        GridStore& grid;
        AppSettings& settings;
        const Displays& displays;
        DesktopWindowing& windowing;
        Scheduler& scheduler;
        const Clock& clock;
        const WidgetRegistry& registry;
        const FaceRegistry& faces;
        const SymbolProvider* symbols = nullptr;
        ScreenTopologyWatcher* watcher = nullptr;
        TopologyMemory* memory = nullptr;
        Workspace* workspace = nullptr;
        Notifications* notifications = nullptr;
        const ColorSchemeWatcher* colorScheme = nullptr;
        // The desktop's picture behind the glass; without it the glass is the theme's surface.
        const WallpaperBackdrop* backdrop = nullptr;
        // The machine's readings, sampled for the tiles in view; without them faces show their
        // figures as missing.
        Readings* readings = nullptr;
        // The weather of the places tiles show, fetched for the tiles in view; without it weather
        // faces show it loading.
        WeatherServices* weather = nullptr;
        // What feeds custom widgets, driven on the tick for the custom tiles in view; without it
        // custom faces show their loading state.
        CustomWidgetRuntime* custom = nullptr;
        // The timers' ends, alarms and controls; without it their controls do nothing.
        DeskTimers* desk = nullptr;
        // The person's events and reminders, kept fresh for the tiles in view that chose a
        // source; without it such tiles show them loading.
        CalendarHub* calendar = nullptr;
        // The speed test the tile starts and shows; without it the tile's button does nothing.
        SpeedTestService* speedTest = nullptr;
        // The quotes of shares, coins and currencies, fetched for the tiles in view; without
        // them quote faces show them loading.
        MarketServices* market = nullptr;
        // Counts app time while an app time tile is on the desktop; without it they say nothing
        // was counted.
        AppUsageService* appUsage = nullptr;
        // What kinds with state of their own do with typing, clicks, drops and being in view.
        TileBehaviours* behaviours = nullptr;
    };

    static constexpr std::chrono::milliseconds occlusionDebounce{150};

    explicit DesktopController(const Services& services, QObject* parent = nullptr);
    ~DesktopController() override;

    // Visible or hidden; each writes TickCoordinator's desktopActive.
    void show();
    void hide();
    void toggle();
    bool isVisible() const { return m_isVisible; }
    // Whether a person can see the tile now: on the desktop shown and not covered.
    bool isInView(const QUuid& id) const;
    // Marks the desktop visible without showing anything yet: the first sync shows the panels.
    void setVisibleFlag(bool visible) { m_isVisible = visible; }

    // Brings the panels in line with the grid.
    void sync();
    void advanceStacks(const QDateTime& now);
    void stepStack(const QUuid& stackID, int step);
    int activeIndex(const QUuid& stackID) const { return m_fronts.active(stackID); }
    bool isHiddenStackMember(const QUuid& id) const { return m_fronts.hidden().contains(id); }

    DisplayFollower& displayFollower() { return m_follower; }
    const DisplayFollower& displayFollower() const { return m_follower; }
    // What drawing each tile has cost in the last minute.
    PaintLedger& paintLedger() { return m_paints; }
    ThemeStore::SystemAppearance systemAppearance() const { return m_content.systemAppearance(); }

    // The tile's context menu (the caller owns it) and what it does.
    QMenu* contextMenu(const QUuid& id);
    void setWidgetSize(const QUuid& id, WidgetSize size);
    void setStackRotate(const QUuid& stackID, int seconds);
    void unstackWidget(const QUuid& id);
    // Opens an instance's page in the configuration window; set by the application.
    std::function<void(const QUuid&)> widgetSettingsOpener;

    // The drop at the end of a drag, and a click that was no drag.
    void handleDragEnded(const QUuid& draggedID);
    bool handlePlainClick(const QUuid& id, QPointF point);

    // For tests and the status menu.
    DesktopPanel* panel(const QUuid& id) const;
    PanelState* panelState(const QUuid& id) const;
    QList<QUuid> panelIDs() const;

Q_SIGNALS:
    // After every sync: the panels stand where the grid says.
    void synced();

private:
    void spawn(const WidgetInstance& instance);
    // Brings a tile's panel in line with its instance, spawning it when it has none.
    void follow(const WidgetInstance& instance);
    void applyStackVisibility();
    void resolveAllOverlaps();
    bool isTypedInto(const QString& kind) const;
    void updateDesktopActive();
    void refreshOcclusion();
    // Asks the readings for what the tiles in view show, and nothing more.
    void updateDemand();
    // Refreshes, where stale, the weather of the places the tiles in view show.
    void refreshWeather();
    // Fetches, where due, the sources of the custom tiles in view and records their histories.
    void refreshCustom();
    // Reads, where stale, the events and reminders of the calendar tiles in view.
    void refreshCalendar();
    // Asks, where stale, for the quotes the tiles in view show.
    void refreshMarket();
    // Tells the app time service which of its tiles are on the desktop.
    void followAppUsage();
    // Tells each kind's behaviour its tiles and which of them are in view, when that changed.
    void followBehaviours();
    TileBehaviour* behaviourOf(const QString& kind) const;
    // Wires a new panel's typing, focus and drops to its kind's behaviour.
    void connectBehaviour(DesktopPanel& panel, const QUuid& id, const QString& kind);
    // A behaviour's own entries at the head of a tile's context menu.
    void addBehaviourItems(QMenu& menu, const WidgetInstance& instance);
    QList<DropDecision::Tile> shownTiles(const QUuid& except) const;

    Services m_services;
    TilePlacement m_placement;
    StackFronts m_fronts;
    TileEdits m_edits;
    TileContent m_content;
    DisplayFollower m_follower;
    TileRenderer m_renderer;
    LiquidCache m_lensCache;
    LiquidRenderQueue m_lenses;
    PaintLedger m_paints;
    std::map<QUuid, DesktopTile> m_tiles;
    QHash<QString, QList<BehaviourTile>> m_behaviourTiles;
    QHash<QObject*, QUuid> m_windows;
    StackScrollGesture m_stackScroll;
    ScheduledTask m_occlusionTask;
    bool m_isVisible = false;
    // The tile being dragged: syncs leave its panel where the pointer has it.
    std::optional<QUuid> m_draggingID;
    // A sync already running: the panels it moves start none of their own.
    bool m_syncing = false;
    // The layout the overlap sweep last ran on; it runs once per change.
    QString m_sweptSignature;
};

} // namespace tw
