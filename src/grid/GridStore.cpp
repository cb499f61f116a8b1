#include "grid/GridStore.h"

#include "grid/CustomStoreHealth.h"
#include "grid/DefinitionCache.h"
#include "grid/FreeSpot.h"
#include "grid/RectEdges.h"
#include "model/Metrics.h"
#include "model/WidgetRegistry.h"
#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/Defaults.h"
#include "platform/Scheduler.h"

#include <QDir>
#include <QHash>
#include <QLoggingCategory>

#include <algorithm>
#include <limits>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcGridStore, "GridStore")

const QString kWeatherKind = QStringLiteral("weather");
const QString kWeatherUserPlaced = QStringLiteral("tarnwick.weather.userPlaced");

QHash<QString, int> countKinds(const QList<WidgetInstance>& instances) {
    QHash<QString, int> counts;
    for (const WidgetInstance& instance : instances) {
        ++counts[instance.kind];
    }
    return counts;
}
} // namespace

GridStore::GridStore(const Services& services, QObject* parent)
    : GridStore(services, QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("grid.json")),
                SharedState::owned, parent) {}

GridStore::GridStore(const Services& services, const QString& fileURL, QObject* parent)
    : GridStore(services, fileURL, SharedState::none, parent) {}

GridStore::GridStore(const Services& services, const QString& fileURL, SharedState sharedState,
                     QObject* parent)
    : QObject(parent)
    , m_clock(services.clock)
    , m_scheduler(services.scheduler)
    , m_registry(services.registry)
    , m_defaults(services.defaults)
    , m_displays(services.displays)
    , m_customHealth(services.customHealth)
    , m_fileURL(fileURL)
    , m_ownsSharedState(sharedState == SharedState::owned) {
    m_layout = load();
    // Nothing of the load can be undone, and the healed layout waits for the next change to be
    // written.
    m_history.reset(m_layout);
}

GridLayout GridStore::load() {
    std::optional<GridLayout> decoded;
    const DataFile::Outcome outcome =
        DataFile::load(m_fileURL, m_clock.now(), [&decoded](const QByteArray& bytes) {
            decoded = GridLayout::fromJsonText(bytes);
            return decoded.has_value();
        });
    m_fileLeftAlone = outcome == DataFile::Outcome::leftAlone;
    GridLayout start;
    if (decoded) {
        start = std::move(*decoded);
    } else if (m_ownsSharedState && outcome == DataFile::Outcome::missing) {
        start = GridLayout::firstDesktop();
    } else {
        start = GridLayout::defaultLayout();
    }
    heal(start);
    return start;
}

void GridStore::setLayout(GridLayout layout) {
    if (layout == m_layout) {
        return;
    }
    m_layout = std::move(layout);
    const bool publishing = m_publishing;
    m_publishing = true;
    Q_EMIT layoutChanged();
    m_publishing = publishing;
}

int GridStore::indexOf(const QUuid& id) const {
    for (qsizetype i = 0; i < m_layout.instances.size(); ++i) {
        if (m_layout.instances.at(i).id == id) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::optional<WidgetInstance> GridStore::instance(const QUuid& id) const {
    const int index = indexOf(id);
    if (index < 0) {
        return std::nullopt;
    }
    return m_layout.instances.at(index);
}

int GridStore::nextOrder() const {
    if (m_layout.instances.isEmpty()) {
        return 0;
    }
    const auto highest = std::max_element(
        m_layout.instances.cbegin(), m_layout.instances.cend(),
        [](const WidgetInstance& a, const WidgetInstance& b) { return a.order < b.order; });
    // A file may hold any order; the largest stays the largest rather than wrapping around.
    return std::min(highest->order, std::numeric_limits<int>::max() - 1) + 1;
}

QList<WidgetInstance> GridStore::instances(int page) const {
    QList<WidgetInstance> onPage;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (instance.page == page) {
            onPage.append(instance);
        }
    }
    std::stable_sort(onPage.begin(), onPage.end(), placementOrder);
    return onPage;
}

int GridStore::displayRows(int page) const {
    int lowest = 0;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (instance.page == page && instance.isPlaced()) {
            lowest =
                std::max(lowest, std::min(instance.row, Metrics::gridRows) + rows(instance.size));
        }
    }
    return std::clamp(lowest, 3, Metrics::gridRows);
}

