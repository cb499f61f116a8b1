#include "desktop/DesktopController.h"

#include "desktop/DesktopGeometry.h"
#include "desktop/PanelContextMenu.h"
#include "displays/LayoutDisplay.h"
#include "displays/TopologyMemory.h"
#include "faces/FaceRegistry.h"
#include "grid/DropDecision.h"
#include "grid/FreeSpot.h"
#include "grid/GridStore.h"
#include "grid/OverlapResolver.h"
#include "grid/RectEdges.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"
#include "platform/Clock.h"
#include "platform/ColorSchemeWatcher.h"
#include "platform/Scheduler.h"
#include "settings/AppSettings.h"
#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"
#include "tick/TimeSource.h"

#include <QLoggingCategory>
#include <QPropertyAnimation>
#include <QSet>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace tw {

Q_LOGGING_CATEGORY(lcDesktop, "Desktop")

namespace {

using namespace std::chrono_literals;

bool isLockOnly(const WidgetInstance& instance) {
    const auto value = instance.setting(QStringLiteral("lockOnly"));
    return value && (*value == QLatin1String("true") || *value == QLatin1String("1"));
}

QPointF tileTopLeft(const QRectF& tile) {
    return {tile.x(), RectEdges::maxY(tile)};
}

} // namespace

DesktopController::DesktopController(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    connect(&m_services.grid, &GridStore::layoutChanged, this, [this] {
        if (!m_isResolvingOverlaps) {
            sync();
        }
    });
    // The ring around a tile just added; the store clears it by itself.
    connect(&m_services.grid, &GridStore::highlightedIDChanged, this, [this] {
        const QUuid highlighted = m_services.grid.highlightedID();
        for (auto& [id, entry] : m_panels) {
            entry.panel->setHighlight(id == highlighted ? 1.0 : 0.0);
        }
    });
    connect(&m_services.ticker, &TickCoordinator::nowChanged, this,
            [this](const QDateTime& now) { advanceStacks(now); });
    for (auto woke : {&Displays::didWake, &Displays::screensDidWake}) {
        connect(&m_services.displays, woke, this, [this] { reassertAfterDisplaysReturned(); });
    }
    connect(&m_services.displays, &Displays::screensChanged, this, [this] {
        if (!m_veiled) {
            sync();
        }
    });
    if (m_services.watcher != nullptr) {
        connect(m_services.watcher, &ScreenTopologyWatcher::settled, this,
                [this](const ScreenTopologyWatcher::Change& change) { adoptArrangement(change); });
        connect(m_services.watcher, &ScreenTopologyWatcher::isTransitioningChanged, this,
                [this](bool transitioning) { setVeil(transitioning); });
    }
    connect(&m_services.windowing, &DesktopWindowing::coveredChanged, this,
            [this](QObject* window, bool covered) {
                const auto id = m_windows.constFind(window);
                if (id == m_windows.cend()) {
                    return;
                }
                if (auto it = m_panels.find(*id); it != m_panels.end()) {
                    it->second.covered = covered;
                    scheduleOcclusionRefresh();
                }
            });
    auto& theme = m_services.theme;
    for (auto signal : {&ThemeStore::themedChanged, &ThemeStore::accentOverrideChanged}) {
        connect(&theme, signal, this, [this] { refreshAllContent(); });
    }
    connect(&theme, &ThemeStore::glassStyleChanged, this, [this] { refreshAllContent(); });
    connect(&theme, &ThemeStore::glassStrengthChanged, this, [this] { refreshAllContent(); });
    connect(&theme, &ThemeStore::glassTintChanged, this, [this] { refreshAllContent(); });
    if (m_services.colorScheme != nullptr) {
        connect(m_services.colorScheme, &ColorSchemeWatcher::colorSchemeChanged, this, [this] {
            if (m_services.theme.glassTint() == ThemeStore::GlassTint::Auto) {
                refreshAllContent();
            }
        });
    }
}

