// Puts pictures on the displays the way the running desktop keeps its own: GSettings for GNOME and
// its kin, Cinnamon and MATE, xfconf for Xfce, Plasma's scripting, and where no desktop keeps one,
// a pixmap on the X root window that outlives the program.
#pragma once

#include "platform/DesktopPictureSetter.h"
#include "platform/linux/LinuxDesktopPicture.h"

struct xcb_connection_t;

namespace tw {

class LinuxPictureSetter final : public DesktopPictureSetter {
public:
    // `desktops` as XDG_CURRENT_DESKTOP names them; the X display from DISPLAY, when there is one.
    explicit LinuxPictureSetter(const QStringList& desktops);
    ~LinuxPictureSetter() override;
    LinuxPictureSetter(const LinuxPictureSetter&) = delete;
    LinuxPictureSetter& operator=(const LinuxPictureSetter&) = delete;

    QList<Target> targets() const override;
    int show(const QList<Target>& targets, const QStringList& files) override;

    // Sets the root window's picture, each file over its target; how many were placed.
    static int showOnRoot(xcb_connection_t* connection, const QList<Target>& targets,
                          const QStringList& files);

private:
    int showWithXfconf(const QList<Target>& targets, const QStringList& files) const;
    int showWithPlasma(const QList<Target>& targets, const QStringList& files) const;

    LinuxDesktopPicture::Source m_source;
    // Our own connection, so that the pixmap it leaves can be kept when it closes.
    xcb_connection_t* m_connection = nullptr;
};

} // namespace tw
