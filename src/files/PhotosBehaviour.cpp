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
    const auto show = m_shows.constFind(tile);
    if (show == m_shows.constEnd()) {
        return {};
    }
    Slideshow slideshow = show->slideshow;
    slideshow.count = static_cast<int>(m_albums.value(show->folder).readable.size());
    slideshow.skipped = m_skipped.value(tile);
    return slideshow;
}

QString PhotosBehaviour::pictureOf(const QUuid& tile, int index) const {
    const QStringList& readable = m_albums.value(m_shows.value(tile).folder).readable;
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
    for (auto it = m_shows.begin(); it != m_shows.end();) {
        it = inView.contains(it.key()) ? std::next(it) : m_shows.erase(it);
    }
    QSet<QString> folders;
    for (const Show& show : std::as_const(m_shows)) {
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
            if (!std::any_of(m_shows.cbegin(), m_shows.cend(),
                             [&folder](const Show& show) { return show.folder == folder; })) {
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
            for (auto it = m_shows.cbegin(); it != m_shows.cend(); ++it) {
                if (it->folder == folder) {
                    schedule(it.key());
                    Q_EMIT changed(it.key());
                }
            }
        });
}

void PhotosBehaviour::schedule(const QUuid& tile) {
    auto found = m_shows.find(tile);
    if (found == m_shows.end()) {
        return;
    }
    Show& show = *found;
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
            const auto show = m_shows.find(tile);
            if (show != m_shows.end() && slideshowOf(tile).at(nowMs()).fade >= 1) {
                show->frames.cancel();
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
        m_services.runner, this, [path, pixels = show.pixels] { return PhotoDecoder::decode(path, pixels); },
        [this, tile, path, pixels = show.pixels](const PhotoDecoder::Result& result) {
            const auto found = m_shows.find(tile);
            if (found == m_shows.end()) {
                return;
            }
            found->decoding.remove(path);
            if (found->pixels != pixels) {
                return;
            }
            if (result.image.isNull()) {
                qCInfo(lcPhotos, "skipped %s: %s", qUtf8Printable(path), qUtf8Printable(result.error));
                Album& album = m_albums[found->folder];
                album.unreadable.insert(path);
                album.readable.removeAll(path);
            } else {
                found->images.insert(path, result.image);
            }
            schedule(tile);
            Q_EMIT changed(tile);
        });
}

PhotosView PhotosBehaviour::view(const QUuid& tile) const {
    PhotosView view;
    const auto show = m_shows.constFind(tile);
    if (show == m_shows.constEnd()) {
        return view;
    }
    view.folder = show->folder;
    const Album album = m_albums.value(show->folder);
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
    if (show->images.contains(current)) {
        view.current = show->images.value(current);
        view.name = QFileInfo(current).completeBaseName();
        if (frame.fade < 1 && previous != current && show->images.contains(previous)) {
            view.previous = show->images.value(previous);
            view.fade = frame.fade;
        }
    } else if (show->images.contains(show->shown)) {
        view.current = show->images.value(show->shown);
        view.name = QFileInfo(show->shown).completeBaseName();
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
        const QString shown = m_shows.value(tile.id).shown;
        if (!shown.isEmpty()) {
            const LaunchResult opened = m_services.workspace.open(QUrl::fromLocalFile(shown));
            if (!opened.isSuccess()) {
                qCWarning(lcPhotos, "could not open %s: %s", qUtf8Printable(shown),
                          qUtf8Printable(opened.error()));
            }
        }
        return true;
    }
    if (command != QLatin1String("next") || !m_shows.contains(tile.id)) {
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
        items.append({L("photos.menu.next", QStringLiteral("Next Picture")), QStringLiteral("next")});
        items.append({L("photos.menu.open", QStringLiteral("Open Picture")), QStringLiteral("open")});
    }
    items.append({L("photos.menu.choose", QStringLiteral("Choose Folder…")), QStringLiteral("choose")});
    return items;
}

} // namespace tw
