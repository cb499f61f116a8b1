// The one owner of the desktop's arrangement: loads and heals "grid.json", publishes every change,
// writes it back at once, keeps stacks consistent and remembers what can be undone.
#pragma once

#include "grid/DesktopPreset.h"
#include "grid/LayoutHistory.h"
#include "model/GridCell.h"
#include "model/GridLayout.h"
#include "model/Metrics.h"
#include "platform/Displays.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointF>
#include <QSet>
#include <QUuid>

#include <chrono>
#include <optional>
#include <vector>

namespace tw {

class Clock;
class CustomStoreHealth;
class DefinitionCache;
class Defaults;
class Scheduler;
class WidgetRegistry;

class GridStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(tw::GridLayout layout READ layout NOTIFY layoutChanged)
    Q_PROPERTY(QUuid highlightedID READ highlightedID NOTIFY highlightedIDChanged)
    Q_PROPERTY(int historyRevision READ historyRevision NOTIFY historyRevisionChanged)

public:
    // What the store works with; all must outlive it. Only the application's store uses
    // `defaults`; without `displays` there is no screen; without `customHealth` the custom widget
    // store counts as unreadable, so custom widgets without a definition are kept.
    struct Services {
        const Clock& clock;
        Scheduler& scheduler;
        const WidgetRegistry& registry;
        Defaults* defaults = nullptr;
        const Displays* displays = nullptr;
        const CustomStoreHealth* customHealth = nullptr;
    };

    struct AppendResult {
        QList<WidgetInstance> placed;
        QList<WidgetInstance> refused;
    };

    static constexpr std::chrono::milliseconds highlightDuration{2200};
    // Distance from the screen's top-left corner of a preset's first cell, and a cell's pitch.
    static constexpr double presetInset = Metrics::screenMargin;
    static constexpr double presetPitch = Metrics::cellPitch;

    // The application's store on "grid.json" in the data directory: a missing file is a first
    // start, and saves tell the topology memory (saved()) and write user defaults.
    explicit GridStore(const Services& services, QObject* parent = nullptr);
    // A store on `fileURL` (previews, imports): no first start, no shared state.
    GridStore(const Services& services, const QString& fileURL, QObject* parent = nullptr);

    const GridLayout& layout() const { return m_layout; }
    QUuid highlightedID() const { return m_highlightedID; }
    std::optional<QDateTime> lastSavedAt() const { return m_lastSavedAt; }
    QString fileURL() const { return m_fileURL; }
    bool ownsSharedState() const { return m_ownsSharedState; }

    // The page's instances: placed ones by row and column, then the unplaced by creation order.
    QList<WidgetInstance> instances(int page) const;
    // The lowest row reached by a placed instance of the page, held to 3 ... 10.
    int displayRows(int page) const;
    // Instances of exactly this kind string.
    int instanceCount(const QString& kind) const;
    std::optional<WidgetInstance> instance(const QUuid& id) const;

    // Adds one widget, without a desktop position unless `origin` is given. Nothing when the kind
    // is unknown or at its maximum. A further one of a kind leaves the content settings behind.
    std::optional<WidgetInstance>
    addFree(const QString& kind, std::optional<WidgetSize> size = std::nullopt,
            const std::optional<WidgetSettings>& settings = std::nullopt,
            std::optional<QPointF> origin = std::nullopt);
    void remove(const QUuid& id);
    // Removes every instance of the kind and gives how many there were.
    int removeAll(const QString& kind);
    // Heals and takes the whole layout; this can't be undone.
    void replaceLayout(const GridLayout& layout);
    // Gives the tiles without a desktop position their first one from `places` (keyed by the
    // stack's id for a member of a stack, else by the tile's) and writes them without a step of
    // history, which stays as it was: placing tiles nobody placed is no change of the user's, and
    // undoing it would only have them placed again. Called while a change is published (an
    // addition), the places join that change instead.
    void placeUnpositioned(const QHash<QUuid, QPointF>& places);

    enum class Replacing { no, yes };
    // Adds the preset's entries below the main screen's top-left corner; gives the count added.
    int apply(const DesktopPreset& preset, Replacing replacing);
    // Adds foreign instances as they stand, refusing unknown kinds and kinds at their maximum.
    AppendResult append(const QList<WidgetInstance>& instances, Replacing replacing);
    // Points out an instance for a while.
    void highlight(const QUuid& id);
    // Writes the file and records history; a failed write is logged and changes nothing.
    void save();

