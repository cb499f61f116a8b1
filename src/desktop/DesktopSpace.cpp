#include "desktop/DesktopSpace.h"

#include <QGuiApplication>
#include <QScreen>

namespace tw {

DesktopSpace DesktopSpace::current() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? DesktopSpace(primary->geometry()) : DesktopSpace();
}

} // namespace tw