ThemeStore::SystemAppearance DesktopController::systemAppearance() const {
    const bool light = m_services.colorScheme != nullptr &&
                       m_services.colorScheme->colorScheme() == ColorScheme::Light;
    return light ? ThemeStore::SystemAppearance::Light : ThemeStore::SystemAppearance::Dark;
}

DesktopController::~DesktopController() {
    m_panels.clear();
    m_services.ticker.setActive(false);
}

// --- visibility --------------------------------------------------------------------------------

void DesktopController::show() {
    m_isVisible = true;
    sync();
}

void DesktopController::hide() {
    m_isVisible = false;
    for (auto& [id, entry] : m_panels) {
        entry.panel->hide();
    }
    updateDesktopActive();
}

void DesktopController::toggle() {
    if (m_isVisible) {
        hide();
    } else {
        show();
    }
}

void DesktopController::updateDesktopActive() {
    m_services.ticker.setActive(m_isVisible && !m_panels.empty());
}

// --- sync --------------------------------------------------------------------------------------

QList<WidgetInstance> DesktopController::desktopInstances() const {
    QList<WidgetInstance> result;
    for (const WidgetInstance& instance : m_services.grid.layout().instances) {
        if (!isLockOnly(instance) && m_services.registry.definition(instance.kind)) {
            result.append(instance);
        }
    }
    return result;
}

void DesktopController::sync() {
    if (m_syncing) {
        return;
    }
    m_syncing = true;
    placeUnpositioned();
    const QList<WidgetInstance> wanted = desktopInstances();

    QSet<QUuid> ids;
    for (const WidgetInstance& instance : wanted) {
        ids.insert(instance.id);
    }
    for (auto it = m_panels.begin(); it != m_panels.end();) {
        if (ids.contains(it->first)) {
            ++it;
            continue;
        }
        m_windows.remove(static_cast<QObject*>(it->second.panel->windowHandle()));
        it->second.panel->hide();
        it = m_panels.erase(it);
    }

    for (const WidgetInstance& instance : wanted) {
        auto it = m_panels.find(instance.id);
        if (it == m_panels.end()) {
            spawn(instance);
            continue;
        }
        Entry& entry = it->second;
        const WidgetInstance before = entry.instance;
        entry.instance = instance;
        const QSizeF size = windowSize(instance);
        if (size != QSizeF(entry.panel->size())) {
            entry.panel->setContentSize(size);
        }
        if (before.kind != instance.kind || before.size != instance.size ||
            before.settings != instance.settings) {
            refreshContent(entry);
        }
        const bool dragged = m_isDragging && m_draggingID == instance.id;
        if (!dragged && !entry.panel->isSliding()) {
            entry.panel->setFrameOrigin(origin(instance, size));
        }
    }

    if (!m_isDragging && m_sweptSignature != layoutSignature()) {
        resolveAllOverlaps();
    }
    applyStackVisibility();
    updateDesktopActive();
    m_syncing = false;
    Q_EMIT synced();
}

// A tile that has never been placed on the desktop is given a place on the main display, in
// reading order of its logical cell, so that a first start shows the grid as it was laid out.
void DesktopController::placeUnpositioned() {
    const QList<WidgetInstance> instances = desktopInstances();
    const bool anyUnplaced = std::any_of(instances.cbegin(), instances.cend(),
                                         [](const auto& i) { return !i.posX || !i.posY; });
    if (!anyUnplaced) {
        return;
    }
    const QHash<QUuid, QPointF> places =
        DesktopGeometry::firstPlaces(instances, mainVisibleFrame());
    if (places.isEmpty()) {
        return;
    }
    // One write for all of them, which leaves the history of undo as it was.
    m_isResolvingOverlaps = true;
    m_services.grid.placeUnpositioned(places);
    m_isResolvingOverlaps = false;
}

bool DesktopController::isTypedInto(const QString& kind) const {
    const auto definition = m_services.registry.definition(kind);
    return definition && definition->metadata.typedInto;
}

