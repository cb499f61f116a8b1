#include "app/AppDelegate.h"

#include "ambient/AmbientTiles.h"
#include "app/RememberGridSaves.h"
#include "app/SingleInstance.h"
#include "app/StatusBarController.h"
#include "app/WireEnergyModes.h"
#include "backup/AutoBackup.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/ConfigWindow.h"
#include "config/GalleryView.h"
#include "config/LayoutFileActions.h"
#include "config/WhatsNewView.h"
#include "connected/ConnectedTiles.h"
#include "custom/CustomWidgetRuntime.h"
#include "custom/CustomWidgetStore.h"
#include "desk/AppUsageService.h"
#include "desk/CalendarHub.h"
#include "desk/CalendarSetup.h"
#include "desk/DeskTimers.h"
#include "desktop/DesktopController.h"
#include "desktop/DesktopGeometry.h"
#include "desktop/DesktopWallpaper.h"
#include "desktop/LockPanePreview.h"
#include "desktop/WallpaperBackdrop.h"
#include "displays/LayoutProfileStore.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/SmartLayoutCoordinator.h"
#include "displays/SmartLayoutRuleStore.h"
#include "displays/TopologyMemory.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GlassLook.h"
#include "faces/TileRenderer.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"
#include "files/FileTiles.h"
#include "grid/GridStore.h"
#include "launch/AppsBehaviour.h"
#include "launch/ShortcutBehaviour.h"
#include "launch/TerminalBehaviour.h"
#include "launch/ToolboxBehaviour.h"
#include "live/QtCameraFeed.h"
#include "lockscreen/LockScreenController.h"
#include "look/ThemeStore.h"
#include "market/MarketServices.h"
#include "model/WidgetRegistry.h"
#include "net/QtHttpClient.h"
#include "notices/NoticeService.h"
#include "platform/AppPaths.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/PlatformServices.h"
#include "platform/QtScheduler.h"
#include "readings/AppEnergyMeter.h"
#include "readings/PoolSampleRunner.h"
#include "readings/PowerWatcher.h"
#include "readings/Readings.h"
#include "settings/AppSettings.h"
#include "speed/SpeedTestSchedule.h"
#include "speed/SpeedTestService.h"
#include "text/L.h"
#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"
#include "tools/ToolBehaviours.h"
#include "updates/ReleaseFeed.h"
#include "updates/UpdateService.h"
#include "updates/WhatsNew.h"
#include "weather/WeatherServices.h"
#include "workspace/WorkspaceTiles.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLocale>
#include <QLoggingCategory>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace tw {

Q_LOGGING_CATEGORY(lcApp, "App")

namespace {

// The file tiles ask with the desktop's own folder dialog.
QString chooseFolder(const QString& title, const QString& start) {
    return QFileDialog::getExistingDirectory(nullptr, title, start);
}

// Pictures are decoded once for the sharpest display a tile may stand on.
qreal largestPixelRatio() {
    qreal ratio = 1;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        ratio = std::max(ratio, screen->devicePixelRatio());
    }
    return ratio;
}

} // namespace

ConfigSelection AppDelegate::initialConfigSelection(Defaults& defaults) {
    QString page = QString::fromLocal8Bit(qgetenv("TKW_SETTINGS_PAGE"));
    if (page.isEmpty()) {
        page = defaults.value(settingsPageKey).toString();
    }
    defaults.remove(settingsPageKey);
    QString problem;
    const ConfigSelection selection = ConfigSelection::resolve(
        QString::fromLocal8Bit(qgetenv("TKW_CONFIG_SECTION")), page, &problem);
    if (!problem.isEmpty()) {
        qCInfo(lcApp, "%s", qPrintable(problem));
    }
    return selection;
}

bool AppDelegate::shouldOpenWindowAtLaunch(const QStringList& arguments,
                                           const WindowAtLaunch& facts) {
    if (arguments.contains(QLatin1String("--new-user")) ||
        arguments.contains(QLatin1String("--updated-user")) || facts.configOnly) {
        return true;
    }
    return facts.firstLaunchOfVersion || (!facts.launchedAsLoginItem && facts.openWindowAtLaunch);
}

