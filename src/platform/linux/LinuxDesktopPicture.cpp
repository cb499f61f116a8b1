#include "platform/linux/LinuxDesktopPicture.h"

#include "platform/linux/GSettingsPicture.h"
#include "platform/linux/X11RootPicture.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStandardPaths>

#include <sys/stat.h>

namespace tw {

Q_LOGGING_CATEGORY(lcDesktopPicture, "Wallpaper")

namespace {

constexpr const char* plasmaApplets = "plasma-org.kde.plasma.desktop-appletsrc";
constexpr const char* plasmaShell = "plasmashellrc";
constexpr const char* plasmaActivities = "kactivitymanagerdrc";
constexpr const char* xfceDesktop = "xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml";

using Source = LinuxDesktopPicture::Source;

std::optional<Source> sourceOfDesktop(const QString& name) {
    const QString desktop = name.toLower();
    for (const char* gnomeLike : {"gnome", "gnome-classic", "gnome-flashback", "unity", "budgie",
                                  "budgie-desktop", "pantheon"}) {
        if (desktop == QLatin1String(gnomeLike)) {
            return Source::gnome;
        }
    }
    if (desktop == QLatin1String("x-cinnamon") || desktop == QLatin1String("cinnamon")) {
        return Source::cinnamon;
    }
    if (desktop == QLatin1String("mate")) {
        return Source::mate;
    }
    if (desktop == QLatin1String("kde")) {
        return Source::plasma;
    }
    if (desktop == QLatin1String("xfce")) {
        return Source::xfce;
    }
    return std::nullopt;
}

const char* nameOf(Source source) {
    switch (source) {
    case Source::gnome:
        return "gnome";
    case Source::cinnamon:
        return "cinnamon";
    case Source::mate:
        return "mate";
    case Source::plasma:
        return "plasma";
    case Source::xfce:
        return "xfce";
    case Source::root:
        return "root";
    }
    return "";
}

// A Plasma wallpaper package: the largest of its pictures, named by their size ("1920x1080.png").
QString pictureOfPackage(const QString& directory) {
    static const QRegularExpression size(QStringLiteral("^(\\d+)x(\\d+)\\."));
    const QFileInfoList pictures =
        QDir(QDir::cleanPath(directory + QStringLiteral("/contents/images")))
            .entryInfoList(QDir::Files, QDir::Name);
    QString best;
    qint64 bestArea = -1;
    for (const QFileInfo& picture : pictures) {
        const QRegularExpressionMatch match = size.match(picture.fileName());
        const qint64 area =
            match.hasMatch() ? match.captured(1).toLongLong() * match.captured(2).toLongLong() : 0;
        if (area > bestArea) {
            best = picture.filePath();
            bestArea = area;
        }
    }
    return best;
}

DesktopPicture::Setting stamped(Source source, DesktopPicture::Setting setting) {
    const QFileInfo file(setting.file);
    setting.identity = QStringLiteral("%1\n%2\n%3\n%4")
                           .arg(QLatin1String(nameOf(source)), setting.file)
                           .arg(file.lastModified().toMSecsSinceEpoch())
                           .arg(int(setting.fill));
    return setting;
}

} // namespace

QList<Source> LinuxDesktopPicture::sourcesFor(const QStringList& desktops) {
    QList<Source> sources;
    for (const QString& desktop : desktops) {
        const std::optional<Source> source = sourceOfDesktop(desktop);
        if (source && !sources.contains(*source)) {
            sources.append(*source);
        }
    }
    if (!sources.isEmpty()) {
        sources.append(Source::root);
        return sources;
    }
    // A desktop of its own (a window manager and a wallpaper setter, most often) shows what it
    // left on the root window; the other desktops' settings may be stale leftovers.
    return {Source::root,  Source::plasma,   Source::xfce,
            Source::gnome, Source::cinnamon, Source::mate};
}

LinuxDesktopPicture::LinuxDesktopPicture(const QStringList& desktops, const QString& configDir,
                                         xcb_connection_t* connection, QObject* parent)
    : DesktopPicture(parent)
    , m_sources(sourcesFor(desktops))
    , m_configDir(configDir) {
    for (const Source source : m_sources) {
        if (source == Source::gnome || source == Source::cinnamon || source == Source::mate) {
            auto picture = GSettingsPicture::create(
                source == Source::gnome      ? GSettingsPicture::Desktop::gnome
                : source == Source::cinnamon ? GSettingsPicture::Desktop::cinnamon
                                             : GSettingsPicture::Desktop::mate);
            if (picture) {
                connect(picture.get(), &GSettingsPicture::changed, this, &DesktopPicture::changed);
                m_gsettings[source] = std::move(picture);
            }
        }
    }
    if (connection != nullptr) {
        m_root = std::make_unique<X11RootPicture>(connection);
        connect(m_root.get(), &X11RootPicture::changed, this, &DesktopPicture::changed);
    }
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &LinuxDesktopPicture::reload);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &LinuxDesktopPicture::reload);
    reload();
}