void DesktopController::spawn(const WidgetInstance& instance) {
    const auto focus = isTypedInto(instance.kind) ? DesktopWindowing::Focus::WhenClicked
                                                  : DesktopWindowing::Focus::Never;
    Entry entry;
    entry.instance = instance;
    entry.state = std::make_unique<PanelState>();
    entry.panel = std::make_unique<DesktopPanel>(instance.id, m_services.windowing, focus,
                                                 m_renderer, m_services.clock);
    DesktopPanel* panel = entry.panel.get();
    const QUuid id = instance.id;
    const QSizeF size = windowSize(instance);
    panel->resize(static_cast<int>(std::lround(size.width())),
                  static_cast<int>(std::lround(size.height())));
    panel->setFrameOrigin(origin(instance, size));

    panel->snapCandidates = [this, id] { return otherTileRects(id); };
    panel->snapBounds = [this](const QRectF& tile) { return tileBounds(tile); };
    panel->moveNeedsShift = [this] { return m_services.settings.moveNeedsShift(); };
    panel->onUserDrag = [this, id] {
        m_isDragging = true;
        m_draggingID = id;
    };
    panel->onDragEnded = [this, id] { handleDragEnded(id); };
    // Whatever moved the tile while it slid, it ends where the grid says.
    connect(panel, &DesktopPanel::slideFinished, this, [this] { sync(); });
    panel->onPlainClick = [this, id](QPointF point) { return handlePlainClick(id, point); };
    panel->contextMenuProvider = [this, id] { return contextMenu(id); };
    panel->onScroll = [this, id](const StackScrollGesture::Event& event) {
        return handleScroll(id, event);
    };
    PanelState* state = entry.state.get();
    panel->onHoverChange = [state](bool hovering) { state->setHovering(hovering); };
    m_windows.insert(static_cast<QObject*>(panel->windowHandle()), id);
    auto& stored = m_panels.emplace(id, std::move(entry)).first->second;
    refreshContent(stored);
}

void DesktopController::refreshContent(Entry& entry) {
    const auto definition = m_services.registry.definition(entry.instance.kind);
    if (!definition) {
        return;
    }
    const WidgetFace& face = m_services.faces.face(definition->metadata.kind);
    FaceContext context = FaceContext::forInstance(definition->metadata, entry.instance);
    const ThemeStore& theme = m_services.theme;
    context.theme = theme.themed();
    context.glass = GlassLook::from(theme, systemAppearance());
    context.surface = SurfaceFlags::desktop();
    context.symbols = m_services.symbols;

    const auto grain = face.grain(entry.instance.size, context.settings);
    if (!grain) {
        entry.time.reset();
    } else if (!entry.time || entry.time->grain() != *grain) {
        entry.time = std::make_unique<TimeSource>(*grain, m_services.ticker, m_services.minutes);
        DesktopPanel* panel = entry.panel.get();
        PanelState* state = entry.state.get();
        // A covered tile is not repainted; it catches up when it comes back into view.
        connect(entry.time.get(), &TimeSource::timeChanged, panel,
                [panel, state](const QDateTime& now) {
                    if (!state->occluded()) {
                        panel->setNow(now);
                    }
                });
    }
    context.now = entry.time ? entry.time->time() : QDateTime();
    entry.panel->setContent(face, context);
}

// A tile coming into view shows the time of now, not the minute of the last tick before it went.
void DesktopController::reseed(Entry& entry) {
    if (entry.time) {
        entry.time->reseed();
        if (!entry.state->occluded()) {
            entry.panel->setNow(entry.time->time());
        }
    }
}

void DesktopController::refreshAllContent() {
    for (auto& [id, entry] : m_panels) {
        refreshContent(entry);
    }
}

// --- geometry ----------------------------------------------------------------------------------

QSizeF DesktopController::windowSize(const WidgetInstance& instance) {
    return instance.pixelSize() + QSizeF(2 * panelMargin, 2 * panelMargin);
}

QList<ScreenInfo> DesktopController::screens() const {
    return m_services.displays.screens();
}

