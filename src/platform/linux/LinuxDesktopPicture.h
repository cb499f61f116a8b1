// The desktop picture on Linux, asked of the running desktop first: GSettings for GNOME and its
// kin, Cinnamon and MATE, Plasma's and Xfce's configuration files, and the X root window's
// picture last.
#pragma once

#include "platform/DesktopPicture.h"
#include "platform/linux/PlasmaWallpaperConfig.h"
#include "platform/linux/XfceBackdropConfig.h"

#include <QFileSystemWatcher>
#include <QList>
#include <QSet>
#include <QStringList>

#include <map>
#include <memory>

struct xcb_connection_t;

namespace tw {

class GSettingsPicture;
class X11RootPicture;

class LinuxDesktopPicture final : public DesktopPicture {
    Q_OBJECT
public:
    enum class Source { gnome, cinnamon, mate, plasma, xfce, root };

    // `desktops` as XDG_CURRENT_DESKTOP names them; `configDir` where the desktops keep their
    // files (~/.config); `connection` the application's X connection, or null.
    LinuxDesktopPicture(const QStringList& desktops, const QString& configDir,
                        xcb_connection_t* connection, QObject* parent = nullptr);
    ~LinuxDesktopPicture() override;
    // For the running session.
    static std::unique_ptr<LinuxDesktopPicture> create(QObject* parent = nullptr);

    std::optional<Setting> setting(const QString& screen) const override;
    QImage rootPicture() const override;

    // The sources asked, in order: those of a desktop that is named, then the root picture;
    // for a desktop not known here, the root picture and then every other.
    static QList<Source> sourcesFor(const QStringList& desktops);

    // A settings file larger than this is not read.
    static constexpr qint64 maximumFileSize = 1024 * 1024;

private:
    QString path(const char* relative) const;
    QByteArray readSmall(const QString& file);
    void reload();
    void watch();
    std::optional<Setting> fromFile(Source source, const QString& screen) const;

    QList<Source> m_sources;
    QString m_configDir;
    std::map<Source, std::unique_ptr<GSettingsPicture>> m_gsettings;
    std::unique_ptr<X11RootPicture> m_root;
    QFileSystemWatcher m_watcher;
    PlasmaWallpaperConfig m_plasma;
    XfceBackdropConfig m_xfce;
    // Files already logged as unreadable, so that a bad file is told of once.
    QSet<QString> m_told;
};

} // namespace tw
