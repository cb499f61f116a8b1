// The composition root of the running host: builds every store and service once, in the launch
// order, wires them, and owns the desktop controller, the status item and the configuration
// window.
#pragma once

#include "config/ConfigSection.h"
#include "live/MirrorBehaviour.h"
#include "live/WebBehaviour.h"
#include "model/TileBehaviour.h"
#include "net/Endpoints.h"
#include "platform/PlatformServices.h"
#include "platform/ScheduledTask.h"
#include "updates/Release.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUuid>
#include <QWidget>

#include <memory>
#include <optional>

namespace tw {

class AmbientTiles;

class AppEnergyMeter;
class AppsBehaviour;
class ShortcutBehaviour;
class TerminalBehaviour;
class ToolboxBehaviour;
class AppSettings;
class AppUsageService;
class CalendarHub;
class CalendarSetup;
class SpeedTestSchedule;
class SpeedTestService;
class ConnectedTiles;
class ToolBehaviours;
class WorkspaceTiles;
class CalendarSubscriptions;
class CalendarWatcher;
class ConfigWindow;
struct ConfigContext;
struct FaceContext;
class Defaults;
class DesktopController;
class WallpaperBackdrop;
class DesktopWallpaper;
class CustomWidgetStore;
class FaceRegistry;
class GridStore;
class LayoutProfileStore;
class SmartLayoutCoordinator;
class SmartLayoutRuleStore;
class LockScreenController;
class MinuteCoordinator;
class NoticeService;
class PowerWatcher;
class QtHttpClient;
class CustomWidgetRuntime;
class DeskTimers;
class QtScheduler;
class Readings;
class SampleRunner;
class FileTiles;
class ScreenTopologyWatcher;
class SingleInstance;
class StatusBarController;
class ThemeStore;
class TickCoordinator;
class TopologyMemory;
class UpdateService;
class WeatherServices;
class MarketServices;
class WidgetRegistry;
class Clock;

class AppDelegate final : public QObject {
    Q_OBJECT
public:
    // "TKW_CONFIG_ONLY" = "1": only the configuration window, never a panel.
    static bool configOnlyFrom(const QByteArray& value) { return value == "1"; }
    // Where the window opens first: "TKW_CONFIG_SECTION" and "TKW_SETTINGS_PAGE", else the page
    // another part of the program left in "tarnwick.settings.page", which is then used up.
    static ConfigSelection initialConfigSelection(Defaults& defaults);
    static inline const QString settingsPageKey = QStringLiteral("tarnwick.settings.page");

    struct WindowAtLaunch {
        bool configOnly = false;
        bool firstLaunchOfVersion = false;
        bool launchedAsLoginItem = false;
        bool openWindowAtLaunch = true;
    };
    // First match: "--new-user", "--updated-user", configOnly, a new version, else a start by
    // hand with "tarnwick.openWindowAtLaunch" on.
    static bool shouldOpenWindowAtLaunch(const QStringList& arguments, const WindowAtLaunch& facts);

    // `systemClock` runs the ticks, the stores and every interval; `currentClock` is the time a
    // view first shows and may be pinned (TWK_TIME). Both must outlive the delegate.
    struct Clocks {
        const Clock& system;
        const Clock& current;
    };
    AppDelegate(Defaults& defaults, Clocks clocks, QStringList arguments,
                QObject* parent = nullptr);
    ~AppDelegate() override;

    // The launch order; call once the application object runs.
    void applicationDidFinishLaunching(std::unique_ptr<SingleInstance> instance);
    // Shows the window, at `selection` when given, else where it was.
    void showConfigWindow(const std::optional<ConfigSelection>& selection = std::nullopt);

    bool configOnly() const { return m_configOnly; }
    const ConfigSelection& initialSelection() const { return m_initialSelection; }
    DesktopController& controller() { return *m_controller; }
    GridStore& grid() { return *m_grid; }

private:
    void finishLaunching();
    void makeMainMenu();
    ConfigContext makeConfigContext();
    // The desktop's look and time, still: for tiles drawn inside the window.
    FaceContext stillContext() const;
    // Imports a ".twkwidget" file and puts its widget on the desktop; a file that cannot be used
    // is told in a notification.
    void openWidgetFile(const QString& path);
    // A new tile of `kind` at a free spot, highlighted; without room it waits in the gallery.
    void placeNewWidget(const QString& kind);
    // The notices: their feed, what they may ask of the host, and where they open the window.
    void makeNotices();
    // A widget file, a layout file or a board, as a file manager's double-click hands it over.
    void openFile(const QString& path);
    // The daily automatic backup, first 25 s after launch.
    void checkBackup();
    // The notes of the versions since the last start, in a window of their own; nothing when this
    // build ships none for them.
    void showWhatsNew(const QList<Release>& releases);

    Defaults& m_defaults;
    Clocks m_clocks;
    QStringList m_arguments;
    bool m_configOnly;
    ConfigSelection m_initialSelection;