QRectF DesktopController::mainVisibleFrame() const {
    return DesktopGeometry::mainVisibleFrame(screens());
}

QRectF DesktopController::visibleFrame(const QPointF& tileTopLeft, const QSizeF& tileSize) const {
    return DesktopGeometry::visibleFrame(screens(), tileTopLeft, tileSize);
}

QPointF DesktopController::origin(const WidgetInstance& instance, const QSizeF& size) const {
    const QSizeF tile(size.width() - 2 * panelMargin, size.height() - 2 * panelMargin);
    std::optional<QPointF> topLeft;
    if (instance.posX && instance.posY) {
        topLeft = QPointF(*instance.posX, *instance.posY);
    } else {
        topLeft = m_services.grid.freeSpot(instance.kind, instance.size, instance.settings);
    }
    if (!topLeft) {
        const QRectF frame = mainVisibleFrame();
        topLeft = QPointF(frame.x() + FreeSpot::margin, RectEdges::maxY(frame) - FreeSpot::margin);
    }
    return DesktopGeometry::panelOrigin(screens(), *topLeft, tile);
}

std::optional<QRectF> DesktopController::resolveBounds(const DesktopPanel& panel) const {
    return tileBounds(panel.tileRect());
}

std::optional<QRectF> DesktopController::tileBounds(const QRectF& tile) const {
    if (screens().isEmpty()) {
        return std::nullopt;
    }
    return visibleFrame(QPointF(tile.x(), RectEdges::maxY(tile)), tile.size());
}

QList<QRectF> DesktopController::otherTileRects(const QUuid& id) const {
    QList<QRectF> rects;
    const QSet<QUuid> hidden = hiddenStackMembers();
    for (const auto& [other, entry] : m_panels) {
        if (other != id && !hidden.contains(other)) {
            rects.append(entry.panel->tileRect());
        }
    }
    return rects;
}

// --- overlaps ----------------------------------------------------------------------------------

QString DesktopController::layoutSignature() const {
    QStringList parts;
    for (const WidgetInstance& instance : m_services.grid.layout().instances) {
        parts.append(instance.id.toString(QUuid::WithoutBraces) + QLatin1Char('|') +
                     rawValue(instance.size) + QLatin1Char('|') +
                     QString::number(instance.posX.value_or(qQNaN())) + QLatin1Char('|') +
                     QString::number(instance.posY.value_or(qQNaN())));
    }
    return parts.join(QLatin1Char('\n'));
}

void DesktopController::resolveAllOverlaps() {
    m_isResolvingOverlaps = true;
    const QSet<QUuid> hidden = hiddenStackMembers();
    QList<QUuid> order;
    QList<QRectF> rects;
    for (const WidgetInstance& instance : desktopInstances()) {
        if (m_panels.count(instance.id) > 0 && !hidden.contains(instance.id)) {
            order.append(instance.id);
            // Where the panel belongs rather than where it stands: a panel may still be sliding.
            const QSizeF size = windowSize(instance);
            rects.append(QRectF(origin(instance, size), size)
                             .adjusted(panelMargin, panelMargin, -panelMargin, -panelMargin));
        }
    }
    // All moves of the sweep are one change: one write, one save.
    QList<std::pair<QUuid, QPointF>> moves;
    QList<QRectF> others;
    for (qsizetype i = 0; i < order.size(); ++i) {
        others = rects;
        others.remove(i);
        const QRectF rect = rects.at(i);
        const QRectF bounds = visibleFrame(QPointF(rect.x(), RectEdges::maxY(rect)), rect.size());
        const QRectF resolved = OverlapResolver::resolve(rect, others, bounds, overlapGap);
        if (resolved == rect) {
            continue;
        }
        rects[i] = resolved;
        moves.append({order.at(i), QPointF(resolved.x(), RectEdges::maxY(resolved))});
        DesktopPanel& panel = *m_panels.at(order.at(i)).panel;
        if (!panel.isSliding()) {
            panel.setFrameOrigin(resolved.topLeft() - QPointF(panelMargin, panelMargin));
        }
    }
    if (!moves.isEmpty()) {
        m_services.grid.updatePositions(moves);
    }
    m_sweptSignature = layoutSignature();
    m_isResolvingOverlaps = false;
}