LinuxDesktopPicture::~LinuxDesktopPicture() = default;

std::unique_ptr<LinuxDesktopPicture> LinuxDesktopPicture::create(QObject* parent) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return std::make_unique<LinuxDesktopPicture>(
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts),
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
        x11 != nullptr ? x11->connection() : nullptr, parent);
}

QString LinuxDesktopPicture::path(const char* relative) const {
    return m_configDir + QLatin1Char('/') + QLatin1String(relative);
}

QByteArray LinuxDesktopPicture::readSmall(const QString& file) {
    struct stat status {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0) {
        // Only the running desktop's own file is missed; the others are merely looked for.
        if (m_sources.first() != Source::root && !m_told.contains(file)) {
            m_told.insert(file);
            qCInfo(lcDesktopPicture, "the desktop's picture setting %s is missing",
                   qUtf8Printable(file));
        }
        return {};
    }
    // Never a pipe or a device: the main thread must not wait on one.
    QFile reader(file);
    QString problem;
    if (!S_ISREG(status.st_mode)) {
        problem = QStringLiteral("not a regular file");
    } else if (status.st_size > maximumFileSize) {
        problem = QStringLiteral("larger than %1 bytes").arg(maximumFileSize);
    } else if (!reader.open(QIODevice::ReadOnly)) {
        problem = reader.errorString();
    }
    if (problem.isEmpty()) {
        m_told.remove(file);
        return reader.read(maximumFileSize);
    }
    if (!m_told.contains(file)) {
        m_told.insert(file);
        qCWarning(lcDesktopPicture, "the desktop's picture setting %s is not read: %s",
                  qUtf8Printable(file), qUtf8Printable(problem));
    }
    return {};
}

void LinuxDesktopPicture::reload() {
    PlasmaWallpaperConfig plasma;
    XfceBackdropConfig xfce;
    if (m_sources.contains(Source::plasma)) {
        plasma = PlasmaWallpaperConfig::parse(readSmall(path(plasmaApplets)),
                                              readSmall(path(plasmaShell)),
                                              readSmall(path(plasmaActivities)));
    }
    if (m_sources.contains(Source::xfce)) {
        xfce = XfceBackdropConfig::parse(readSmall(path(xfceDesktop)));
    }
    watch();
    // The directories change with every file any program keeps there: only a change of the
    // pictures is told.
    if (plasma != m_plasma || xfce != m_xfce) {
        m_plasma = plasma;
        m_xfce = xfce;
        Q_EMIT changed();
    }
}

// The files, and their directories for files replaced by renaming or not yet written; a watch
// ends with the file it watched, so this runs after every change.
void LinuxDesktopPicture::watch() {
    QStringList wanted;
    if (m_sources.contains(Source::plasma)) {
        wanted << path(plasmaApplets) << path(plasmaShell) << path(plasmaActivities);
    }
    if (m_sources.contains(Source::xfce)) {
        wanted << path(xfceDesktop);
    }
    QStringList paths;
    for (const QString& file : std::as_const(wanted)) {
        const QFileInfo info(file);
        for (const QString& candidate : {file, info.absolutePath()}) {
            if (QFileInfo::exists(candidate) && !paths.contains(candidate)) {
                paths.append(candidate);
            }
        }
    }
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    QStringList missing;
    for (const QString& candidate : std::as_const(paths)) {
        if (!watched.contains(candidate)) {
            missing.append(candidate);
        }
    }
    if (!missing.isEmpty()) {
        m_watcher.addPaths(missing);
    }
}

std::optional<DesktopPicture::Setting> LinuxDesktopPicture::fromFile(Source source,
                                                                     const QString& screen) const {
    std::optional<Setting> setting =
        source == Source::plasma ? m_plasma.settingFor(screen) : m_xfce.settingFor(screen);
    if (setting && source == Source::plasma && QFileInfo(setting->file).isDir()) {
        setting->file = pictureOfPackage(setting->file);
        if (setting->file.isEmpty()) {
            return std::nullopt;
        }
    }
    return setting;
}

std::optional<DesktopPicture::Setting> LinuxDesktopPicture::setting(const QString& screen) const {
    for (const Source source : m_sources) {
        std::optional<Setting> setting;
        switch (source) {
        case Source::gnome:
        case Source::cinnamon:
        case Source::mate:
            if (const auto found = m_gsettings.find(source); found != m_gsettings.end()) {
                setting = found->second->setting();
            }
            break;
        case Source::plasma:
        case Source::xfce:
            setting = fromFile(source, screen);
            break;
        case Source::root:
            if (m_root && m_root->pixmap() != 0) {
                return Setting{.file = {}, .fill = Fill::span, .identity = m_root->identity()};
            }
            break;
        }
        if (setting) {
            return stamped(source, *setting);
        }
    }
    return std::nullopt;
}

QImage LinuxDesktopPicture::rootPicture() const {
    return m_root ? m_root->picture() : QImage();
}

} // namespace tw
