#include "platform/linux/DisplayProbe.h"

#include <xcb/xcb.h>

namespace tw::DisplayProbe {

namespace {

bool canOpenX11(const QByteArray& display) {
    xcb_connection_t* connection = xcb_connect(display.constData(), nullptr);
    const bool open = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return open;
}

} // namespace

QString needsDisplay() {
    return QStringLiteral("Tarnwick needs a display: set DISPLAY or WAYLAND_DISPLAY.");
}

std::optional<QString> whyNoDisplay() {
    // "xcb", "wayland;xcb", "xcb:option=…": the first platform Qt tries.
    const QString platform =
        qEnvironmentVariable("QT_QPA_PLATFORM").section(QLatin1Char(';'), 0, 0);
    const bool x11 = platform.isEmpty() || platform.startsWith(QLatin1String("xcb"));
    const bool wayland = platform.startsWith(QLatin1String("wayland"));
    if (!x11 && !wayland) {
        return std::nullopt;
    }
    const QByteArray display = qgetenv("DISPLAY");
    const QByteArray waylandDisplay = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty() && waylandDisplay.isEmpty()) {
        return needsDisplay();
    }
    if (wayland || display.isEmpty()) {
        // A Wayland compositor is left to Qt to reach.
        return std::nullopt;
    }
    if (!canOpenX11(display)) {
        return QStringLiteral("Tarnwick needs a display: cannot open DISPLAY=%1; set DISPLAY or "
                              "WAYLAND_DISPLAY to a running display.")
            .arg(QString::fromLocal8Bit(display));
    }
    return std::nullopt;
}

} // namespace tw::DisplayProbe