// --- stacks ------------------------------------------------------------------------------------

int DesktopController::activeIndex(const QUuid& stackID) const {
    return m_rotation.active(stackID,
                             static_cast<int>(m_services.grid.stackMembers(stackID).size()));
}

bool DesktopController::isHiddenStackMember(const QUuid& id) const {
    return hiddenStackMembers().contains(id);
}

QHash<QUuid, QList<QUuid>> DesktopController::stacks() const {
    QHash<QUuid, QList<QUuid>> members;
    for (const WidgetInstance& instance : m_services.grid.layout().instances) {
        if (instance.stackID && !members.contains(*instance.stackID)) {
            QList<QUuid>& ids = members[*instance.stackID];
            for (const WidgetInstance& member : m_services.grid.stackMembers(*instance.stackID)) {
                ids.append(member.id);
            }
        }
    }
    return members;
}

QSet<QUuid> DesktopController::hiddenStackMembers() const {
    QSet<QUuid> hidden;
    const auto all = stacks();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QList<QUuid>& members = it.value();
        if (members.size() < 2) {
            continue;
        }
        const int active = m_rotation.active(it.key(), static_cast<int>(members.size()));
        for (int i = 0; i < members.size(); ++i) {
            if (i != active) {
                hidden.insert(members.at(i));
            }
        }
    }
    return hidden;
}

void DesktopController::applyStackVisibility() {
    const auto all = stacks();
    const QSet<QUuid> hidden = hiddenStackMembers();
    QHash<QUuid, QUuid> stackOf;
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        for (const QUuid& member : it.value()) {
            stackOf.insert(member, it.key());
        }
    }
    for (auto& [id, entry] : m_panels) {
        if (const auto stackID = stackOf.constFind(id); stackID != stackOf.cend()) {
            const auto count = static_cast<int>(all.value(*stackID).size());
            entry.panel->setStackIndicator(m_rotation.active(*stackID, count), count);
        } else {
            entry.panel->setStackIndicator(0, 0);
        }
        const bool shown = m_isVisible && !hidden.contains(id);
        if (shown && !entry.panel->isVisible()) {
            reseed(entry);
            entry.panel->show();
        } else if (!shown && entry.panel->isVisible()) {
            entry.panel->hide();
        }
    }
}

void DesktopController::advanceStacks(const QDateTime& now) {
    if (!m_isVisible || m_isDragging) {
        return;
    }
    QList<StackRotation::Stack> beat;
    const auto all = stacks();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QList<QUuid>& members = it.value();
        beat.append({
            .id = it.key(),
            .count = static_cast<int>(members.size()),
            .seconds = m_services.grid.stackSeconds(it.key()),
            .held = std::any_of(members.cbegin(), members.cend(),
                                [this](const QUuid& member) {
                                    const PanelState* state = panelState(member);
                                    return state != nullptr && state->hovering();
                                }),
        });
    }
    if (m_rotation.advance(beat, now)) {
        applyStackVisibility();
    }
}

void DesktopController::stepStack(const QUuid& stackID, int step) {
    const auto count = static_cast<int>(m_services.grid.stackMembers(stackID).size());
    if (count < 1) {
        return;
    }
    m_rotation.step(stackID, step, count, m_services.clock.now());
    applyStackVisibility();
}

bool DesktopController::handleScroll(const QUuid& id, const StackScrollGesture::Event& event) {
    const auto instance = m_services.grid.instance(id);
    if (!instance || !instance->stackID) {
        return false;
    }
    if (const auto step = m_stackScroll.step(event)) {
        stepStack(*instance->stackID, *step);
    }
    return true;
}

// --- veil and displays -------------------------------------------------------------------------

