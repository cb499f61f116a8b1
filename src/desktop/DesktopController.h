// Keeps one panel for every tile that belongs on the desktop, in step with the grid, the
// displays, the tick and what covers the panels; owns which member of a stack is on show.
#pragma once

#include "desktop/DesktopPanel.h"
#include "desktop/PanelState.h"
#include "displays/ScreenTopologyWatcher.h"
#include "faces/TileRenderer.h"
#include "grid/StackRotation.h"
#include "grid/StackScrollGesture.h"
#include "look/ThemeStore.h"
#include "model/GridLayout.h"
#include "model/Metrics.h"
#include "platform/DesktopWindowing.h"
#include "platform/Displays.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUuid>

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

class QMenu;

namespace tw {

class AppSettings;
class Clock;
class ColorSchemeWatcher;
class FaceRegistry;
class GridStore;
class MinuteCoordinator;
class Notifications;
class Scheduler;
class SymbolProvider;
class TickCoordinator;
class TimeSource;
class TopologyMemory;
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
    };

    static constexpr double panelMargin = DesktopPanel::margin;
    static constexpr double overlapGap = Metrics::cellSpacing;
    static constexpr std::chrono::milliseconds veilGuard{8000};
    static constexpr std::chrono::milliseconds veilReturn{350};
    static constexpr std::chrono::milliseconds fadeDuration{200};
    static constexpr std::chrono::milliseconds occlusionDebounce{150};
    static constexpr std::chrono::milliseconds wakeRepeats[] = {std::chrono::milliseconds{1500},
                                                                std::chrono::milliseconds{4000}};

    explicit DesktopController(const Services& services, QObject* parent = nullptr);
    ~DesktopController() override;

    // Visible or hidden; each writes TickCoordinator's desktopActive.
    void show();
    void hide();
    void toggle();
    bool isVisible() const { return m_isVisible; }
    // Marks the desktop visible without showing anything yet: the first sync shows the panels.
    void setVisibleFlag(bool visible) { m_isVisible = visible; }

    // Brings the panels in line with the grid.
    void sync();
    void applyStackVisibility();
    void advanceStacks(const QDateTime& now);
    void stepStack(const QUuid& stackID, int step);
    bool isHiddenStackMember(const QUuid& id) const;
    void resolveAllOverlaps();
    QString layoutSignature() const;

    void setVeil(bool veiled);
    bool isVeiled() const { return m_veiled; }
    void adoptArrangement(const ScreenTopologyWatcher::Change& change);
    void reassertAfterDisplaysReturned();
    void scheduleOcclusionRefresh();
    void refreshOcclusion();

    // The panel's size for a tile: the tile grown by the margin on every side.
    static QSizeF windowSize(const WidgetInstance& instance);
    // The panel origin (lower-left, internal points) for a tile, clamped into its display.
    QPointF origin(const WidgetInstance& instance, const QSizeF& size) const;
    QRectF visibleFrame(const QPointF& tileTopLeft, const QSizeF& tileSize) const;
    std::optional<QRectF> resolveBounds(const DesktopPanel& panel) const;
    // The visible frame of the display a tile rectangle belongs to; none without displays.
    std::optional<QRectF> tileBounds(const QRectF& tile) const;

    // Widgets parked here until their own display returns.
    int visitorCount() const;

    // The desktop's look as "Automatic" glass follows it.
    ThemeStore::SystemAppearance systemAppearance() const;

    // Context menu and its actions.
    QMenu* contextMenu(const QUuid& id);
    void setWidgetSize(const QUuid& id, WidgetSize size);
    void setGlassStyle(ThemeStore::GlassStyle style);
    void setStackRotate(const QUuid& stackID, int seconds);
    void showNextInStack(const QUuid& stackID);
    void removeWidget(const QUuid& id);
    void unstackWidget(const QUuid& id);
    void openWidgetSettings(const QUuid& id);
    // Opens an instance's page in the configuration window; set by the application.
    std::function<void(const QUuid&)> widgetSettingsOpener;

    // The drop at the end of a drag.
    void handleDragEnded(const QUuid& draggedID);
    bool handlePlainClick(const QUuid& id, QPointF point);

    // For tests and the status menu.
    DesktopPanel* panel(const QUuid& id) const;
    PanelState* panelState(const QUuid& id) const;
    QList<QUuid> panelIDs() const;
    int activeIndex(const QUuid& stackID) const;
    bool isDragging() const { return m_isDragging; }

Q_SIGNALS:
    // After every sync: the panels stand where the grid says.
    void synced();

private:
    struct Entry {
        std::unique_ptr<DesktopPanel> panel;
        std::unique_ptr<PanelState> state;
        std::unique_ptr<TimeSource> time;
        WidgetInstance instance;
        bool covered = false;
    };

    QList<WidgetInstance> desktopInstances() const;
    // Every stack's members in stack order, and the members not on show.
    QHash<QUuid, QList<QUuid>> stacks() const;
    QSet<QUuid> hiddenStackMembers() const;
    void spawn(const WidgetInstance& instance);
    void refreshContent(Entry& entry);
    void refreshAllContent();
    bool isTypedInto(const QString& kind) const;
    void reseed(Entry& entry);
    void placeUnpositioned();
    // Moves a tile, with its stack, off the tiles it overlaps, the spacing apart within its
    // display, as the drop does; writes only when it moves.
    void pushOffNeighbours(const QUuid& id);
    void updateDesktopActive();
    void fadePanels(double opacity);
    bool handleScroll(const QUuid& id, const StackScrollGesture::Event& event);
    QList<QRectF> otherTileRects(const QUuid& id) const;
    QList<ScreenInfo> screens() const;
    QRectF mainVisibleFrame() const;

    Services m_services;
    TileRenderer m_renderer;
    std::map<QUuid, Entry> m_panels;
    StackRotation m_rotation;
    StackScrollGesture m_stackScroll;
    QHash<QObject*, QUuid> m_windows;
    bool m_isVisible = false;
    bool m_isDragging = false;
    QUuid m_draggingID;
    bool m_isResolvingOverlaps = false;
    QString m_sweptSignature;
    bool m_veiled = false;
    ScheduledTask m_veilTask;
    ScheduledTask m_occlusionTask;
    std::vector<ScheduledTask> m_wakeTasks;
    bool m_syncing = false;
};

} // namespace tw