    std::unique_ptr<QtScheduler> m_scheduler;
    std::unique_ptr<AppSettings> m_settings;
    PlatformServices m_platform;
    std::unique_ptr<MediaPlayers> m_media;
    // The one way out to the web services; before the readings, whose covers come through it.
    std::unique_ptr<QtHttpClient> m_http;
    // Before everything that reads it, after the sources it reads.
    std::unique_ptr<Readings> m_readings;
    // The weather the web brings; before the desktop.
    Endpoints m_endpoints;
    std::unique_ptr<WeatherServices> m_weather;
    // The release list, at start and daily while automatic checks are on.
    std::unique_ptr<UpdateService> m_updates;
    std::unique_ptr<MarketServices> m_market;
    std::unique_ptr<CalendarStore> m_calendarStore;
    std::unique_ptr<SampleRunner> m_calendarRunner;
    std::unique_ptr<CalendarSubscriptions> m_subscriptions;
    std::unique_ptr<CalendarSetup> m_calendarSetup;
    std::unique_ptr<CalendarWatcher> m_calendarWatcher;
    std::unique_ptr<CalendarHub> m_calendar;
    // Runs when a person starts it from its tile or on a tile's schedule; before the desktop.
    std::unique_ptr<SpeedTestService> m_speedTest;
    std::unique_ptr<SpeedTestSchedule> m_speedSchedule;
    // App time, counted while its tile is on the desktop.
    std::unique_ptr<UserPresence> m_presence;
    std::unique_ptr<AppDirectory> m_apps;
    std::unique_ptr<AppUsageService> m_appUsage;
    // The person's own widget kinds; before the catalogue and the grid, which ask it.
    std::unique_ptr<SecretStore> m_secrets;
    // GitHub and Home Assistant: their services and the behaviours of their tiles.
    std::unique_ptr<ConnectedTiles> m_connected;
    std::unique_ptr<CustomWidgetStore> m_customWidgets;
    // What feeds custom widgets, over the same client and readings.
    std::unique_ptr<CustomWidgetRuntime> m_custom;
    // Custom widget text the editor has not saved yet, kept across the window's closing.
    QHash<QUuid, QString> m_customDrafts;
    std::unique_ptr<WidgetRegistry> m_registry;
    std::unique_ptr<ThemeStore> m_theme;
    std::unique_ptr<TickCoordinator> m_ticker;
    std::unique_ptr<PowerWatcher> m_power;
    std::unique_ptr<AppEnergyMeter> m_energy;
    std::unique_ptr<MinuteCoordinator> m_minutes;
    std::unique_ptr<GridStore> m_grid;
    // The timers' ends and alarms, over the grid; before the desktop, which shows them.
    std::unique_ptr<DeskTimers> m_desk;
    std::unique_ptr<ScreenTopologyWatcher> m_watcher;
    std::unique_ptr<TopologyMemory> m_memory;
    std::unique_ptr<LayoutProfileStore> m_profiles;
    std::unique_ptr<SmartLayoutRuleStore> m_layoutRules;
    std::unique_ptr<SmartLayoutCoordinator> m_smartLayouts;
    std::unique_ptr<LockScreenController> m_lockScreen;
    std::unique_ptr<FaceRegistry> m_faces;
    std::unique_ptr<WallpaperBackdrop> m_backdrop;
    std::unique_ptr<DesktopWallpaper> m_wallpaper;
    std::unique_ptr<WebBehaviour> m_web;
    std::unique_ptr<MirrorBehaviour> m_mirror;
    std::unique_ptr<FileTiles> m_fileTiles;
    // The launchers and tools: what the session offers, then a behaviour per kind.
    std::unique_ptr<SystemActions> m_systemActions;
    std::unique_ptr<AppsBehaviour> m_appsTiles;
    std::unique_ptr<ShortcutBehaviour> m_shortcuts;
    std::unique_ptr<ToolboxBehaviour> m_toolbox;
    std::unique_ptr<TerminalBehaviour> m_terminals;
    std::unique_ptr<WorkspaceTiles> m_workspaceTiles;
    // The behaviours of kinds with state of their own, all added before the desktop, which
    // connects to each when it is made.
    TileBehaviours m_behaviours;
    std::unique_ptr<ToolBehaviours> m_tools;
    std::unique_ptr<AmbientTiles> m_ambient;
    std::unique_ptr<DesktopController> m_controller;
    // Before the status item and the window, which show its notices.
    std::unique_ptr<NoticeService> m_notices;
    std::unique_ptr<StatusBarController> m_status;
    std::unique_ptr<ConfigContext> m_configContext;
    std::unique_ptr<ConfigWindow> m_configWindow;
    std::unique_ptr<SingleInstance> m_instance;
    ScheduledTask m_deferredLaunch;
    ScheduledTask m_backupCheck;
    // Deletes itself when closed.
    QPointer<QWidget> m_whatsNew;
};

} // namespace tw