void DesktopController::setVeil(bool veiled) {
    m_veilTask.cancel();
    if (veiled) {
        m_veiled = true;
        fadePanels(0.0);
        // A change that never settles must not leave the desktop empty.
        m_veilTask =
            m_services.scheduler.singleShot(veilGuard, 500ms, this, [this] { setVeil(false); });
        return;
    }
    if (!m_veiled) {
        return;
    }
    m_veilTask = m_services.scheduler.singleShot(veilReturn, 0ms, this, [this] {
        m_veiled = false;
        // Screen events were let pass while veiled: the panels take their places before they
        // are seen again.
        sync();
        fadePanels(1.0);
        refreshOcclusion();
    });
}

void DesktopController::fadePanels(double opacity) {
    for (auto& [id, entry] : m_panels) {
        auto* animation =
            new QPropertyAnimation(entry.panel.get(), "windowOpacity", entry.panel.get());
        animation->setDuration(static_cast<int>(fadeDuration.count()));
        animation->setEndValue(opacity);
        animation->start(QAbstractAnimation::DeleteWhenStopped);
    }
}

// A settle that changed nothing still puts every panel back where the grid says: the window
// system may have moved them while the displays were in flux.
void DesktopController::adoptArrangement(const ScreenTopologyWatcher::Change& change) {
    if (change.topologyChanged && m_services.memory != nullptr) {
        const auto layout =
            m_services.memory->layoutForSettled(change.displays, m_services.grid.layout());
        if (layout && !layout->instances.isEmpty() && *layout != m_services.grid.layout()) {
            m_services.grid.replaceLayout(*layout);
            return;
        }
    }
    sync();
}

void DesktopController::reassertAfterDisplaysReturned() {
    qCInfo(lcDesktop, "displays returned: restoring widget positions");
    sync();
    m_wakeTasks.clear();
    for (const auto delay : wakeRepeats) {
        m_wakeTasks.push_back(
            m_services.scheduler.singleShot(delay, 100ms, this, [this] { sync(); }));
    }
}

int DesktopController::visitorCount() const {
    if (m_services.memory == nullptr) {
        return 0;
    }
    const QList<LayoutDisplay> displays = LayoutDisplay::currentDisplays(m_services.displays);
    const auto& instances = m_services.grid.layout().instances;
    return static_cast<int>(std::count_if(instances.cbegin(), instances.cend(), [&](const auto& i) {
        return m_services.memory->isVisitor(i.id, displays);
    }));
}

// --- occlusion ---------------------------------------------------------------------------------

void DesktopController::scheduleOcclusionRefresh() {
    m_occlusionTask.cancel();
    m_occlusionTask = m_services.scheduler.singleShot(occlusionDebounce, 50ms, this,
                                                      [this] { refreshOcclusion(); });
}

void DesktopController::refreshOcclusion() {
    if (m_veiled) {
        return;
    }
    for (auto& [id, entry] : m_panels) {
        const bool wasOccluded = entry.state->occluded();
        entry.state->setOccluded(entry.covered);
        if (wasOccluded && !entry.covered) {
            reseed(entry);
        }
    }
}

// --- the drop and clicks -----------------------------------------------------------------------