    // Where a new tile of this kind lands on `screen` (else the main screen, else the first):
    // its (posX, posY), or nothing on a full screen, for a tile too large, or without a screen.
    std::optional<QPointF> freeSpot(const QString& kind, WidgetSize size,
                                    const std::optional<WidgetSettings>& settings,
                                    const std::optional<ScreenInfo>& screen = std::nullopt) const;
    // Moves a tile, and the whole stack it is in, then saves.
    void updatePosition(const QUuid& id, double x, double y);
    // Moves several tiles (top-left corners), stacks whole, as one change: one save, one step of
    // history.
    void updatePositions(const QList<std::pair<QUuid, QPointF>>& moves);
    // Gives the tiles a new size, and with them every member of a stack any of them is in, since
    // a stack holds one size; then saves, so the change can be undone like any other.
    void setSize(const QList<QUuid>& ids, WidgetSize size);
    // Sets one of a tile's settings (an empty value removes the key), then saves; nothing when
    // the value is already so.
    void setSetting(const QUuid& id, const QString& key, const QString& value);
    // Whether a write is a step the person can undo, or state a tile keeps as it runs (a timer's
    // end), which history takes as it stands.
    enum class History { step, adopted };
    // Gives a tile these settings in place of its own (a key with an empty value is left out), as
    // one change: one save, one step of history unless adopted; nothing when they are already so.
    void replaceSettings(const QUuid& id, const WidgetSettings& settings,
                         History history = History::step);

    // Stacks: members sorted by stackIndex; the rhythm in seconds (0 when unknown).
    QList<WidgetInstance> stackMembers(const QUuid& stackID) const;
    int stackSeconds(const QUuid& stackID) const;
    void setStackSeconds(const QUuid& stackID, int seconds);
    // Puts `dragged` (with its whole stack, if any) on top of `onto`'s stack, at its place and in
    // its size. Nothing for equal ids, unknown ids, or members of one stack already.
    void groupIntoStack(const QUuid& dragged, const QUuid& onto);
    // Takes one widget out (a stack of one left dissolves) and moves it beside where it stood:
    // to the right on the same row, the spacing apart. A widget outside a stack moves alike.
    void removeFromStack(const QUuid& id);

    // History: false when there is nothing to go back (forward) to.
    bool undo();
    bool redo();
    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }
    void resetHistory();
    int historyRevision() const { return m_historyRevision; }

    // The size from `sizes` nearest to `wanted`: least distance in columns plus rows, then the
    // nearest aspect ratio, then the fewest cells; the first of full ties; `wanted` if empty.
    static WidgetSize nearest(WidgetSize wanted, const QList<WidgetSize>& sizes);
    static QSet<GridCell> cellsCovered(int col, int row, WidgetSize size);
    // The first origin, row by row from the top-left, whose cells are all free.
    static std::optional<GridCell> freeSlot(const QSet<GridCell>& occupied, WidgetSize size);

Q_SIGNALS:
    void layoutChanged();
    void highlightedIDChanged();
    void historyRevisionChanged();
    // Every save of the application's store, written or not, with the layout being saved; the
    // topology memory remembers from it where each tile stands on the current displays.
    void saved(const tw::GridLayout& layout);

private:
    enum class SharedState { owned, none };

    GridStore(const Services& services, const QString& fileURL, SharedState sharedState,
              QObject* parent);
    GridLayout load();
    void write();

    // Healing, on a layout that nobody observes yet. The cache asks for each kind once.
    void heal(GridLayout& layout) const;
    void dropUnknownKinds(GridLayout& layout, DefinitionCache& definitions) const;
    static void snapRetiredSizes(GridLayout& layout, DefinitionCache& definitions);
    static void normalizePlacements(GridLayout& layout);
    // Placed ones by row, then column, before unplaced ones; unplaced ones by order.
    static bool placementOrder(const WidgetInstance& a, const WidgetInstance& b);
    // Clears the stack fields of the instance at `index`.
    static void detach(GridLayout& layout, int index);
    // Renumbers a stack 0, 1, 2 ... keeping its order.
    static void normalizeStack(GridLayout& layout, const QUuid& stackID);
    // After members left: one left over is detached, more are renumbered.
    static void repairStack(GridLayout& layout, const QUuid& stackID);

    void setLayout(GridLayout layout);
    void removeEverything();
    int indexOf(const QUuid& id) const;
    int nextOrder() const;
    std::optional<ScreenInfo> mainScreen() const;

    void recordHistory();
    void applyHistory(const GridLayout& layout);
    void bumpHistoryRevision();

    const Clock& m_clock;
    Scheduler& m_scheduler;
    const WidgetRegistry& m_registry;
    Defaults* m_defaults;
    const Displays* m_displays;
    const CustomStoreHealth* m_customHealth;

    GridLayout m_layout;
    QUuid m_highlightedID;
    std::optional<QDateTime> m_lastSavedAt;
    const QString m_fileURL;
    const bool m_ownsSharedState;
    // Something other than a data file sits at m_fileURL; it is never written over.
    bool m_fileLeftAlone = false;

    LayoutHistory m_history;
    bool m_applyingHistory = false;
    // The next save becomes the baseline of history without a step of its own.
    bool m_adoptingSave = false;
    // True while observers hear of a change that its operation has yet to save.
    bool m_publishing = false;
    int m_historyRevision = 0;
    std::vector<ScheduledTask> m_highlightTasks;
};

} // namespace tw
