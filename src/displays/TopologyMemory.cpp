#include "displays/TopologyMemory.h"

#include "displays/LayoutProfileResolver.h"
#include "displays/ScreenTopologyWatcher.h"
#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcTopology, "Topology")

std::optional<QJsonDocument> parseJson(const QByteArray& bytes) {
    QJsonParseError error{};
    QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        return std::nullopt;
    }
    return document;
}

AtomicFile::Result writeJson(const QString& path, const QJsonDocument& document) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    return AtomicFile::write(path, document.toJson(QJsonDocument::Compact));
}

} // namespace

TopologyMemory::TopologyMemory(const ScreenTopologyWatcher& watcher, const Clock& clock,
                               const QString& filePath, QObject* parent)
    : QObject(parent)
    , m_watcher(watcher)
    , m_clock(clock)
    , m_filePath(filePath.isEmpty()
                     ? QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("topology.json"))
                     : filePath) {
    const QFileInfo info(m_filePath);
    m_homesPath = info.dir().filePath(info.completeBaseName() + QStringLiteral(".homes.json"));
    load();
    loadHomes();
}

void TopologyMemory::remember(const GridLayout& layout, const QList<LayoutDisplay>& displays) {
    if (m_watcher.isSettling() || !LayoutProfileResolver::isUsableTopology(displays)) {
        return;
    }
    const QString signature = LayoutProfileResolver::topologySignature(displays);
    // Parked visitors keep their homes through the earlier placements handed in here.
    LayoutProfileSnapshot snapshot =
        LayoutProfileResolver::snapshot(layout, displays, allHomes(), m_clock.now());
    // Whole replacement: a widget that left the layout loses its home.
    setHomesFrom(snapshot.placements);
    m_snapshots.insert(signature, snapshot);
    m_currentSignature = signature;
    save();
    saveHomes();
}

std::optional<GridLayout> TopologyMemory::layoutForSettled(const QList<LayoutDisplay>& displays,
                                                           const GridLayout& current) {
    if (!LayoutProfileResolver::isUsableTopology(displays)) {
        return std::nullopt;
    }
    const QString signature = LayoutProfileResolver::topologySignature(displays);
    if (m_currentSignature == signature) {
        return std::nullopt;
    }
    adoptHomesFromSnapshotsIfNeeded();

    const LayoutProfileSnapshot* leaving = nullptr;
    if (m_currentSignature) {
        const auto it = m_snapshots.constFind(*m_currentSignature);
        if (it != m_snapshots.constEnd()) {
            leaving = &*it;
        }
    }
    if (leaving == nullptr) {
        leaving = newestSnapshot();
    }
    // A widget added since the last remember has no home yet: it gets one from where it stood on
    // the configuration being left. Existing homes stay as they are.
    const bool someoneHomeless =
        std::any_of(current.instances.begin(), current.instances.end(),
                    [this](const WidgetInstance& widget) { return !m_homes.contains(widget.id); });
    if (leaving != nullptr && someoneHomeless) {
        const LayoutProfileSnapshot capture =
            LayoutProfileResolver::snapshot(current, leaving->displays, allHomes(), m_clock.now());
        for (const LayoutWidgetPlacement& placement : capture.placements) {
            if (!m_homes.contains(placement.widgetID)) {
                m_homes.insert(placement.widgetID, placement);
            }
        }
    }
    if (m_homes.isEmpty()) {
        m_currentSignature = signature;
        return std::nullopt;
    }

    qCInfo(lcTopology, "display configuration changed — placing every widget from its home");
    const QList<LayoutWidgetPlacement> homes = allHomes();
    GridLayout remapped = LayoutProfileResolver::remap(current, homes, displays);
    m_currentSignature = signature;
    m_snapshots.insert(signature,
                       LayoutProfileResolver::snapshot(remapped, displays, homes, m_clock.now()));
    // The homes file stays as it is: a parked visitor's home must not be rewritten.
    save();
    if (remapped == current) {
        return std::nullopt;
    }
    return remapped;
}

void TopologyMemory::adoptHomesFromSnapshotsIfNeeded() {
    if (!m_homes.isEmpty()) {
        return;
    }
    const LayoutProfileSnapshot* newest = newestSnapshot();
    if (newest == nullptr) {
        return;
    }
    setHomesFrom(newest->placements);
    saveHomes();
}

bool TopologyMemory::isVisitor(const QUuid& id, const QList<LayoutDisplay>& displays) const {
    const auto home = m_homes.constFind(id);
    if (home == m_homes.constEnd()) {
        return false;
    }
    // Ids first: comparing names folds them, which costs far more.
    if (std::any_of(displays.begin(), displays.end(),
                    [&](const LayoutDisplay& display) { return display.id == home->displayID; })) {
        return false;
    }
    return home->displayName.isEmpty() ||
           std::none_of(displays.begin(), displays.end(), [&](const LayoutDisplay& display) {
               return LayoutDisplay::namesMatch(display.name, home->displayName);
           });
}