void DesktopController::handleDragEnded(const QUuid& draggedID) {
    m_isDragging = false;
    m_draggingID = QUuid();
    const auto found = m_panels.find(draggedID);
    const auto instance = m_services.grid.instance(draggedID);
    if (found == m_panels.end() || !instance) {
        return;
    }
    DesktopPanel& panel = *found->second.panel;
    const QRectF dropped = panel.tileRect();
    if (dropped.isEmpty()) {
        return;
    }
    // Kept where it is shown: a tile let go partly off its display stands clamped.
    const QRectF rect(
        DesktopGeometry::panelOrigin(screens(), tileTopLeft(dropped), dropped.size()) +
            QPointF(panelMargin, panelMargin),
        dropped.size());
    QList<DropDecision::Tile> others;
    for (const auto& [id, entry] : m_panels) {
        if (id == draggedID || isHiddenStackMember(id) || !entry.panel->isVisible()) {
            continue;
        }
        others.append({id, entry.instance.size, entry.panel->tileRect()});
    }
    const DropDecision decision =
        DropDecision::decide(instance->size, rect, others, resolveBounds(panel));

    // The writes of the drop are one change: the sync after them sees the final layout.
    m_isResolvingOverlaps = true;
    m_services.grid.updatePosition(draggedID, rect.x(), RectEdges::maxY(rect));
    switch (decision.outcome) {
    case DropDecision::Outcome::stack: {
        m_services.grid.groupIntoStack(draggedID, decision.stackOnto);
        // The stack shows the tile that was just dropped on it.
        const auto grouped = m_services.grid.instance(draggedID);
        if (grouped && grouped->stackID) {
            const auto members = m_services.grid.stackMembers(*grouped->stackID);
            for (int i = 0; i < members.size(); ++i) {
                if (members.at(i).id == draggedID) {
                    m_rotation.show(*grouped->stackID, i, m_services.clock.now());
                }
            }
        }
        break;
    }
    case DropDecision::Outcome::slide:
        panel.slide(decision.rect.topLeft() - QPointF(panelMargin, panelMargin));
        m_services.grid.updatePosition(draggedID, decision.rect.x(),
                                       RectEdges::maxY(decision.rect));
        break;
    case DropDecision::Outcome::stay:
    case DropDecision::Outcome::ignore:
        break;
    }
    m_isResolvingOverlaps = false;
    sync();
}

bool DesktopController::handlePlainClick(const QUuid& id, QPointF point) {
    const auto instance = m_services.grid.instance(id);
    if (!instance) {
        return false;
    }
    if (instance->stackID) {
        switch (StackRotation::zoneAt(point - QPointF(panelMargin, panelMargin),
                                      instance->pixelSize().width())) {
        case StackRotation::Zone::previous:
            stepStack(*instance->stackID, -1);
            return true;
        case StackRotation::Zone::next:
            stepStack(*instance->stackID, 1);
            return true;
        case StackRotation::Zone::dots:
            return true;
        case StackRotation::Zone::tile:
            break;
        }
    }
    if (isTypedInto(instance->kind)) {
        return false;
    }
    const auto action = WidgetAction::resolved(instance->kind, instance->settings);
    if (!action || m_services.workspace == nullptr || m_services.notifications == nullptr) {
        return false;
    }
    return WidgetAction::run(*m_services.workspace, *m_services.notifications, *action);
}

// --- context menu ------------------------------------------------------------------------------

QMenu* DesktopController::contextMenu(const QUuid& id) {
    const auto instance = m_services.grid.instance(id);
    if (!instance) {
        return nullptr;
    }
    const auto definition = m_services.registry.definition(instance->kind);
    PanelContextMenu::Facts facts{
        .hasSettings = definition && definition->metadata.hasSettings,
        .allowedSizes =
            definition ? definition->metadata.allowedSizes : QList<WidgetSize>{instance->size},
        .size = instance->size,
        .glass = m_services.theme.glassStyle(),
        .stackSeconds = std::nullopt,
    };
    std::optional<QUuid> stack = instance->stackID;
    if (stack) {
        facts.stackSeconds = m_services.grid.stackSeconds(*stack);
    }
    const QUuid stackID = stack.value_or(QUuid());
    return PanelContextMenu::build(
        facts,
        {
            .openSettings = [this, id] { openWidgetSettings(id); },
            .setSize = [this, id](WidgetSize size) { setWidgetSize(id, size); },
            .setGlass = [this](ThemeStore::GlassStyle style) { setGlassStyle(style); },
            .showNext = [this, stackID] { showNextInStack(stackID); },
            .setRotate = [this, stackID](int seconds) { setStackRotate(stackID, seconds); },
            .unstack = [this, id] { unstackWidget(id); },
            .remove = [this, id] { removeWidget(id); },
        },
        this);
}