int GridStore::instanceCount(const QString& kind) const {
    return static_cast<int>(
        std::count_if(m_layout.instances.cbegin(), m_layout.instances.cend(),
                      [&](const WidgetInstance& instance) { return instance.kind == kind; }));
}

std::optional<WidgetInstance> GridStore::addFree(const QString& kind,
                                                 std::optional<WidgetSize> size,
                                                 const std::optional<WidgetSettings>& settings,
                                                 std::optional<QPointF> origin) {
    // Placing weather by hand, even in vain, keeps the automatic first placement away.
    if (m_ownsSharedState && m_defaults != nullptr && kind == kWeatherKind) {
        m_defaults->setValue(kWeatherUserPlaced, true);
    }
    const std::optional<WidgetDefinition> definition = m_registry.definition(kind);
    if (!definition || instanceCount(kind) >= WidgetRegistry::maxInstances(kind)) {
        return std::nullopt;
    }
    WidgetSettings own = settings.value_or(WidgetSettings());
    if (instanceCount(kind) > 0) {
        // A copy keeps the look and leaves the content behind.
        for (const QString& key : WidgetRegistry::contentKeys(kind)) {
            own.remove(key);
        }
    }
    WidgetInstance added;
    added.kind = kind;
    added.size = size.value_or(definition->metadata.defaultSize);
    added.order = nextOrder();
    if (!own.isEmpty()) {
        added.settings = std::move(own);
    }
    if (origin) {
        added.posX = origin->x();
        added.posY = origin->y();
    }
    GridLayout next = m_layout;
    next.instances.append(added);
    setLayout(std::move(next));
    save();
    return added;
}

void GridStore::remove(const QUuid& id) {
    const int index = indexOf(id);
    if (index < 0) {
        return;
    }
    GridLayout next = m_layout;
    const WidgetInstance removed = next.instances.takeAt(index);
    if (removed.stackID) {
        repairStack(next, *removed.stackID);
    }
    setLayout(std::move(next));
    save();
}

void GridStore::setSetting(const QUuid& id, const QString& key, const QString& value) {
    const int index = indexOf(id);
    if (index < 0) {
        return;
    }
    GridLayout next = m_layout;
    WidgetInstance& instance = next.instances[index];
    WidgetSettings settings = instance.settings.value_or(WidgetSettings());
    if (value.isEmpty() ? settings.remove(key) == 0 : settings.value(key) == value) {
        return;
    }
    if (!value.isEmpty()) {
        settings.insert(key, value);
    }
    instance.settings = settings.isEmpty() ? std::nullopt : std::make_optional(settings);
    setLayout(std::move(next));
    save();
}

void GridStore::replaceSettings(const QUuid& id, const WidgetSettings& settings, History history) {
    const int index = indexOf(id);
    if (index < 0) {
        return;
    }
    WidgetSettings kept;
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        if (!it.value().isEmpty()) {
            kept.insert(it.key(), it.value());
        }
    }
    GridLayout next = m_layout;
    WidgetInstance& instance = next.instances[index];
    if (instance.settings.value_or(WidgetSettings()) == kept) {
        return;
    }
    instance.settings = kept.isEmpty() ? std::nullopt : std::make_optional(kept);
    setLayout(std::move(next));
    m_adoptingSave = history == History::adopted;
    save();
    m_adoptingSave = false;
}

int GridStore::removeAll(const QString& kind) {
    QList<QUuid> ids;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (instance.kind == kind) {
            ids.append(instance.id);
        }
    }
    for (const QUuid& id : ids) {
        remove(id);
    }
    return static_cast<int>(ids.size());
}