void TopologyMemory::load() {
    QJsonObject object;
    const DataFile::Outcome outcome =
        DataFile::load(m_filePath, m_clock.now(), [&object](const QByteArray& bytes) {
            const auto document = parseJson(bytes);
            object = document ? document->object() : QJsonObject();
            return document && document->isObject();
        });
    m_fileLeftAlone = outcome == DataFile::Outcome::leftAlone;
    if (outcome == DataFile::Outcome::setAside) {
        qCWarning(lcTopology, "topology memory unreadable — starting fresh");
    }
    if (outcome != DataFile::Outcome::loaded && outcome != DataFile::Outcome::recovered) {
        return;
    }

    QMap<QString, LayoutProfileSnapshot> original;
    qsizetype placementless = 0;
    for (auto it = object.begin(); it != object.end(); ++it) {
        auto snapshot = LayoutProfileSnapshot::fromJson(it.value());
        if (!snapshot) {
            continue;
        }
        if (snapshot->placements.isEmpty()) {
            ++placementless;
            continue;
        }
        original.insert(it.key(), *snapshot);
    }
    if (placementless > 0) {
        qCInfo(lcTopology, "dropped %lld placement-less snapshot(s)",
               static_cast<long long>(placementless));
    }

    // Keys are recomputed from each snapshot's own displays, so files written under an older
    // form of the signature are filed where the current code will look for them.
    QMap<QString, LayoutProfileSnapshot> rebuilt;
    for (const LayoutProfileSnapshot& snapshot : std::as_const(original)) {
        const LayoutProfileSnapshot upgraded = LayoutProfileResolver::upgraded(snapshot);
        const QString key = LayoutProfileResolver::topologySignature(upgraded.displays);
        const auto existing = rebuilt.constFind(key);
        if (existing == rebuilt.constEnd() || upgraded.capturedAt > existing->capturedAt) {
            rebuilt.insert(key, upgraded);
        }
    }
    if (rebuilt == original) {
        m_snapshots = std::move(rebuilt);
        return;
    }
    keepBackupOfOriginalFile();
    const qsizetype before = original.size();
    m_snapshots = std::move(rebuilt);
    qCInfo(lcTopology, "topology memory migrated: %lld → %lld configuration(s)",
           static_cast<long long>(before), static_cast<long long>(m_snapshots.size()));
    save();
}

void TopologyMemory::loadHomes() {
    // Any failure leaves the homes empty without a word of its own; an unreadable file is set
    // aside rather than overwritten by the next save.
    QJsonArray array;
    const DataFile::Outcome outcome =
        DataFile::load(m_homesPath, m_clock.now(), [&array](const QByteArray& bytes) {
            const auto document = parseJson(bytes);
            array = document ? document->array() : QJsonArray();
            return document && document->isArray();
        });
    m_homesLeftAlone = outcome == DataFile::Outcome::leftAlone;
    for (const auto& value : std::as_const(array)) {
        if (auto placement = LayoutWidgetPlacement::fromJson(value)) {
            if (!m_homes.contains(placement->widgetID)) {
                m_homes.insert(placement->widgetID, *placement);
            }
        }
    }
}

void TopologyMemory::save() {
    if (m_snapshots.size() > maxConfigurations) {
        QList<QString> keys = m_snapshots.keys();
        std::stable_sort(keys.begin(), keys.end(), [this](const QString& a, const QString& b) {
            return m_snapshots[a].capturedAt > m_snapshots[b].capturedAt;
        });
        for (qsizetype i = maxConfigurations; i < keys.size(); ++i) {
            m_snapshots.remove(keys[i]);
        }
    }
    if (m_fileLeftAlone) {
        return;
    }
    QJsonObject object;
    for (auto it = m_snapshots.cbegin(); it != m_snapshots.cend(); ++it) {
        object.insert(it.key(), it.value().toJson());
    }
    if (const auto result = writeJson(m_filePath, QJsonDocument(object)); !result) {
        qCCritical(lcTopology, "could not save topology memory: %s", qUtf8Printable(result.error));
    }
}

void TopologyMemory::saveHomes() {
    if (m_homesLeftAlone) {
        return;
    }
    QJsonArray array;
    for (const LayoutWidgetPlacement& home : allHomes()) {
        array.append(home.toJson());
    }
    if (const auto result = writeJson(m_homesPath, QJsonDocument(array)); !result) {
        qCCritical(lcTopology, "could not save widget homes: %s", qUtf8Printable(result.error));
    }
}

void TopologyMemory::keepBackupOfOriginalFile() {
    const QString backup = backupPath();
    if (QFileInfo::exists(backup)) {
        return;
    }
    // Best effort: the migration goes ahead without its backup.
    QFile::copy(m_filePath, backup);
}

void TopologyMemory::setHomesFrom(const QList<LayoutWidgetPlacement>& placements) {
    m_homes.clear();
    for (const LayoutWidgetPlacement& placement : placements) {
        if (!m_homes.contains(placement.widgetID)) {
            m_homes.insert(placement.widgetID, placement);
        }
    }
}

QList<LayoutWidgetPlacement> TopologyMemory::allHomes() const {
    QList<LayoutWidgetPlacement> homes = m_homes.values();
    // A fixed order keeps the homes file stable from one save to the next.
    std::sort(homes.begin(), homes.end(),
              [](const LayoutWidgetPlacement& a, const LayoutWidgetPlacement& b) {
                  return a.widgetID.toString() < b.widgetID.toString();
              });
    return homes;
}

const LayoutProfileSnapshot* TopologyMemory::newestSnapshot() const {
    const LayoutProfileSnapshot* newest = nullptr;
    for (const LayoutProfileSnapshot& snapshot : m_snapshots) {
        if (newest == nullptr || snapshot.capturedAt > newest->capturedAt) {
            newest = &snapshot;
        }
    }
    return newest;
}

} // namespace tw
