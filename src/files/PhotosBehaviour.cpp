#include "files/PhotosBehaviour.h"

#include "files/PhotoDecoder.h"
#include "grid/GridStore.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "readings/SampleRunner.h"
#include "text/L.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>

#include <cmath>

namespace tw {

Q_LOGGING_CATEGORY(lcPhotos, "com.tarnwick.app.Photos")

using namespace std::chrono_literals;

namespace {

std::chrono::seconds intervalOf(const WidgetSettings& settings) {
    bool ok = false;
    const int seconds = settings.value(QStringLiteral("interval")).toInt(&ok);
    return std::chrono::seconds(ok ? std::clamp(seconds, 5, 86400) : 60);
}

Slideshow::Order orderOf(const WidgetSettings& settings) {
    return settings.value(QStringLiteral("order")) == QLatin1String("name")
               ? Slideshow::Order::sequential
               : Slideshow::Order::shuffled;
}

} // namespace

PhotosBehaviour::PhotosBehaviour(Services services, QObject* parent)
    : TileBehaviour(parent)
    , m_services(std::move(services)) {
    // New pictures arrive in bursts (a camera's import): look again once it is quiet.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString& path) {
        m_changedFolders.insert(path);
        m_rescan = m_services.scheduler.singleShot(2s, 1s, this, [this] {
            const QSet<QString> changed = std::exchange(m_changedFolders, {});
            for (const QString& folder : changed) {
                if (m_albums.contains(folder)) {
                    scan(folder);
                }
            }
        });
    });
}

QString PhotosBehaviour::folderOf(const WidgetSettings& settings) const {
    QString path = settings.value(QStringLiteral("folder")).trimmed();
    if (path.startsWith(QLatin1Char('~'))) {
        path = QDir::homePath() + path.mid(1);
    }
    return path.isEmpty() ? m_services.defaultFolder : QDir::cleanPath(path);
}

QSize PhotosBehaviour::pixelsOf(const WidgetInstance& tile) const {
    const QSizeF points = tile.pixelSize() * m_services.pixelRatio;
    return QSize(static_cast<int>(std::ceil(points.width())),
                 static_cast<int>(std::ceil(points.height())));
}

qint64 PhotosBehaviour::nowMs() const {
    return m_services.clock.now().toMSecsSinceEpoch();
}

Slideshow PhotosBehaviour::slideshowOf(const QUuid& tile) const {
    const auto show = m_shows.find(tile);
    if (show == m_shows.end()) {
        return {};
    }
    Slideshow slideshow = show->second.slideshow;
    slideshow.count = static_cast<int>(m_albums.value(show->second.folder).readable.size());
    slideshow.skipped = m_skipped.value(tile);
    return slideshow;
}

QString PhotosBehaviour::pictureOf(const QUuid& tile, int index) const {
    const auto show = m_shows.find(tile);
    if (show == m_shows.end()) {
        return {};
    }
    const QStringList readable = m_albums.value(show->second.folder).readable;
    return index >= 0 && index < readable.size() ? readable.at(index) : QString();
}

void PhotosBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QSet<QUuid> inView;
    for (const BehaviourTile& tile : tiles) {
        if (!tile.inView) {
            continue;
        }
        const QUuid id = tile.instance.id;
        const WidgetSettings settings = tile.instance.settings.value_or(WidgetSettings());
        inView.insert(id);
        Show& show = m_shows[id];
        const QString folder = folderOf(settings);
        const QSize pixels = pixelsOf(tile.instance);
        if (show.folder != folder || show.pixels != pixels) {
            // Another folder or size: what was decoded does not fit any more.
            show.images.clear();
            show.shown.clear();
        }
        show.folder = folder;
        show.pixels = pixels;
        show.slideshow.interval = intervalOf(settings);
        show.slideshow.order = orderOf(settings);
        show.slideshow.seed = static_cast<quint32>(qHash(id));
        if (!m_albums.contains(folder)) {
            scan(folder);
        }
        schedule(id);
    }
    // A tile out of view holds no pictures and no timers.
    std::erase_if(m_shows, [&inView](const auto& entry) { return !inView.contains(entry.first); });
    QSet<QString> folders;
    for (const auto& [id, show] : m_shows) {
        folders.insert(show.folder);
    }
    for (auto it = m_albums.begin(); it != m_albums.end();) {
        it = folders.contains(it.key()) ? std::next(it) : m_albums.erase(it);
    }
    const QStringList watched = m_watcher.directories();
    for (const QString& path : watched) {
        if (!folders.contains(path)) {
            m_watcher.removePath(path);
        }
    }
    for (const QString& folder : std::as_const(folders)) {
        if (!watched.contains(folder) && QFileInfo(folder).isDir()) {
            m_watcher.addPath(folder);
        }
    }
}

