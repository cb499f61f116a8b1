#include "desktop/DesktopController.h"

#include "custom/CustomWidgetRuntime.h"
#include "desk/AppUsageService.h"
#include "desk/CalendarHub.h"
#include "desk/DeskTimers.h"
#include "desktop/PanelContextMenu.h"
#include "faces/ActivityFace.h"
#include "faces/FaceRegistry.h"
#include "grid/GridStore.h"
#include "grid/RectEdges.h"
#include "market/MarketServices.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"
#include "platform/Clock.h"
#include "platform/DesktopWindowing.h"
#include "platform/Displays.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "readings/MediaNowPlayingService.h"
#include "readings/Readings.h"
#include "settings/AppSettings.h"
#include "speed/SpeedTestService.h"
#include "tick/TickCoordinator.h"
#include "weather/WeatherServices.h"

#include <QAction>
#include <QLoggingCategory>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSet>
#include <QWindow>

#include <cmath>
#include <utility>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcClicks, "Desktop")

using namespace std::chrono_literals;

constexpr double margin = TilePlacement::panelMargin;
const QString speedTestKind = QStringLiteral("speedtest");

} // namespace

DesktopController::DesktopController(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_placement(services.grid, services.displays, services.registry)
    , m_fronts(services.grid, services.clock)
    , m_edits(services.grid, m_placement, m_fronts)
    , m_content({.theme = services.theme,
                 .settings = services.settings,
                 .ticker = services.ticker,
                 .minutes = services.minutes,
                 .registry = services.registry,
                 .faces = services.faces,
                 .symbols = services.symbols,
                 .colorScheme = services.colorScheme,
                 .readings = services.readings ? &services.readings->board() : nullptr,
                 .weather = services.weather ? &services.weather->board() : nullptr,
                 .custom = services.custom ? &services.custom->board() : nullptr,
                 .desk = services.desk ? &services.desk->board() : nullptr,
                 .calendar = services.calendar ? &services.calendar->board() : nullptr,
                 .speedTest = services.speedTest ? &services.speedTest->board() : nullptr,
                 .market = services.market ? &services.market->board() : nullptr,
                 .appUsage = services.appUsage ? &services.appUsage->board() : nullptr,
                 .behaviours = services.behaviours,
                 .scheduler = &services.scheduler,
                 .clock = &services.clock})
    , m_follower({.displays = services.displays,
                  .scheduler = services.scheduler,
                  .grid = services.grid,
                  .watcher = services.watcher,
                  .memory = services.memory})
    , m_lenses(m_lensCache, services.scheduler) {
    connect(&m_services.grid, &GridStore::layoutChanged, this, [this] {
        if (!m_edits.isWriting()) {
            sync();
        }
    });
    // The ring around a tile just added; the store clears it by itself.
    connect(&m_services.grid, &GridStore::highlightedIDChanged, this, [this] {
        const QUuid highlighted = m_services.grid.highlightedID();
        for (auto& [id, tile] : m_tiles) {
            tile.panel->setHighlight(id == highlighted ? 1.0 : 0.0);
        }
    });
    connect(&m_services.ticker, &TickCoordinator::nowChanged, this,
            [this](const QDateTime& now) { advanceStacks(now); });
    if (Readings* readings = m_services.readings) {
        // Readings go by the system's clock: a pinned time would hold them still.
        connect(&m_services.ticker, &TickCoordinator::nowChanged, readings,
                [this, readings] { readings->refresh(m_services.clock.now()); });
        connect(readings, &Readings::boardChanged, this, [this](ReadingFeeds changed) {
            for (auto& [id, tile] : m_tiles) {
                if (tile.feeds.testAnyFlags(changed) && tile.panel->isVisible() &&
                    !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (WeatherServices* weather = m_services.weather) {
        connect(&m_services.ticker, &TickCoordinator::nowChanged, weather,
                [this] { refreshWeather(); });
        connect(weather, &WeatherServices::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (!tile.showsWeather) {
                    continue;
                }
                // A new forecast may bring another sky, which moves at its own pace.
                m_content.applyPace(tile);
                if (tile.panel->isVisible() && !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (m_services.behaviours != nullptr) {
        for (const QString& kind : m_services.behaviours->kinds()) {
            connect(m_services.behaviours->find(kind), &TileBehaviour::changed, this,
                    [this, kind](const QUuid& changed) {
                        for (auto& [id, tile] : m_tiles) {
                            if (tile.instance.kind != kind ||
                                (!changed.isNull() && id != changed)) {
                                continue;
                            }
                            m_content.applyPace(tile);
                            if (tile.panel->isVisible() && !tile.state->occluded()) {
                                tile.panel->contentChanged();
                            }
                        }
                    });
            connect(m_services.behaviours->find(kind), &TileBehaviour::keysDone, this,
                    [this](const QUuid& id) {
                        if (DesktopPanel* done = panel(id)) {
                            done->clearFocus();
                        }
                    });
        }
    }
    if (CalendarHub* calendar = m_services.calendar) {
        connect(&m_services.ticker, &TickCoordinator::nowChanged, calendar,
                [this] { refreshCalendar(); });
        connect(calendar, &CalendarHub::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (tile.showsCalendar && tile.panel->isVisible() && !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (MarketServices* market = m_services.market) {
        connect(&m_services.ticker, &TickCoordinator::nowChanged, market,
                [this] { refreshMarket(); });
        connect(market, &MarketServices::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (!tile.market.isEmpty() && tile.panel->isVisible() && !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (AppUsageService* appUsage = m_services.appUsage) {
        connect(&m_services.ticker, &TickCoordinator::nowChanged, appUsage,
                &AppUsageService::refresh);
        connect(appUsage, &AppUsageService::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (tile.instance.kind == QLatin1String("appusage") && tile.panel->isVisible() &&
                    !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (CustomWidgetRuntime* custom = m_services.custom) {
        connect(&m_services.ticker, &TickCoordinator::nowChanged, custom,
                [this] { refreshCustom(); });
        connect(custom, &CustomWidgetRuntime::boardChanged, this, [this] {
            bool feedsChanged = false;
            for (auto& [id, tile] : m_tiles) {
                if (!CustomWidgetDefinition::isCustom(tile.instance.kind)) {
                    continue;
                }
                feedsChanged = m_content.takeCustomFeeds(tile) || feedsChanged;
                if (tile.panel->isVisible() && !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
            if (feedsChanged) {
                updateDemand();
            }
        });
    }
    if (DeskTimers* desk = m_services.desk) {
        // A ringing timer flashes; one that falls silent stops.
        connect(desk, &DeskTimers::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (DeskTimers::isDeskKind(tile.instance.kind) && tile.panel->isVisible()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    if (SpeedTestService* speedTest = m_services.speedTest) {
        connect(speedTest, &SpeedTestService::boardChanged, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                if (tile.instance.kind == speedTestKind && tile.panel->isVisible() &&
                    !tile.state->occluded()) {
                    tile.panel->contentChanged();
                }
            }
        });
    }
    connect(&m_follower, &DisplayFollower::syncWanted, this, [this] { sync(); });
    connect(&m_follower, &DisplayFollower::veilChanged, this, [this](bool veiled) {
        for (auto& [id, tile] : m_tiles) {
            tile.panel->fadeTo(veiled ? 0.0 : 1.0);
        }
        if (!veiled) {
            refreshOcclusion();
        }
    });
    connect(&m_services.windowing, &DesktopWindowing::coveredChanged, this,
            [this](QObject* window, bool covered) {
                const auto id = m_windows.constFind(window);
                if (id == m_windows.cend() || m_tiles.count(*id) == 0) {
                    return;
                }
                m_tiles.at(*id).covered = covered;
                m_occlusionTask.cancel();
                m_occlusionTask = m_services.scheduler.singleShot(occlusionDebounce, 50ms, this,
                                                                  [this] { refreshOcclusion(); });
            });
    connect(&m_content, &TileContent::lookChanged, this, [this] {
        for (auto& [id, tile] : m_tiles) {
            m_content.refresh(tile);
        }
    });
    for (auto signal : {&AppSettings::effectiveEnergyModeChanged, &AppSettings::appActiveChanged}) {
        connect(&m_services.settings, signal, this, [this] {
            for (auto& [id, tile] : m_tiles) {
                m_content.applyPace(tile);
            }
        });
    }
}

DesktopController::~DesktopController() {
    m_tiles.clear();
    m_services.ticker.setActive(false);
}

void DesktopController::show() {
    m_isVisible = true;
    sync();
}

void DesktopController::hide() {
    m_isVisible = false;
    for (auto& [id, tile] : m_tiles) {
        tile.panel->hide();
    }
    updateDesktopActive();
    updateDemand();
}

void DesktopController::toggle() {
    if (m_isVisible) {
        hide();
    } else {
        show();
    }
}

void DesktopController::updateDesktopActive() {
    m_services.ticker.setActive(m_isVisible && !m_tiles.empty());
}

void DesktopController::sync() {
    if (m_syncing) {
        return;
    }
    {
        QScopedValueRollback<bool> syncing(m_syncing, true);
        m_edits.placeUnpositioned();
        const QList<WidgetInstance> wanted = m_placement.onDesktop();
        QSet<QUuid> ids;
        for (const WidgetInstance& instance : wanted) {
            ids.insert(instance.id);
        }
        std::erase_if(m_tiles, [&](const auto& item) {
            const bool gone = !ids.contains(item.first);
            if (gone) {
                m_windows.remove(static_cast<QObject*>(item.second.panel->windowHandle()));
                item.second.panel->hide();
            }
            return gone;
        });
        for (const WidgetInstance& instance : wanted) {
            follow(instance);
        }
        if (!m_draggingID && m_sweptSignature != m_placement.signature()) {
            resolveAllOverlaps();
        }
        applyStackVisibility();
        updateDesktopActive();
        followAppUsage();
        followBehaviours();
    }
    Q_EMIT synced();
}

void DesktopController::follow(const WidgetInstance& instance) {
    auto it = m_tiles.find(instance.id);
    if (it == m_tiles.end()) {
        spawn(instance);
        return;
    }
    DesktopTile& tile = it->second;
    const WidgetInstance before = std::exchange(tile.instance, instance);
    const QSizeF size = TilePlacement::windowSize(instance);
    if (size != QSizeF(tile.panel->size())) {
        tile.panel->setContentSize(size);
    }
    if (before.kind != instance.kind || before.size != instance.size ||
        before.settings != instance.settings) {
        m_content.refresh(tile);
    }
    if (m_draggingID != instance.id && !tile.panel->isSliding()) {
        tile.panel->setFrameOrigin(m_placement.origin(instance));
    }
}

bool DesktopController::isTypedInto(const QString& kind) const {
    const auto definition = m_services.registry.definition(kind);
    const TileBehaviour* behaviour = behaviourOf(kind);
    return (definition && definition->metadata.typedInto) ||
           (behaviour != nullptr && behaviour->takesKeys());
}

TileBehaviour* DesktopController::behaviourOf(const QString& kind) const {
    return m_services.behaviours != nullptr ? m_services.behaviours->find(kind) : nullptr;
}

void DesktopController::connectBehaviour(DesktopPanel& panel, const QUuid& id,
                                         const QString& kind) {
    TileBehaviour* behaviour = behaviourOf(kind);
    if (behaviour == nullptr) {
        return;
    }
    // The instance as the grid has it at the moment of the event, not as it was at spawn.
    const auto current = [this, id] { return m_services.grid.instance(id); };
    panel.onKey = [behaviour, current](const TileBehaviour::Key& key) {
        const auto instance = current();
        return instance && behaviour->key(*instance, key);
    };
    panel.onFocusChange = [behaviour, current](bool focused) {
        if (const auto instance = current()) {
            behaviour->focusChanged(*instance, focused);
        }
    };
    if (behaviour->takesDrops()) {
        panel.setAcceptDrops(true);
        panel.acceptsDrop = [behaviour, current](const QMimeData& data) {
            const auto instance = current();
            return instance && behaviour->acceptsDrop(*instance, data);
        };
        panel.onDrop = [behaviour, current](const QMimeData& data) {
            const auto instance = current();
            return instance && behaviour->drop(*instance, data);
        };
    }
}

void DesktopController::spawn(const WidgetInstance& instance) {
    const auto focus = isTypedInto(instance.kind) ? DesktopWindowing::Focus::WhenClicked
                                                  : DesktopWindowing::Focus::Never;
    DesktopTile tile;
    tile.instance = instance;
    tile.state = std::make_unique<PanelState>();
    tile.panel = std::make_unique<DesktopPanel>(instance.id, m_services.windowing, focus,
                                                m_renderer, m_services.clock);
    DesktopPanel* panel = tile.panel.get();
    const QUuid id = instance.id;
    const QSizeF size = TilePlacement::windowSize(instance);
    panel->resize(static_cast<int>(std::lround(size.width())),
                  static_cast<int>(std::lround(size.height())));
    panel->setFrameOrigin(m_placement.origin(instance));
    panel->setBackdropSource(m_services.backdrop, &m_lenses);
    panel->onPainted = [this, id](std::chrono::nanoseconds spent) {
        m_paints.record(id, spent, m_services.clock.uptime());
    };

    panel->snapCandidates = [this, id] {
        QList<QRectF> rects;
        for (const DropDecision::Tile& other : shownTiles(id)) {
            rects.append(other.rect);
        }
        return rects;
    };
    panel->snapBounds = [this](const QRectF& rect) { return m_placement.bounds(rect); };
    panel->moveNeedsShift = [this] { return m_services.settings.moveNeedsShift(); };
    panel->onUserDrag = [this, id] { m_draggingID = id; };
    panel->onDragEnded = [this, id] { handleDragEnded(id); };
    // Whatever moved the tile while it slid, it ends where the grid says.
    connect(panel, &DesktopPanel::slideFinished, this, [this] { sync(); });
    panel->onPlainClick = [this, id](QPointF point) { return handlePlainClick(id, point); };
    panel->contextMenuProvider = [this, id] { return contextMenu(id); };
    panel->onScroll = [this, id](const StackScrollGesture::Event& event) {
        const auto member = m_services.grid.instance(id);
        if (!member || !member->stackID) {
            return false;
        }
        if (const auto step = m_stackScroll.step(event)) {
            stepStack(*member->stackID, *step);
        }
        return true;
    };
    PanelState* state = tile.state.get();
    panel->onHoverChange = [state](bool hovering) { state->setHovering(hovering); };
    for (auto signal : {&PanelState::hoveringChanged, &PanelState::occludedChanged}) {
        connect(state, signal, panel, [this, id] { m_content.applyPace(m_tiles.at(id)); });
    }
    connectBehaviour(*panel, id, instance.kind);
    m_windows.insert(static_cast<QObject*>(panel->windowHandle()), id);
    m_content.refresh(m_tiles.emplace(id, std::move(tile)).first->second);
}

// The tiles on show but `id`, as their panels stand: what a drag snaps to and a drop lands on.
QList<DropDecision::Tile> DesktopController::shownTiles(const QUuid& except) const {
    QList<DropDecision::Tile> shown;
    const QSet<QUuid> hidden = m_fronts.hidden();
    for (const auto& [id, tile] : m_tiles) {
        if (id != except && !hidden.contains(id) && tile.panel->isVisible()) {
            shown.append({id, tile.instance.size, tile.panel->tileRect()});
        }
    }
    return shown;
}

void DesktopController::resolveAllOverlaps() {
    for (const auto& move : m_edits.sweep()) {
        DesktopTile& tile = m_tiles.at(move.first);
        tile.instance = m_services.grid.instance(move.first).value_or(tile.instance);
        if (!tile.panel->isSliding()) {
            tile.panel->setFrameOrigin(m_placement.origin(tile.instance));
        }
    }
    m_sweptSignature = m_placement.signature();
}

void DesktopController::applyStackVisibility() {
    const auto stacks = m_fronts.stacks();
    const QSet<QUuid> hidden = m_fronts.hidden();
    for (auto& [id, tile] : m_tiles) {
        const auto stackID = tile.instance.stackID;
        const auto count = stackID ? static_cast<int>(stacks.value(*stackID).size()) : 0;
        tile.panel->setStackIndicator(count > 0 ? m_fronts.active(*stackID) : 0, count);
        const bool shown = m_isVisible && !hidden.contains(id);
        if (shown && !tile.panel->isVisible()) {
            m_content.reseed(tile);
            tile.panel->show();
        } else if (!shown && tile.panel->isVisible()) {
            tile.panel->hide();
        }
    }
    updateDemand();
}

void DesktopController::advanceStacks(const QDateTime& now) {
    if (!m_isVisible || m_draggingID) {
        return;
    }
    const auto held = [this](const QUuid& member) {
        const PanelState* state = panelState(member);
        return state != nullptr && state->hovering();
    };
    if (m_fronts.advance(now, held)) {
        applyStackVisibility();
    }
}

void DesktopController::stepStack(const QUuid& stackID, int step) {
    if (m_fronts.step(stackID, step)) {
        applyStackVisibility();
    }
}

void DesktopController::refreshOcclusion() {
    if (m_follower.isVeiled()) {
        return;
    }
    for (auto& [id, tile] : m_tiles) {
        m_content.takeCovered(tile);
    }
    updateDemand();
}

void DesktopController::updateDemand() {
    // A weather or custom tile just come into view is served without waiting for the next tick.
    followBehaviours();
    refreshWeather();
    refreshCustom();
    refreshCalendar();
    refreshMarket();
    Readings* readings = m_services.readings;
    if (readings == nullptr) {
        return;
    }
    ReadingFeeds wanted;
    QString preferredPlayer;
    for (const auto& [id, tile] : m_tiles) {
        if (tile.panel->isVisible() && !tile.state->occluded()) {
            wanted |= tile.feeds;
            if (preferredPlayer.isEmpty() && tile.instance.kind == QLatin1String("nowplaying")) {
                preferredPlayer = tile.instance.settings.value_or(WidgetSettings())
                                      .value(QStringLiteral("player"));
            }
        }
    }
    // One player is shown at a time: the first music tile that names one decides.
    if (readings->nowPlaying() != nullptr) {
        readings->nowPlaying()->setPreferred(preferredPlayer);
    }
    const bool gained = (wanted & ~readings->demand()) != ReadingFeeds();
    readings->setDemand(wanted);
    // A tile just come into view shows its figures without waiting for the next tick.
    if (gained) {
        readings->refresh(m_services.clock.now());
    }
}

void DesktopController::refreshWeather() {
    WeatherServices* weather = m_services.weather;
    if (weather == nullptr) {
        return;
    }
    QList<WidgetSettings> inView;
    for (const auto& [id, tile] : m_tiles) {
        if (tile.showsWeather && tile.panel->isVisible() && !tile.state->occluded()) {
            inView.append(tile.instance.settings.value_or(WidgetSettings()));
        }
    }
    // Weather goes by the system's clock, as the readings do.
    weather->refresh(m_services.clock.now(), inView);
}

void DesktopController::refreshCustom() {
    CustomWidgetRuntime* custom = m_services.custom;
    if (custom == nullptr) {
        return;
    }
    QStringList inView;
    for (const auto& [id, tile] : m_tiles) {
        if (CustomWidgetDefinition::isCustom(tile.instance.kind) && tile.panel->isVisible() &&
            !tile.state->occluded()) {
            inView.append(tile.instance.kind);
        }
    }
    if (!inView.isEmpty()) {
        custom->refresh(m_services.clock.now(), inView);
    }
}

void DesktopController::refreshCalendar() {
    CalendarHub* calendar = m_services.calendar;
    if (calendar == nullptr) {
        return;
    }
    QList<WidgetSettings> events;
    QList<WidgetSettings> reminders;
    for (const auto& [id, tile] : m_tiles) {
        if (tile.showsCalendar && tile.panel->isVisible() && !tile.state->occluded()) {
            (tile.instance.kind == QLatin1String("reminders") ? reminders : events)
                .append(tile.instance.settings.value_or(WidgetSettings()));
        }
    }
    if (!events.isEmpty() || !reminders.isEmpty()) {
        calendar->refresh(m_services.clock.now(), events, reminders);
    }
}

void DesktopController::refreshMarket() {
    MarketServices* market = m_services.market;
    if (market == nullptr) {
        return;
    }
    MarketDemand inView;
    for (const auto& [id, tile] : m_tiles) {
        if (tile.panel->isVisible() && !tile.state->occluded()) {
            inView.add(tile.market);
        }
    }
    if (!inView.isEmpty()) {
        market->refresh(inView, m_services.clock.now());
    }
}

void DesktopController::followAppUsage() {
    AppUsageService* appUsage = m_services.appUsage;
    if (appUsage == nullptr) {
        return;
    }
    QHash<QUuid, WidgetSettings> tiles;
    for (const auto& [id, tile] : m_tiles) {
        if (tile.instance.kind == QLatin1String("appusage")) {
            tiles.insert(id, tile.instance.settings.value_or(WidgetSettings()));
        }
    }
    appUsage->showTiles(tiles);
}

void DesktopController::followBehaviours() {
    if (m_services.behaviours == nullptr) {
        return;
    }
    QHash<QString, QList<BehaviourTile>> tiles;
    for (const QString& kind : m_services.behaviours->kinds()) {
        tiles.insert(kind, {});
    }
    for (const auto& [id, tile] : m_tiles) {
        const auto found = tiles.find(tile.instance.kind);
        if (found != tiles.end()) {
            found->append({.instance = tile.instance, .inView = isInView(id)});
        }
    }
    for (auto it = tiles.cbegin(); it != tiles.cend(); ++it) {
        const auto known = m_behaviourTiles.constFind(it.key());
        if (known == m_behaviourTiles.cend() || *known != it.value()) {
            m_behaviourTiles.insert(it.key(), it.value());
            m_services.behaviours->find(it.key())->setTiles(it.value());
        }
    }
}

void DesktopController::handleDragEnded(const QUuid& draggedID) {
    m_draggingID.reset();
    const auto found = m_tiles.find(draggedID);
    if (found == m_tiles.end()) {
        return;
    }
    DesktopPanel& panel = *found->second.panel;
    const DropDecision decision = m_edits.drop(draggedID, panel.tileRect(), shownTiles(draggedID));
    if (decision.outcome == DropDecision::Outcome::slide) {
        panel.slide(decision.rect.topLeft() - QPointF(margin, margin));
    }
    if (decision.outcome != DropDecision::Outcome::ignore) {
        sync();
    }
}

bool DesktopController::isInView(const QUuid& id) const {
    const auto found = m_tiles.find(id);
    return m_isVisible && found != m_tiles.end() && found->second.panel->isVisible() &&
           !found->second.state->occluded();
}

bool DesktopController::handlePlainClick(const QUuid& id, QPointF point) {
    const auto instance = m_services.grid.instance(id);
    if (!instance) {
        return false;
    }
    if (instance->stackID) {
        const QPointF inTile = point - QPointF(margin, margin);
        if (const auto step = StackFronts::stepForClick(inTile, instance->pixelSize().width())) {
            stepStack(*instance->stackID, *step);
            return true;
        }
    }
    const auto shown = m_tiles.find(id);
    // A kind with a behaviour of its own takes the click first, with the control under it.
    if (TileBehaviour* behaviour = behaviourOf(instance->kind);
        behaviour != nullptr && shown != m_tiles.end() &&
        behaviour->press(*instance, shown->second.panel->spotAt(point).command)) {
        return true;
    }
    if (isTypedInto(instance->kind)) {
        return false;
    }
    // A face that can show nothing until the person chooses something opens its settings.
    if (shown != m_tiles.end() && widgetSettingsOpener &&
        m_services.faces.face(instance->kind)
            .opensSettingsOnClick(shown->second.panel->context())) {
        widgetSettingsOpener(id);
        return true;
    }
    const WidgetFace::Spot spot =
        shown != m_tiles.end() ? shown->second.panel->spotAt(point) : WidgetFace::Spot();
    // A timer's controls are on its tile; any press on a ringing one silences it.
    if (shown != m_tiles.end() && m_services.desk != nullptr &&
        DeskTimers::isDeskKind(instance->kind)) {
        m_services.desk->press(id, spot.control);
        return true;
    }
    // A reminder's check mark marks it done, or open again, in its file.
    if (spot.reminder && m_services.calendar != nullptr) {
        m_services.calendar->reminders().toggleCompletion(*spot.reminder, m_services.clock.now());
        return true;
    }
    // The speed test's button starts a run, or cancels the one under way.
    if (spot.control && instance->kind == speedTestKind && m_services.speedTest != nullptr) {
        SpeedTestService& speedTest = *m_services.speedTest;
        speedTest.phase().isRunning() ? speedTest.cancel() : speedTest.start();
        return true;
    }
    // A transport button goes to the player the tile shows.
    if (spot.media && m_services.readings != nullptr &&
        m_services.readings->nowPlaying() != nullptr) {
        m_services.readings->nowPlaying()->send(*spot.media);
        return true;
    }
    // A link the face shows opens in the browser; only a web page, whatever the face says.
    if (m_services.workspace != nullptr) {
        if (const auto link = spot.link) {
            const QString scheme = link->scheme().toLower();
            if (scheme == QLatin1String("http") || scheme == QLatin1String("https")) {
                const LaunchResult opened = m_services.workspace->open(*link);
                if (!opened.isSuccess()) {
                    qCWarning(lcClicks, "link not opened: %s", qUtf8Printable(opened.error()));
                }
                return true;
            }
        }
    }
    // The activity tile's click switches its list of programs, unless the person gave the click
    // something else to do (or nothing at all).
    const WidgetSettings settings = instance->settings.value_or(WidgetSettings());
    if (instance->kind == QLatin1String("activity") &&
        settings.value(WidgetAction::actionKey()).isEmpty()) {
        m_services.grid.setSetting(
            id, ActivityFace::listKey(),
            ActivityFace::toggledList(settings.value(ActivityFace::listKey())));
        return true;
    }
    const auto action = WidgetAction::resolved(instance->kind, instance->settings);
    if (!action || m_services.workspace == nullptr || m_services.notifications == nullptr) {
        return false;
    }
    return WidgetAction::run(*m_services.workspace, *m_services.notifications, *action);
}

QMenu* DesktopController::contextMenu(const QUuid& id) {
    const auto instance = m_services.grid.instance(id);
    if (!instance) {
        return nullptr;
    }
    const QUuid stackID = instance->stackID.value_or(QUuid());
    GridStore& grid = m_services.grid;
    QMenu* menu = PanelContextMenu::build(
        PanelContextMenu::Facts::of(*instance, m_services.registry, grid,
                                    m_services.theme.glassStyle()),
        {
            .openSettings =
                [this, id] {
                    if (widgetSettingsOpener) {
                        widgetSettingsOpener(id);
                    }
                },
            .setSize = [this, id](WidgetSize size) { setWidgetSize(id, size); },
            .setGlass =
                [this](ThemeStore::GlassStyle style) { m_services.theme.setGlassStyle(style); },
            .showNext = [this, stackID] { stepStack(stackID, 1); },
            .setRotate = [this, stackID](int seconds) { setStackRotate(stackID, seconds); },
            .unstack = [this, id] { unstackWidget(id); },
            .remove = [&grid, id] { grid.remove(id); },
        },
        this);
    addBehaviourItems(*menu, *instance);
    return menu;
}

void DesktopController::addBehaviourItems(QMenu& menu, const WidgetInstance& instance) {
    TileBehaviour* behaviour = behaviourOf(instance.kind);
    const QList<TileBehaviour::MenuItem> items =
        behaviour != nullptr ? behaviour->menuItems(instance) : QList<TileBehaviour::MenuItem>();
    if (items.isEmpty()) {
        return;
    }
    QAction* first = menu.actions().value(0);
    const QUuid id = instance.id;
    for (const TileBehaviour::MenuItem& item : items) {
        auto* action = new QAction(item.title, &menu);
        connect(action, &QAction::triggered, this, [this, behaviour, id, command = item.command] {
            if (const auto current = m_services.grid.instance(id)) {
                behaviour->press(*current, command);
            }
        });
        menu.insertAction(first, action);
    }
    menu.insertSeparator(first);
}

void DesktopController::setWidgetSize(const QUuid& id, WidgetSize size) {
    m_edits.resize(id, size);
    sync();
}

void DesktopController::setStackRotate(const QUuid& stackID, int seconds) {
    m_services.grid.setStackSeconds(stackID, seconds);
    m_fronts.restart(stackID);
}

void DesktopController::unstackWidget(const QUuid& id) {
    m_edits.unstack(id);
    sync();
}

DesktopPanel* DesktopController::panel(const QUuid& id) const {
    const auto it = m_tiles.find(id);
    return it == m_tiles.end() ? nullptr : it->second.panel.get();
}

PanelState* DesktopController::panelState(const QUuid& id) const {
    const auto it = m_tiles.find(id);
    return it == m_tiles.end() ? nullptr : it->second.state.get();
}

QList<QUuid> DesktopController::panelIDs() const {
    QList<QUuid> ids;
    for (const auto& [id, tile] : m_tiles) {
        ids.append(id);
    }
    return ids;
}

} // namespace tw