void GridStore::replaceLayout(const GridLayout& layout) {
    GridLayout next = layout;
    heal(next);
    setLayout(std::move(next));
    save();
    resetHistory();
}

void GridStore::placeUnpositioned(const QHash<QUuid, QPointF>& places) {
    GridLayout next = m_layout;
    for (WidgetInstance& instance : next.instances) {
        const auto place = places.constFind(instance.stackID.value_or(instance.id));
        if (place != places.cend() && (!instance.posX || !instance.posY)) {
            instance.posX = place->x();
            instance.posY = place->y();
        }
    }
    if (next == m_layout) {
        return;
    }
    setLayout(std::move(next));
    // Asked while a change is being published, the places belong to that change: its own save
    // writes and records them with it, so that undoing an addition takes the tile away.
    if (m_publishing) {
        return;
    }
    m_adoptingSave = true;
    save();
    m_adoptingSave = false;
}

std::optional<ScreenInfo> GridStore::mainScreen() const {
    if (m_displays == nullptr) {
        return std::nullopt;
    }
    const QList<ScreenInfo> screens = m_displays->screens();
    const auto main = std::find_if(screens.cbegin(), screens.cend(),
                                   [](const ScreenInfo& screen) { return screen.isMain; });
    if (main != screens.cend()) {
        return *main;
    }
    if (!screens.isEmpty()) {
        return screens.first();
    }
    return std::nullopt;
}

void GridStore::removeEverything() {
    // One by one, as a user would: each removal is saved and recorded.
    const QList<WidgetInstance> current = m_layout.instances;
    for (const WidgetInstance& instance : current) {
        remove(instance.id);
    }
}

int GridStore::apply(const DesktopPreset& preset, Replacing replacing) {
    if (replacing == Replacing::yes) {
        removeEverything();
    }
    const std::optional<ScreenInfo> screen = mainScreen();
    const QRectF frame = screen ? screen->visibleFrame : QRectF(Metrics::fallbackScreen);
    const QPointF base(RectEdges::minX(frame) + presetInset, RectEdges::maxY(frame) - presetInset);
    GridLayout next = m_layout;
    int order = nextOrder();
    int added = 0;
    QHash<QString, int> counts = countKinds(next.instances);
    for (const DesktopPreset::Entry& entry : preset.availableEntries(m_registry)) {
        if (!m_registry.definition(entry.kind) ||
            counts.value(entry.kind) >= WidgetRegistry::maxInstances(entry.kind)) {
            continue;
        }
        WidgetInstance instance;
        instance.kind = entry.kind;
        instance.size = entry.size;
        instance.settings = entry.settings;
        instance.order = order++;
        instance.col = entry.col;
        instance.row = entry.row;
        instance.posX = base.x() + entry.col * presetPitch;
        instance.posY = base.y() - entry.row * presetPitch;
        next.instances.append(instance);
        ++counts[entry.kind];
        ++added;
    }
    setLayout(std::move(next));
    save();
    return added;
}

GridStore::AppendResult GridStore::append(const QList<WidgetInstance>& instances,
                                          Replacing replacing) {
    if (replacing == Replacing::yes) {
        removeEverything();
    }
    AppendResult result;
    GridLayout next = m_layout;
    QHash<QString, int> counts = countKinds(next.instances);
    for (const WidgetInstance& instance : instances) {
        if (!m_registry.definition(instance.kind) ||
            counts.value(instance.kind) >= WidgetRegistry::maxInstances(instance.kind)) {
            result.refused.append(instance);
            continue;
        }
        next.instances.append(instance);
        ++counts[instance.kind];
        result.placed.append(instance);
    }
    // Foreign stacks come as they stand, but a stack left with one member is no stack.
    QSet<QUuid> stackIDs;
    for (const WidgetInstance& instance : std::as_const(result.placed)) {
        if (instance.stackID) {
            stackIDs.insert(*instance.stackID);
        }
    }
    for (const QUuid& stackID : std::as_const(stackIDs)) {
        repairStack(next, stackID);
    }
    next.pageCount = GridLayout::pageCountFor(next.pageCount, next.instances);
    setLayout(std::move(next));
    save();
    return result;
}