void PhotosBehaviour::scan(const QString& folder) {
    runSample(
        m_services.runner, this,
        [folder] { return PhotoFolder::scan(folder, PhotoDecoder::suffixes()); },
        [this, folder](const PhotoFolder& found) {
            if (!std::any_of(m_shows.cbegin(), m_shows.cend(), [&folder](const auto& entry) {
                    return entry.second.folder == folder;
                })) {
                return;
            }
            Album& album = m_albums[folder];
            album.folder = found;
            album.scanned = true;
            album.readable.clear();
            for (const QString& picture : found.pictures) {
                if (!album.unreadable.contains(picture)) {
                    album.readable.append(picture);
                }
            }
            if (found.exists && !m_watcher.directories().contains(folder)) {
                m_watcher.addPath(folder);
            }
            QList<QUuid> showing;
            for (const auto& [id, show] : m_shows) {
                if (show.folder == folder) {
                    showing.append(id);
                }
            }
            for (const QUuid& id : std::as_const(showing)) {
                schedule(id);
                Q_EMIT changed(id);
            }
        });
}

void PhotosBehaviour::schedule(const QUuid& tile) {
    auto found = m_shows.find(tile);
    if (found == m_shows.end()) {
        return;
    }
    Show& show = found->second;
    const Slideshow slideshow = slideshowOf(tile);
    if (slideshow.count == 0) {
        show.turn.cancel();
        show.frames.cancel();
        return;
    }
    const qint64 now = nowMs();
    const Slideshow::Frame frame = slideshow.at(now);
    const QString current = pictureOf(tile, frame.current);
    const QString previous = pictureOf(tile, frame.previous);
    const QString next = pictureOf(tile, slideshow.at(now + frame.untilNext.count()).current);
    // Keep only what this turn and the next need; fetch the next one well before its turn.
    for (auto it = show.images.begin(); it != show.images.end();) {
        const bool needed = it.key() == current || it.key() == previous || it.key() == next ||
                            it.key() == show.shown;
        it = needed ? std::next(it) : show.images.erase(it);
    }
    for (const QString& path : {current, next}) {
        if (!path.isEmpty() && !show.images.contains(path) && !show.decoding.contains(path)) {
            decode(tile, path);
        }
    }
    if (show.images.contains(current)) {
        show.shown = current;
    }
    if (frame.fade < 1 && !show.frames.isActive()) {
        show.frames = m_services.scheduler.repeating(frameInterval, 0ms, this, [this, tile] {
            Q_EMIT changed(tile);
            const auto fading = m_shows.find(tile);
            if (fading != m_shows.end() && slideshowOf(tile).at(nowMs()).fade >= 1) {
                fading->second.frames.cancel();
            }
        });
    }
    show.turn = m_services.scheduler.singleShot(frame.untilNext, 0ms, this, [this, tile] {
        schedule(tile);
        Q_EMIT changed(tile);
    });
}

