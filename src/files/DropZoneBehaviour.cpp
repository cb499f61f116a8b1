#include "files/DropZoneBehaviour.h"

#include "files/DroppedPaths.h"
#include "grid/GridStore.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "readings/SampleRunner.h"
#include "text/L.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>

namespace tw {

Q_LOGGING_CATEGORY(lcDropZone, "com.tarnwick.app.DropZone")

using namespace std::chrono_literals;

namespace {

const QString folderKey = QStringLiteral("folder");
const QString itemsKey = QStringLiteral("items");

bool copies(const WidgetSettings& settings) {
    return settings.value(QStringLiteral("mode")) == QLatin1String("copy");
}

} // namespace

DropZoneBehaviour::DropZoneBehaviour(Services services, QObject* parent)
    : TileBehaviour(parent)
    , m_services(std::move(services)) {}

QString DropZoneBehaviour::folderOf(const WidgetSettings& settings) const {
    const QString folder = settings.value(folderKey).trimmed();
    return folder.isEmpty() ? m_services.defaultFolder : folder;
}

DropZoneView DropZoneBehaviour::view(const QUuid& tile, const WidgetSettings& settings) const {
    DropZoneView view;
    view.folder = folderOf(settings);
    view.folderMissing = !QFileInfo(view.folder).isDir();
    view.copies = copies(settings);
    view.items = DroppedItem::listFromJson(settings.value(itemsKey));
    view.problem = m_problems.value(tile);
    return view;
}

bool DropZoneBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const DropZoneView shown = view(tile.id, tile.settings.value_or(WidgetSettings()));
    if (command == QLatin1String("choose")) {
        const QString chosen =
            m_services.chooseFolder
                ? m_services.chooseFolder(
                      L("dropzone.choose", QStringLiteral("Where dropped files go")), shown.folder)
                : QString();
        if (!chosen.isEmpty()) {
            m_services.grid.setSetting(tile.id, folderKey, chosen);
            setProblem(tile.id, {});
        }
        return true;
    }
    if (command == QLatin1String("clear")) {
        m_services.grid.setSetting(tile.id, itemsKey, QString());
        return true;
    }
    QString path;
    if (command == QLatin1String("folder")) {
        if (shown.folderMissing) {
            return press(tile, QStringLiteral("choose"));
        }
        path = shown.folder;
    } else if (command.startsWith(QLatin1String("open:"))) {
        const qsizetype index = command.mid(5).toInt();
        if (index < 0 || index >= shown.items.size()) {
            return false;
        }
        path = shown.items.at(index).path;
        if (!QFileInfo::exists(path)) {
            setProblem(tile.id, L("files.error.gone", QStringLiteral("“%1” is no longer there."))
                                    .arg(shown.items.at(index).name));
            return true;
        }
    } else {
        return false;
    }
    const LaunchResult opened = m_services.workspace.open(QUrl::fromLocalFile(path));
    if (!opened.isSuccess()) {
        qCWarning(lcDropZone, "could not open %s: %s", qUtf8Printable(path),
                  qUtf8Printable(opened.error()));
        setProblem(tile.id, L("files.error.open", QStringLiteral("“%1” could not be opened."))
                                .arg(QFileInfo(path).fileName()));
    }
    return true;
}

bool DropZoneBehaviour::acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const {
    return !view(tile.id, tile.settings.value_or(WidgetSettings())).folderMissing &&
           !DroppedPaths::of(data).isEmpty();
}

bool DropZoneBehaviour::drop(const WidgetInstance& tile, const QMimeData& data) {
    if (!acceptsDrop(tile, data)) {
        return false;
    }
    const QString folder = folderOf(tile.settings.value_or(WidgetSettings()));
    const FileTransfer::Mode mode = copies(tile.settings.value_or(WidgetSettings()))
                                        ? FileTransfer::Mode::copy
                                        : FileTransfer::Mode::move;
    runSample(
        m_services.runner, this,
        [paths = DroppedPaths::of(data), folder, mode, freeSpace = m_services.freeSpace,
         at = m_services.clock.now()] {
            Outcome outcome;
            for (const QString& path : paths) {
                const FileTransfer::Result result =
                    FileTransfer::transfer(path, folder, mode, freeSpace);
                if (result.ok()) {
                    const QFileInfo arrived(result.target);
                    outcome.arrived.prepend({.name = arrived.fileName(),
                                             .path = result.target,
                                             .at = at,
                                             .isFolder = arrived.isDir()});
                }
                if (!result.error.isEmpty()) {
                    outcome.problem = result.error;
                }
            }
            return outcome;
        },
        [this, id = tile.id](const Outcome& outcome) { finish(id, outcome); });
    return true;
}

void DropZoneBehaviour::finish(const QUuid& tile, const Outcome& outcome) {
    setProblem(tile, outcome.problem);
    if (!outcome.problem.isEmpty()) {
        qCWarning(lcDropZone, "%s", qUtf8Printable(outcome.problem));
    }
    const std::optional<WidgetInstance> instance = m_services.grid.instance(tile);
    if (!instance || outcome.arrived.isEmpty()) {
        return;
    }
    QList<DroppedItem> items = outcome.arrived;
    items.append(
        DroppedItem::listFromJson(instance->settings.value_or(WidgetSettings()).value(itemsKey)));
    WidgetSettings settings = instance->settings.value_or(WidgetSettings());
    settings.insert(itemsKey, DroppedItem::listToJson(items));
    // What was dropped is the tile's record, not a step to undo: undo would not move it back.
    m_services.grid.replaceSettings(tile, settings, GridStore::History::adopted);
}

QList<TileBehaviour::MenuItem> DropZoneBehaviour::menuItems(const WidgetInstance& tile) const {
    QList<MenuItem> items{
        {L("dropzone.menu.open", QStringLiteral("Open Folder")), QStringLiteral("folder")},
        {L("dropzone.menu.choose", QStringLiteral("Choose Folder…")), QStringLiteral("choose")}};
    if (!view(tile.id, tile.settings.value_or(WidgetSettings())).items.isEmpty()) {
        items.append({L("dropzone.menu.clear", QStringLiteral("Clear Recent Items")),
                      QStringLiteral("clear")});
    }
    return items;
}

void DropZoneBehaviour::setProblem(const QUuid& tile, const QString& problem) {
    if (m_problems.value(tile) == problem) {
        return;
    }
    if (problem.isEmpty()) {
        m_problems.remove(tile);
        m_problemEnds.erase(tile);
    } else {
        m_problems.insert(tile, problem);
        m_problemEnds.insert_or_assign(
            tile, m_services.scheduler.singleShot(problemTime, 1s, this, [this, tile] {
                m_problems.remove(tile);
                Q_EMIT changed(tile);
            }));
    }
    Q_EMIT changed(tile);
}

} // namespace tw