void GridStore::highlight(const QUuid& id) {
    if (m_highlightedID != id) {
        m_highlightedID = id;
        Q_EMIT highlightedIDChanged();
    }
    std::erase_if(m_highlightTasks, [](const ScheduledTask& task) { return !task.isActive(); });
    // A later highlight doesn't cancel this task; the check on the id keeps it from clearing it.
    m_highlightTasks.push_back(
        m_scheduler.singleShot(highlightDuration, std::chrono::milliseconds(100), this, [this, id] {
            if (m_highlightedID == id) {
                m_highlightedID = QUuid();
                Q_EMIT highlightedIDChanged();
            }
        }));
}

void GridStore::save() {
    if (m_ownsSharedState) {
        Q_EMIT saved(m_layout);
    }
    if (!m_fileLeftAlone) {
        write();
    }
    recordHistory();
}

void GridStore::write() {
    GridLayout stamped = m_layout;
    const QDateTime now = m_clock.now();
    stamped.savedAt = now;
    const AtomicFile::Result result = AtomicFile::write(m_fileURL, stamped.toJsonText());
    if (result) {
        m_lastSavedAt = now;
    } else {
        qCWarning(lcGridStore, "save failed, the next change tries again: %s",
                  qUtf8Printable(result.error));
    }
}

std::optional<QPointF> GridStore::freeSpot(const QString& kind, WidgetSize size,
                                           const std::optional<WidgetSettings>& settings,
                                           const std::optional<ScreenInfo>& screen) const {
    const std::optional<ScreenInfo> target = screen ? screen : mainScreen();
    if (!target) {
        return std::nullopt;
    }
    WidgetInstance probe;
    probe.kind = kind;
    probe.size = size;
    probe.settings = settings;
    const QRectF frame = target->visibleFrame;
    QList<QRectF> occupied;
    for (const WidgetInstance& instance : m_layout.instances) {
        if (!instance.posX || !instance.posY) {
            continue;
        }
        const QRectF rect =
            RectEdges::tileRect(*instance.posX, *instance.posY, instance.pixelSize());
        if (rect.intersects(frame)) {
            occupied.append(rect);
        }
    }
    return FreeSpot::find(probe.pixelSize(), frame, occupied);
}

void GridStore::recordHistory() {
    if (m_applyingHistory || m_adoptingSave) {
        m_history.adopt(m_layout);
        return;
    }
    if (m_history.record(m_layout, m_clock.uptime()) == LayoutHistory::Recorded::change) {
        bumpHistoryRevision();
    }
}

bool GridStore::undo() {
    const std::optional<GridLayout> target = m_history.takeUndo(m_layout);
    if (!target) {
        return false;
    }
    applyHistory(*target);
    return true;
}

bool GridStore::redo() {
    const std::optional<GridLayout> target = m_history.takeRedo(m_layout);
    if (!target) {
        return false;
    }
    applyHistory(*target);
    return true;
}

void GridStore::applyHistory(const GridLayout& layout) {
    m_applyingHistory = true;
    GridLayout next = layout;
    // A custom widget may have been deleted since this layout was recorded.
    DefinitionCache definitions(m_registry);
    dropUnknownKinds(next, definitions);
    setLayout(std::move(next));
    save();
    m_applyingHistory = false;
    bumpHistoryRevision();
}

void GridStore::resetHistory() {
    m_history.reset(m_layout);
    bumpHistoryRevision();
}

void GridStore::bumpHistoryRevision() {
    ++m_historyRevision;
    Q_EMIT historyRevisionChanged();
}

} // namespace tw