void PhotosBehaviour::decode(const QUuid& tile, const QString& path) {
    Show& show = m_shows[tile];
    show.decoding.insert(path);
    runSample(
        m_services.runner, this,
        [path, pixels = show.pixels] { return PhotoDecoder::decode(path, pixels); },
        [this, tile, path, pixels = show.pixels](const PhotoDecoder::Result& result) {
            const auto found = m_shows.find(tile);
            if (found == m_shows.end()) {
                return;
            }
            Show& decoded = found->second;
            decoded.decoding.remove(path);
            if (decoded.pixels != pixels) {
                return;
            }
            if (result.image.isNull()) {
                qCInfo(lcPhotos, "skipped %s: %s", qUtf8Printable(path),
                       qUtf8Printable(result.error));
                Album& album = m_albums[decoded.folder];
                album.unreadable.insert(path);
                album.readable.removeAll(path);
            } else {
                decoded.images.insert(path, result.image);
            }
            schedule(tile);
            Q_EMIT changed(tile);
        });
}

PhotosView PhotosBehaviour::view(const QUuid& tile) const {
    PhotosView view;
    const auto found = m_shows.find(tile);
    if (found == m_shows.end()) {
        return view;
    }
    const Show& shown = found->second;
    view.folder = shown.folder;
    const Album album = m_albums.value(shown.folder);
    view.unreadable = static_cast<int>(album.unreadable.size());
    view.pictures = static_cast<int>(album.readable.size());
    if (!album.scanned) {
        return view;
    }
    if (!album.folder.exists) {
        view.state = PhotosView::State::noFolder;
        return view;
    }
    if (album.readable.isEmpty()) {
        view.state = PhotosView::State::noPictures;
        return view;
    }
    const Slideshow::Frame frame = slideshowOf(tile).at(nowMs());
    const QString current = pictureOf(tile, frame.current);
    const QString previous = pictureOf(tile, frame.previous);
    if (shown.images.contains(current)) {
        view.current = shown.images.value(current);
        view.name = QFileInfo(current).completeBaseName();
        if (frame.fade < 1 && previous != current && shown.images.contains(previous)) {
            view.previous = shown.images.value(previous);
            view.fade = frame.fade;
        }
    } else if (shown.images.contains(shown.shown)) {
        view.current = shown.images.value(shown.shown);
        view.name = QFileInfo(shown.shown).completeBaseName();
    }
    view.state = view.current.isNull() ? PhotosView::State::loading : PhotosView::State::showing;
    return view;
}

bool PhotosBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const WidgetSettings settings = tile.settings.value_or(WidgetSettings());
    if (command == QLatin1String("choose")) {
        const QString chosen =
            m_services.chooseFolder
                ? m_services.chooseFolder(L("photos.choose", QStringLiteral("Folder of pictures")),
                                          folderOf(settings))
                : QString();
        if (!chosen.isEmpty()) {
            m_services.grid.setSetting(tile.id, QStringLiteral("folder"), chosen);
        }
        return true;
    }
    if (command == QLatin1String("open")) {
        const auto found = m_shows.find(tile.id);
        const QString shown = found != m_shows.end() ? found->second.shown : QString();
        if (!shown.isEmpty()) {
            const LaunchResult opened = m_services.workspace.open(QUrl::fromLocalFile(shown));
            if (!opened.isSuccess()) {
                qCWarning(lcPhotos, "could not open %s: %s", qUtf8Printable(shown),
                          qUtf8Printable(opened.error()));
            }
        }
        return true;
    }
    if (command != QLatin1String("next") || m_shows.count(tile.id) == 0) {
        return false;
    }
    ++m_skipped[tile.id];
    schedule(tile.id);
    Q_EMIT changed(tile.id);
    return true;
}

QList<TileBehaviour::MenuItem> PhotosBehaviour::menuItems(const WidgetInstance& tile) const {
    QList<MenuItem> items;
    if (view(tile.id).state == PhotosView::State::showing) {
        items.append(
            {L("photos.menu.next", QStringLiteral("Next Picture")), QStringLiteral("next")});
        items.append(
            {L("photos.menu.open", QStringLiteral("Open Picture")), QStringLiteral("open")});
    }
    items.append(
        {L("photos.menu.choose", QStringLiteral("Choose Folder…")), QStringLiteral("choose")});
    return items;
}

} // namespace tw