// The tile keeps its top-left corner and, grown, is pushed off the tiles it now covers, as after
// a drag; the store resizes a stack whole. One change: the sync after it finds nothing to move.
void DesktopController::setWidgetSize(const QUuid& id, WidgetSize size) {
    m_isResolvingOverlaps = true;
    m_services.grid.setSize({id}, size);
    pushOffNeighbours(id);
    m_isResolvingOverlaps = false;
    sync();
}

void DesktopController::pushOffNeighbours(const QUuid& id) {
    const auto instance = m_services.grid.instance(id);
    if (!instance) {
        return;
    }
    // Where the tiles belong rather than where their panels stand, which the sync has not set yet.
    const auto placed = [this](const WidgetInstance& i) {
        const QSizeF size = windowSize(i);
        return QRectF(origin(i, size), size)
            .adjusted(panelMargin, panelMargin, -panelMargin, -panelMargin);
    };
    std::optional<QRectF> rect;
    QList<QRectF> others;
    for (const WidgetInstance& other : desktopInstances()) {
        if (other.id == id) {
            rect = placed(other);
        } else if (!(instance->stackID && other.stackID == instance->stackID) &&
                   !isHiddenStackMember(other.id)) {
            others.append(placed(other));
        }
    }
    if (!rect) {
        return;
    }
    const QRectF resolved = OverlapResolver::resolve(
        *rect, others, visibleFrame(tileTopLeft(*rect), rect->size()), overlapGap);
    if (resolved != *rect) {
        m_services.grid.updatePosition(id, resolved.x(), RectEdges::maxY(resolved));
    }
}

void DesktopController::setGlassStyle(ThemeStore::GlassStyle style) {
    m_services.theme.setGlassStyle(style);
}

void DesktopController::setStackRotate(const QUuid& stackID, int seconds) {
    m_services.grid.setStackSeconds(stackID, seconds);
    m_rotation.restart(stackID, m_services.clock.now());
}

void DesktopController::showNextInStack(const QUuid& stackID) {
    stepStack(stackID, 1);
}

void DesktopController::removeWidget(const QUuid& id) {
    m_services.grid.remove(id);
}

// The store sets the tile beside its stack; from there it is pushed on, as after a drag, when that
// place is taken or off its display. The member on show stays on show, though its index changes.
void DesktopController::unstackWidget(const QUuid& id) {
    const auto instance = m_services.grid.instance(id);
    std::optional<QUuid> shown;
    if (instance && instance->stackID) {
        const QList<WidgetInstance> members = m_services.grid.stackMembers(*instance->stackID);
        const int active = m_rotation.active(*instance->stackID, static_cast<int>(members.size()));
        if (active >= 0 && active < members.size()) {
            shown = members.at(active).id;
        }
    }
    m_isResolvingOverlaps = true;
    m_services.grid.removeFromStack(id);
    pushOffNeighbours(id);
    m_isResolvingOverlaps = false;
    if (shown && *shown != id) {
        const QList<WidgetInstance> rest = m_services.grid.stackMembers(*instance->stackID);
        for (int i = 0; i < rest.size(); ++i) {
            if (rest.at(i).id == *shown) {
                m_rotation.setActive(*instance->stackID, i);
            }
        }
    }
    sync();
}

void DesktopController::openWidgetSettings(const QUuid& id) {
    if (widgetSettingsOpener) {
        widgetSettingsOpener(id);
    }
}

// --- look-ups ----------------------------------------------------------------------------------

DesktopPanel* DesktopController::panel(const QUuid& id) const {
    const auto it = m_panels.find(id);
    return it == m_panels.end() ? nullptr : it->second.panel.get();
}

PanelState* DesktopController::panelState(const QUuid& id) const {
    const auto it = m_panels.find(id);
    return it == m_panels.end() ? nullptr : it->second.state.get();
}

QList<QUuid> DesktopController::panelIDs() const {
    QList<QUuid> ids;
    for (const auto& [id, entry] : m_panels) {
        ids.append(id);
    }
    return ids;
}

} // namespace tw
