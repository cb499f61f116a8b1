// Remembers where every widget belongs — its home display and its distance from that display's
// edges — so that each tile returns to its exact spot when its monitor comes back.
#pragma once

#include "displays/LayoutDisplay.h"
#include "displays/LayoutProfileSnapshot.h"
#include "displays/LayoutWidgetPlacement.h"
#include "model/GridLayout.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

class Clock;
class ScreenTopologyWatcher;

class TopologyMemory final : public QObject {
    Q_OBJECT
public:
    // Display configurations kept after a save.
    static constexpr int maxConfigurations = 12;

    // `filePath` empty: "topology.json" in the application's data directory. The homes live
    // beside it, "<name less extension>.homes.json".
    TopologyMemory(const ScreenTopologyWatcher& watcher, const Clock& clock,
                   const QString& filePath = {}, QObject* parent = nullptr);

    // Records `layout` as it stands on `displays`: a configuration, and each widget's home.
    // Nothing is recorded while the display set is settling or the machine sleeps.
    void remember(const GridLayout& layout, const QList<LayoutDisplay>& displays);

    // The layout for a display set that has just settled with a real change: every widget
    // placed from its home. Nothing when the set is unusable, already current, or nothing moves.
    std::optional<GridLayout> layoutForSettled(const QList<LayoutDisplay>& displays,
                                               const GridLayout& current);

    // Carries an installation that knows only configurations over to homes.
    void adoptHomesFromSnapshotsIfNeeded();

    // The widget stands in for a home display that is not among `displays`.
    bool isVisitor(const QUuid& id, const QList<LayoutDisplay>& displays) const;

    int configurationCount() const { return static_cast<int>(m_snapshots.size()); }
    const QMap<QString, LayoutProfileSnapshot>& snapshots() const { return m_snapshots; }
    const QHash<QUuid, LayoutWidgetPlacement>& homes() const { return m_homes; }
    std::optional<QString> currentSignature() const { return m_currentSignature; }

    QString filePath() const { return m_filePath; }
    QString homesPath() const { return m_homesPath; }
    QString backupPath() const { return m_filePath + QStringLiteral(".bak"); }

private:
    void load();
    void loadHomes();
    void save();
    void saveHomes();
    void keepBackupOfOriginalFile();
    void setHomesFrom(const QList<LayoutWidgetPlacement>& placements);
    QList<LayoutWidgetPlacement> allHomes() const;
    const LayoutProfileSnapshot* newestSnapshot() const;

    const ScreenTopologyWatcher& m_watcher;
    const Clock& m_clock;
    QString m_filePath;
    QString m_homesPath;
    // Something other than a data file sits at that path; it is never written over.
    bool m_fileLeftAlone = false;
    bool m_homesLeftAlone = false;
    // Ordered by signature, so that equal capture times evict in a fixed order.
    QMap<QString, LayoutProfileSnapshot> m_snapshots;
    QHash<QUuid, LayoutWidgetPlacement> m_homes;
    std::optional<QString> m_currentSignature;
};

} // namespace tw