AppDelegate::AppDelegate(Defaults& defaults, Clocks clocks, QStringList arguments, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_clocks(clocks)
    , m_arguments(std::move(arguments))
    , m_configOnly(configOnlyFrom(qgetenv("TKW_CONFIG_ONLY")))
    , m_initialSelection(initialConfigSelection(defaults)) {}

AppDelegate::~AppDelegate() {
    // Panels go before the stores they draw from.
    m_status.reset();
    m_smartLayouts.reset();
    m_controller.reset();
    m_configWindow.reset();
    m_desk.reset();
    delete m_whatsNew;
}

void AppDelegate::applicationDidFinishLaunching(std::unique_ptr<SingleInstance> instance) {
    QApplication::setQuitOnLastWindowClosed(false);
    m_instance = std::move(instance);
    if (m_instance) {
        connect(m_instance.get(), &SingleInstance::activationRequested, this,
                [this](const QString& section, const QString& page) {
                    if (section.isEmpty() && page.isEmpty()) {
                        showConfigWindow();
                        return;
                    }
                    QString problem;
                    showConfigWindow(ConfigSelection::resolve(section, page, &problem));
                    if (!problem.isEmpty()) {
                        qCInfo(lcApp, "%s", qPrintable(problem));
                    }
                });
        connect(m_instance.get(), &SingleInstance::openRequested, this, &AppDelegate::openFile);
    }

    m_scheduler = std::make_unique<QtScheduler>();
    m_settings = std::make_unique<AppSettings>(m_defaults);
    // The settings store is QtCore-only; the application's state reaches it from here. Only a
    // window with a title bar counts: a tile taking the keyboard leaves the desktop as it is.
    const auto takeActive = [this] {
        const QWindow* key = QGuiApplication::focusWindow();
        m_settings->setAppActive(QGuiApplication::applicationState() == Qt::ApplicationActive &&
                                 key != nullptr && !key->flags().testFlag(Qt::FramelessWindowHint));
    };
    connect(qApp, &QGuiApplication::applicationStateChanged, m_settings.get(), takeActive);
    connect(qApp, &QGuiApplication::focusWindowChanged, m_settings.get(), takeActive);
    m_platform = PlatformServices::make();
    m_media = PlatformServices::makeMediaPlayers(m_clocks.system);
    m_http = std::make_unique<QtHttpClient>(*m_scheduler);
    m_readings = std::make_unique<Readings>(
        Readings::Sources{
            .system = m_platform.system.get(),
            .power = m_platform.power.get(),
            .sensors = m_platform.sensors.get(),
            .bluetooth = m_platform.bluetooth.get(),
            .media = m_media.get(),
            .http = m_http.get(),
        },
        m_clocks.system);
    m_endpoints = Endpoints::fromEnvironment();
    m_weather = std::make_unique<WeatherServices>(WeatherServices::Services{
        .http = *m_http,
        .endpoints = m_endpoints,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .defaults = m_defaults,
        .location = m_platform.location.get(),
    });
    m_market = std::make_unique<MarketServices>(
        MarketFetch{.http = *m_http, .endpoints = m_endpoints, .clock = m_clocks.system});
    // Nothing is read from the calendars until a tile's person chooses one.
    const QString subscribed = AppPaths::appSupportDir() + QStringLiteral("/Subscriptions");
    m_calendarStore = PlatformServices::makeCalendarStore({}, {subscribed});
    m_subscriptions = std::make_unique<CalendarSubscriptions>(*m_http, subscribed);
    m_calendarSetup =
        std::make_unique<CalendarSetup>(m_defaults, *m_calendarStore, *m_subscriptions);
    m_calendarRunner = std::make_unique<PoolSampleRunner>();
    m_calendarWatcher = std::make_unique<CalendarWatcher>(*m_scheduler);
    m_calendar = std::make_unique<CalendarHub>(*m_calendarStore, *m_calendarRunner,
                                               QTimeZone::systemTimeZone(), m_subscriptions.get(),
                                               m_calendarWatcher.get());
    connect(m_calendarSetup.get(), &CalendarSetup::changed, m_calendar.get(), [this] {
        m_calendar->calendar().forceRefreshAll(m_clocks.system.now());
        m_calendar->reminders().forceRefreshAll(m_clocks.system.now());
    });
    m_speedTest = std::make_unique<SpeedTestService>(SpeedTestService::Services{
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .defaults = m_defaults,
        .endpoints = m_endpoints,
        .plan = {},
    });
    m_speedSchedule =
        std::make_unique<SpeedTestSchedule>(*m_speedTest, m_clocks.system, *m_scheduler);
    m_behaviours.add(QStringLiteral("speedtest"), m_speedSchedule.get());
    m_presence = PlatformServices::makeUserPresence(m_clocks.system, m_platform.displays.get());
    m_apps = PlatformServices::makeAppDirectory();
    m_appUsage = std::make_unique<AppUsageService>(AppUsageService::Services{
        .foreground = *m_platform.foreground,
        .presence = *m_presence,
        .apps = *m_apps,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .path = AppPaths::appSupportDir() + QStringLiteral("/app-usage.json"),
    });
    m_secrets = PlatformServices::makeSecretStore();
    m_connected = std::make_unique<ConnectedTiles>(ConnectedTiles::Services{
        .http = *m_http,
        .endpoints = m_endpoints,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .secrets = *m_secrets,
    });
    m_behaviours.add(QStringLiteral("github"), &m_connected->github());
    m_behaviours.add(QStringLiteral("smarthome"), &m_connected->smartHome());
    m_customWidgets = std::make_unique<CustomWidgetStore>(CustomWidgetStore::Services{
        .clock = m_clocks.system,
        .secrets = *m_secrets,
        .directory = AppPaths::appSupportDir(),
    });
    m_custom = std::make_unique<CustomWidgetRuntime>(*m_http, m_clocks.system, &m_readings->board(),
                                                     m_endpoints);
    if (const MachineIdentity* machine = m_platform.machine.get()) {
        m_custom->setMachine(machine->hostName(), machine->userName(),
                             machine->bootedAt(m_clocks.system.now()));
    }
    // The runtime feeds the store's widgets; a deleted one's histories go with it.
    const auto feedDefinitions = [this] { m_custom->setDefinitions(m_customWidgets->widgets()); };
    feedDefinitions();
    connect(m_customWidgets.get(), &CustomWidgetStore::widgetsChanged, m_custom.get(),
            feedDefinitions);
    connect(m_customWidgets.get(), &CustomWidgetStore::widgetRemoved, m_custom.get(),
            [this](const QString& kind) {
                if (const auto id = CustomWidgetDefinition::idFromKind(kind)) {
                    m_custom->discard(*id);
                }
            });
    m_registry = std::make_unique<WidgetRegistry>(m_customWidgets.get());
    m_theme = std::make_unique<ThemeStore>(m_defaults, m_clocks.system);
    m_ticker = std::make_unique<TickCoordinator>(*m_scheduler, m_clocks.system, m_clocks.current);
    m_minutes = std::make_unique<MinuteCoordinator>(*m_ticker);
    m_grid = std::make_unique<GridStore>(GridStore::Services{
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .registry = *m_registry,
        .defaults = &m_defaults,
        .displays = m_platform.displays.get(),
        .customHealth = m_customWidgets.get(),
    });
    m_desk = std::make_unique<DeskTimers>(DeskTimers::Services{
        .grid = *m_grid,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .sounds = *m_platform.sounds,
        .notifications = m_platform.notifications.get(),
    });
    m_ambient = std::make_unique<AmbientTiles>(AmbientTiles::Services{
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .grid = *m_grid,
        .pointer = m_platform.pointer.get(),
        .player = AmbientTiles::player(PlatformServices::silent()),
    });
    m_behaviours.add(QStringLiteral("ambientsound"), &m_ambient->sound());
    m_behaviours.add(QStringLiteral("companion"), &m_ambient->companions());
    m_watcher = std::make_unique<ScreenTopologyWatcher>(*m_platform.displays, *m_scheduler);
    m_memory = std::make_unique<TopologyMemory>(*m_watcher, m_clocks.system);
    rememberGridSaves(*m_grid, *m_memory, *m_platform.displays);
    m_lockScreen = std::make_unique<LockScreenController>(*m_platform.lockScreen, m_clocks.system,
                                                          *m_scheduler);
    m_lockScreen->start(*m_settings, [this] { return m_grid->layout().instances; });
    m_faces = std::make_unique<FaceRegistry>();
    m_web = std::make_unique<WebBehaviour>(
        WebPage::installedHelper(PlatformServices::isAdministrator()), *m_scheduler,
        *m_platform.workspace, [] { return qGuiApp->devicePixelRatio(); });
    m_behaviours.add(QStringLiteral("web"), m_web.get());
    m_mirror = std::make_unique<MirrorBehaviour>([] { return std::make_unique<QtCameraFeed>(); },
                                                 m_clocks.system,
                                                 [] { return qGuiApp->devicePixelRatio(); });
    m_behaviours.add(QStringLiteral("mirror"), m_mirror.get());
    m_workspaceTiles = std::make_unique<WorkspaceTiles>(WorkspaceTiles::Services{
        .grid = *m_grid,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .clipboard = *m_platform.clipboard,
        .directory = AppPaths::appSupportDir(),
    });
    m_workspaceTiles->addTo(m_behaviours);
    // 6. The update check: at start and daily while automatic checks are on.
    m_updates = std::make_unique<UpdateService>(UpdateService::Services{
        .http = *m_http,
        .endpoints = m_endpoints,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .defaults = m_defaults,
        .runningVersion = QCoreApplication::applicationVersion(),
        .language = QLocale().bcp47Name(),
    });
    connect(m_updates.get(), &UpdateService::newVersionFound, this, [this](const Release& release) {
        QString body = release.notes.mid(0, 3).join(QLatin1Char('\n'));
        body += (body.isEmpty() ? QString() : QStringLiteral("\n")) +
                L("updates.notify.body", QStringLiteral("Open Tarnwick’s Updates section to see "
                                                        "how to install it."));
        m_platform.notifications->notify(
            L("updates.notify.title", QStringLiteral("Tarnwick %1 is available"))
                .arg(release.version.toString()),
            body);
    });
    m_updates->start();

    // 1. The menu where the desktop has no tray is the configuration window's; it is built
    //    with the status item below.
    // 7. Displays.
    m_watcher->start();
    // 8. The power watcher, and 10. the tick interval from the mode in force.
    if (m_platform.power) {
        m_power = std::make_unique<PowerWatcher>(*m_platform.power);
    }
    wireEnergyModes(*m_settings, *m_ticker, m_power.get());
    m_energy = std::make_unique<AppEnergyMeter>(*m_platform.usage, m_clocks.system, *m_scheduler);

    m_fileTiles =
        std::make_unique<FileTiles>(FileTiles::Services{.grid = *m_grid,
                                                        .workspace = *m_platform.workspace,
                                                        .clock = m_clocks.system,
                                                        .scheduler = *m_scheduler,
                                                        .chooseFolder = chooseFolder,
                                                        .pixelRatio = largestPixelRatio()},
                                    PlatformServices::makeTrash(m_clocks.system));
    m_fileTiles->addTo(m_behaviours);

    // 12. The desktop, its glass over the desktop's own picture.
    m_backdrop = std::make_unique<WallpaperBackdrop>(m_platform.picture.get());
    m_wallpaper = std::make_unique<DesktopWallpaper>(m_platform.picture.get());
    m_tools = std::make_unique<ToolBehaviours>(*m_grid, *m_scheduler, *m_platform.clipboard,
                                               m_market.get());
    m_tools->addTo(m_behaviours);
    m_systemActions = PlatformServices::makeSystemActions();
    m_appsTiles =
        std::make_unique<AppsBehaviour>(*m_platform.workspace, *m_platform.notifications, *m_apps);
    m_behaviours.add(QStringLiteral("apps"), m_appsTiles.get());
    m_shortcuts = std::make_unique<ShortcutBehaviour>(
        *m_platform.workspace, *m_platform.notifications, *m_apps, QDir::homePath());
    m_behaviours.add(QStringLiteral("shortcut"), m_shortcuts.get());
    m_toolbox = std::make_unique<ToolboxBehaviour>(*m_systemActions, *m_scheduler,
                                                   *m_platform.notifications);
    m_behaviours.add(QStringLiteral("toolbox"), m_toolbox.get());
    m_terminals =
        std::make_unique<TerminalBehaviour>(*m_scheduler, m_clocks.system, QDir::homePath());
    m_behaviours.add(QStringLiteral("terminal"), m_terminals.get());
    m_controller = std::make_unique<DesktopController>(DesktopController::Services{
        .theme = *m_theme,
        .ticker = *m_ticker,
        .minutes = *m_minutes,
        .grid = *m_grid,
        .settings = *m_settings,
        .displays = *m_platform.displays,
        .windowing = *m_platform.windowing,
        .scheduler = *m_scheduler,
        .clock = m_clocks.system,
        .registry = *m_registry,
        .faces = *m_faces,
        .symbols = m_platform.symbols.get(),
        .watcher = m_watcher.get(),
        .memory = m_memory.get(),
        .workspace = m_platform.workspace.get(),
        .notifications = m_platform.notifications.get(),
        .colorScheme = m_platform.colorScheme.get(),
        .backdrop = m_backdrop.get(),
        .readings = m_readings.get(),
        .weather = m_weather.get(),
        .custom = m_custom.get(),
        .desk = m_desk.get(),
        .calendar = m_calendar.get(),
        .speedTest = m_speedTest.get(),
        .market = m_market.get(),
        .appUsage = m_appUsage.get(),
        .behaviours = &m_behaviours,
    });
    // A timer that ends where nobody sees it says so in a notification.
    m_desk->setInView([this](const QUuid& id) { return m_controller->isInView(id); });
    m_controller->widgetSettingsOpener = [this](const QUuid& id) {
        showConfigWindow(ConfigSelection{.widget = id});
    };

    // 11. Smart layouts, after the controller: on a settled display change the active profile's
    //     own placement must come after the topology memory's.
    m_profiles = std::make_unique<LayoutProfileStore>(m_clocks.system, *m_platform.displays,
                                                      m_grid->layout());
    m_layoutRules = std::make_unique<SmartLayoutRuleStore>(m_clocks.system);
    m_smartLayouts = std::make_unique<SmartLayoutCoordinator>(SmartLayoutCoordinator::Services{
        .profiles = *m_profiles,
        .rules = *m_layoutRules,
        .grid = *m_grid,
        .watcher = *m_watcher,
        .displays = *m_platform.displays,
        .clock = m_clocks.system,
        .scheduler = *m_scheduler,
        .foreground = m_platform.foreground.get(),
    });
    // A window alone switches profiles only by hand.
    if (!m_configOnly) {
        m_smartLayouts->start();
        connect(qApp, &QCoreApplication::aboutToQuit, m_smartLayouts.get(),
                [this] { m_smartLayouts->stop(); });
    }

    // 13. The panels.
    if (!m_configOnly) {
        m_controller->setVisibleFlag(true);
        m_controller->sync();
    }
    // Files the start was handed, as a file manager's double-click hands them.
    for (const QString& file : SingleInstance::filesToOpen(m_arguments)) {
        openFile(file);
    }
    // The first check waits until the start is over, then one a day.
    m_backupCheck = m_scheduler->singleShot(std::chrono::seconds(25), std::chrono::seconds(5), this,
                                            [this] { checkBackup(); });

    // The status item and the window come once the panels are out: a person sees the desktop
    // first, and neither is needed for it.
    m_deferredLaunch =
        m_scheduler->singleShot(std::chrono::milliseconds(0), std::chrono::milliseconds(0), this,
                                [this] { finishLaunching(); });
}

void AppDelegate::makeNotices() {
    const QString campaign = qEnvironmentVariable("TKW_CAMPAIGN_URL");
    const QString data = AppPaths::appSupportDir();
    m_notices = std::make_unique<NoticeService>(
        NoticeService::Services{.http = *m_http,
                                .clock = m_clocks.system,
                                .scheduler = *m_scheduler,
                                .defaults = m_defaults,
                                .registry = m_registry.get(),
                                .workspace = m_platform.workspace.get()},
        NoticeService::Setup{.feedUrl = NoticeService::feedURL(m_endpoints, campaign),
                             .testing = NoticeService::isTesting(campaign),
                             .cachePath = QDir(data).filePath(NoticeService::cacheFileName()),
                             .dataDirectory = data,
                             .version = QCoreApplication::applicationVersion(),
                             .language = QLocale().bcp47Name()});
    m_notices->factsProvider = [this] {
        NoticeService::Facts facts;
        for (const WidgetInstance& instance : m_grid->layout().instances) {
            facts.widgetKinds.insert(instance.kind);
            ++facts.widgetCount;
        }
        return facts;
    };
    m_notices->addWidgetHandler = [this](const QString& kind) { placeNewWidget(kind); };
    m_notices->openSettings = [this] { showConfigWindow(); };
    m_notices->copyToClipboard = [this](const QString& text) {
        m_platform.clipboard->copyText(text);
    };
    const auto root = [this] {
        return m_configWindow ? qobject_cast<ConfigRoot*>(m_configWindow->content()) : nullptr;
    };
    connect(m_notices.get(), &NoticeService::selectWidget, this, [root](const QString& kind) {
        if (ConfigRoot* r = root()) {
            r->selectKind(kind);
        }
    });
    connect(m_notices.get(), &NoticeService::openPane, this, [this](const QString& pane) {
        if (const auto section = configSectionFromRawValue(pane)) {
            showConfigWindow(ConfigSelection{.section = section, .page = {}, .widget = {}});
        } else if (const auto holder = sectionOfPage(pane)) {
            showConfigWindow(ConfigSelection{.section = holder, .page = pane, .widget = {}});
        } else {
            qCInfo(lcApp, "a notice names no pane of this window: %s", qUtf8Printable(pane));
        }
    });
    connect(m_notices.get(), &NoticeService::openGuide, this, [root] {
        if (ConfigRoot* r = root()) {
            r->showGuide();
        }
    });
}

void AppDelegate::finishLaunching() {
    makeNotices();
    // 12. The status item.
    m_status = std::make_unique<StatusBarController>(
        *m_controller, *m_grid, [this] { showConfigWindow(); },
        [this] {
            showConfigWindow(ConfigSelection{.section = ConfigSection::updates, .page = {}});
            // With a newer version known the section already says how to get it.
            if (!m_updates->status().available()) {
                m_updates->checkNow();
            }
        });
    m_status->setNotices(m_notices.get(), m_platform.symbols.get());
    m_notices->start();
    m_status->setUpdateService(m_updates.get());

    // The very first start: once its window closes, the status item says what it is for.
    if (!AppSettings::hasLaunchedBefore(m_defaults)) {
        m_defaults.setValue(StatusBarController::hintPendingKey, true);
    }
    // 14. The window.
    const QString previousVersion = AppSettings::lastLaunchedVersion(m_defaults);
    const WindowAtLaunch facts{
        .configOnly = m_configOnly,
        .firstLaunchOfVersion = AppSettings::checkAndRecordUpdateLaunch(
            m_defaults, QCoreApplication::applicationVersion()),
        .launchedAsLoginItem = m_platform.loginItem->startedAtLogin(m_arguments),
        .openWindowAtLaunch = m_settings->openWindowAtLaunch(),
    };
    if (facts.firstLaunchOfVersion) {
        WhatsNew::recordUpdate(m_defaults, previousVersion);
    }
    if (shouldOpenWindowAtLaunch(m_arguments, facts) || WhatsNew::isPending(m_defaults)) {
        showConfigWindow(m_initialSelection);
    } else {
        qCInfo(lcApp, "launched quietly (login item or window-at-launch off)");
    }
    if (WhatsNew::isPending(m_defaults)) {
        showWhatsNew(WhatsNew::pendingNotes(m_defaults, ReleaseFeed::shipped(QLocale().bcp47Name()),
                                            QCoreApplication::applicationVersion()));
        WhatsNew::markShown(m_defaults);
    }
}

void AppDelegate::showWhatsNew(const QList<Release>& releases) {
    if (releases.isEmpty()) {
        return;
    }
    auto* view = new WhatsNewView(releases, QCoreApplication::applicationVersion(),
                                  m_platform.colorScheme->colorScheme());
    view->setAttribute(Qt::WA_DeleteOnClose);
    connect(view, &WhatsNewView::done, view, &QWidget::close);
    // One at a time: a second opening replaces the first.
    delete m_whatsNew;
    m_whatsNew = view;
    view->show();
    view->raise();
    view->activateWindow();
}

void AppDelegate::showConfigWindow(const std::optional<ConfigSelection>& selection) {
    if (!m_status) {
        // Asked for before launch finished (a second start at once): launch finishing shows it.
        m_deferredLaunch.cancel();
        finishLaunching();
        if (m_configWindow) {
            return;
        }
    }
    if (!m_configWindow) {
        m_configContext = std::make_unique<ConfigContext>(makeConfigContext());
        m_configWindow = std::make_unique<ConfigWindow>(*m_scheduler, [this]() -> QWidget* {
            auto* root = new ConfigRoot(*m_configContext, m_platform.colorScheme->colorScheme());
            connect(m_platform.colorScheme.get(), &ColorSchemeWatcher::colorSchemeChanged, root,
                    &ConfigRoot::setColorScheme);
            return root;
        });
        // The previews live on the one tick while the window is on screen, and only then.
        connect(m_configWindow.get(), &ConfigWindow::visibilityChanged, m_settings.get(),
                [this](bool visible) {
                    m_settings->setConfigWindowVisible(visible);
                    m_ticker->setPreviewActive(visible);
                });
        connect(m_configWindow.get(), &ConfigWindow::closed, this, [this] {
            m_energy->windowClosed(m_clocks.system.uptime());
            m_status->showHintIfPending(m_defaults, *m_platform.notifications);
        });
        // Covered by other windows, it is as good as closed.
        m_platform.windowing->watchCoverage(m_configWindow->windowHandle());
        connect(m_platform.windowing.get(), &DesktopWindowing::coveredChanged, m_configWindow.get(),
                [this](QObject* window, bool covered) {
                    if (window == m_configWindow->windowHandle()) {
                        m_configWindow->setCovered(covered);
                    }
                });
        makeMainMenu();
    }
    if (!m_configWindow->isVisible()) {
        m_energy->windowOpened(m_clocks.system.uptime());
    }
    m_configWindow->present();
    if (selection) {
        if (auto* root = qobject_cast<ConfigRoot*>(m_configWindow->content())) {
            root->select(*selection);
        }
    }
}

void AppDelegate::checkBackup() {
    AutoBackup(LayoutBackup::Setup{.directory = AppPaths::appSupportDir(),
                                   .defaults = m_defaults,
                                   .appVersion = QCoreApplication::applicationVersion()})
        .runIfDue(m_clocks.system.now());
    m_backupCheck = m_scheduler->singleShot(AutoBackup::interval, std::chrono::minutes(10), this,
                                            [this] { checkBackup(); });
}

void AppDelegate::openFile(const QString& path) {
    if (!LayoutFileActions::opens(path)) {
        openWidgetFile(path);
        return;
    }
    // The offer waits for the person; it must not run inside the hand-over that brought the file,
    // whose socket goes away meanwhile.
    QMetaObject::invokeMethod(
        this,
        [this, path] {
            showConfigWindow(
                ConfigSelection{.section = ConfigSection::layouts, .page = {}, .widget = {}});
            LayoutFileActions(*m_configContext).openFile(path, m_configWindow.get());
        },
        Qt::QueuedConnection);
}

void AppDelegate::openWidgetFile(const QString& path) {
    const auto imported = m_customWidgets->importWidget(path);
    if (const auto* error = std::get_if<CustomWidgetStore::ImportError>(&imported)) {
        qCInfo(lcApp, "cannot import %s: %s", qUtf8Printable(path),
               qUtf8Printable(error->message()));
        m_platform.notifications->notify(CustomWidgetStore::ImportError::title(), error->message());
        return;
    }
    placeNewWidget(std::get<CustomWidgetDefinition>(imported).kind());
}

void AppDelegate::placeNewWidget(const QString& kind) {
    const std::optional<WidgetDefinition> definition = m_registry->definition(kind);
    const WidgetSize size = definition ? definition->metadata.defaultSize : WidgetSize::small;
    const auto spot = m_grid->freeSpot(kind, size, std::nullopt);
    // Without room it waits in the gallery like any other kind.
    if (const auto added = spot ? m_grid->addFree(kind, size, std::nullopt, spot) : std::nullopt) {
        m_grid->highlight(added->id);
    }
}

FaceContext AppDelegate::stillContext() const {
    FaceContext base;
    base.theme = m_theme->themed();
    base.glass = GlassLook::from(*m_theme, m_controller->systemAppearance());
    base.now = m_clocks.current.now();
    base.pace = AnimationPace::paused();
    base.symbols = m_platform.symbols.get();
    base.readings = &m_readings->board();
    base.weather = &m_weather->board();
    base.custom = &m_custom->board();
    base.calendar = &m_calendar->board();
    base.speedTest = &m_speedTest->board();
    base.market = &m_market->board();
    base.appUsage = &m_appUsage->board();
    return base;
}

ConfigContext AppDelegate::makeConfigContext() {
    ConfigContext context{
        .settings = *m_settings,
        .theme = *m_theme,
        .defaults = m_defaults,
        .loginItem = m_platform.loginItem.get(),
        .lockScreenUnavailable = m_platform.lockScreen->unavailableReason().value_or(QString()),
        .hapticsUnavailable = PlatformServices::wording().noHaptics,
        .dockIconUnavailable = PlatformServices::wording().noDockIcon,
        .displays = {},
        .version = QCoreApplication::applicationVersion(),
        .dataDirectory = AppPaths::appSupportDir(),
        .hasTray = m_status->hasTray(),
    };
    for (const ScreenInfo& screen : m_platform.displays->screens()) {
        context.displays.append({screen.id, screen.name});
    }
    context.makeGallery = [this]() -> QWidget* {
        auto* gallery = new GalleryView(*m_faces, *m_platform.symbols, m_clocks.system, nullptr,
                                        m_registry.get());
        gallery->setTheme(m_theme->themed());
        // Previews wear the glass the desktop's tiles wear.
        gallery->setGlass(GlassLook::from(*m_theme, m_controller->systemAppearance()));
        gallery->followTicker(*m_ticker);
        gallery->setReadings(m_readings.get());
        gallery->setCustomBoard(&m_custom->board());
        connect(m_custom.get(), &CustomWidgetRuntime::boardChanged, gallery,
                &GalleryView::customBoardChanged);
        gallery->setAddHandler([this](const QString& kind, WidgetSize size) {
            const auto spot = m_grid->freeSpot(kind, size, std::nullopt);
            if (!spot) {
                return GalleryView::AddOutcome::NoRoom;
            }
            const auto added = m_grid->addFree(kind, size, std::nullopt, spot);
            if (!added) {
                return GalleryView::AddOutcome::AtMaximum;
            }
            m_grid->highlight(added->id);
            return GalleryView::AddOutcome::Added;
        });
        gallery->setPlacedCount(
            [this](const QString& kind) { return m_grid->instanceCount(kind); });
        connect(m_grid.get(), &GridStore::layoutChanged, gallery, &GalleryView::refreshLimits);
        return gallery;
    };
    context.wallpaperTheme = [this] { return m_wallpaper->currentTheme(); };
    context.calendarSetup = m_calendarSetup.get();
    context.calendarSources = [this](const QString& kind) {
        QList<WidgetOption::Choice> choices;
        if (kind == QLatin1String("nowplaying")) {
            // Those followed now: the players of a music tile in view.
            for (const MediaPlayerState& player :
                 m_media != nullptr ? m_media->players() : QList<MediaPlayerState>()) {
                const WidgetOption::Choice choice{player.source.name, player.source.name};
                if (!player.source.name.isEmpty() && !choices.contains(choice)) {
                    choices.append(choice);
                }
            }
            return choices;
        }
        // Folder names only, no file is parsed: quick enough for the page to ask as it opens.
        const QList<CalendarList> lists = kind == QLatin1String("reminders")
                                              ? m_calendarStore->reminderLists()
                                              : m_calendarStore->calendars();
        for (const CalendarList& list : lists) {
            choices.append({list.id, list.title});
        }
        return choices;
    };
    context.clearAppUsage = [this] { m_appUsage->clear(); };
    context.connected = m_connected.get();
    context.installedApps = [this] { return m_apps->applications(); };
    context.searchCities = [this](const QString& text, const QObject* requester,
                                  ConfigContext::CitiesFound done) {
        m_weather->searchCities(text, requester, std::move(done));
    };
    context.checkQuote = [this](const QString& kind, const QString& key, const QString& text,
                                const WidgetSettings& settings, const QObject* requester,
                                std::function<void(const QuoteCheck&)> done) {
        m_market->check(kind, key, text, settings, m_clocks.system.now(), requester,
                        std::move(done));
    };
    context.suggestQuotes = [this](const QString& kind, const QString& text,
                                   const QObject* requester, ConfigContext::QuotesFound done) {
        m_market->suggest(kind, text, requester, std::move(done));
    };
    context.relaunch = [] {
        const std::unique_ptr<Relauncher> relauncher = PlatformServices::makeRelauncher();
        // The files this start was handed have been opened; the next start must not open them.
        QStringList arguments = QCoreApplication::arguments().mid(1);
        arguments.removeIf(&SingleInstance::namesFileToOpen);
        AppSettings::relaunch(*relauncher, arguments);
    };
    context.clock = &m_clocks.system;
    context.desktopFrame = [this] {
        const QList<ScreenInfo> screens = m_platform.displays->screens();
        return screens.isEmpty() ? QRectF(Metrics::fallbackScreen) : screens.first().visibleFrame;
    };
    // The preview stands for the main display over its own picture, or a built-in one.
    auto pane = std::make_shared<std::optional<LockPanePreview>>();
    context.paintLockPane = [this, pane](QPainter& painter, const QRectF& rect) {
        const QList<ScreenInfo> screens = m_platform.displays->screens();
        const QRectF display = screens.isEmpty() ? QRectF(0, 0, 1440, 900) : screens.first().frame;
        if (!*pane) {
            const std::optional<GlassBackdrop> behind = m_backdrop->behind(display.toAlignedRect());
            pane->emplace(
                behind ? behind->sharp
                       : WallpaperRenderer::render(*Wallpaper::find(QStringLiteral("lagoon")),
                                                   display.size().toSize()),
                display.size());
        }
        FaceContext base = stillContext();
        // The pane wears the window's shade, not the tiles'.
        base.glass.shade = m_platform.colorScheme->colorScheme() == ColorScheme::Light
                               ? GlassLook::Shade::Light
                               : GlassLook::Shade::Dark;
        (*pane)->paint(painter, rect, m_grid->layout().instances,
                       m_platform.lockScreen->unavailableReason(), base, *m_faces);
    };
    context.grid = m_grid.get();
    context.registry = m_registry.get();
    auto renderer = std::make_shared<TileRenderer>();
    context.paintTile = [this, renderer](QPainter& painter, const QRectF& rect,
                                         const WidgetInstance& instance) {
        const auto definition = m_registry->definition(instance.kind);
        if (!definition) {
            return;
        }
        FaceContext base = stillContext();
        // The tile's own content, not the gallery's samples: a countdown without a date says so.
        base.surface = SurfaceFlags{};
        FaceContext face = base.sizedFor(definition->metadata, instance);
        face.devicePixelRatio = painter.device()->devicePixelRatioF();
        renderer->paint(painter, rect, m_faces->face(instance.kind), face);
    };
    context.ticker = m_ticker.get();
    context.resizeWidget = [this](const QUuid& id, WidgetSize size) {
        m_controller->setWidgetSize(id, size);
    };
    context.tileFits = [this](const QSizeF& tile) {
        return DesktopGeometry::fits(m_platform.displays->screens(), tile);
    };
    context.cost = [this] {
        ConfigContext::Cost cost;
        const std::chrono::nanoseconds uptime = m_clocks.system.uptime();
        for (const PaintLedger::Cost& tile : m_controller->paintLedger().lastMinute(uptime)) {
            const std::optional<WidgetInstance> instance = m_grid->instance(tile.id);
            const auto definition = m_registry->definition(instance ? instance->kind : QString());
            cost.tiles.append({definition ? definition->metadata.displayName
                                          : tile.id.toString(QUuid::WithoutBraces),
                               std::chrono::duration<double, std::milli>(tile.spent).count(),
                               tile.paints});
        }
        return cost;
    };
    context.energy = m_energy.get();
    context.power = m_power.get();
    context.scheduler = m_scheduler.get();
    context.smartLayouts = m_smartLayouts.get();
    context.undo = [this] { m_grid->undo(); };
    context.redo = [this] { m_grid->redo(); };
    context.open = [this](const QUrl& url) { return m_platform.workspace->open(url).isSuccess(); };
    context.notices = m_notices.get();
    context.symbols = m_platform.symbols.get();
    context.customWidgets = m_customWidgets.get();
    context.customRuntime = m_custom.get();
    context.customDrafts = &m_customDrafts;
    context.faces = m_faces.get();
    context.faceBase = [this] { return stillContext(); };
    context.updates = m_updates.get();
    context.installation = PlatformServices::installation();
    context.showWhatsNew = [this] {
        const SemanticVersion running =
            SemanticVersion::parse(QCoreApplication::applicationVersion())
                .value_or(SemanticVersion{});
        QList<Release> notes;
        for (const Release& release : ReleaseFeed::shipped(QLocale().bcp47Name()).releases) {
            if (release.version == running) {
                notes.append(release);
            }
        }
        showWhatsNew(notes);
    };
    return context;
}

// Where no tray exists the status menu stands in the window's menu bar, so that hiding the
// tiles and quitting stay within reach.
void AppDelegate::makeMainMenu() {
    if (m_status->hasTray()) {
        return;
    }
    QMenuBar* bar = m_configWindow->menuBar();
    QMenu* menu = bar->addMenu(QStringLiteral("Tarnwick"));
    m_status->attach(*menu);
    bar->setVisible(true);
}

} // namespace tw
