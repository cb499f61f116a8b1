// Reads the EDID blocks the X server holds for its RandR outputs and monitors: what tells one
// physical display from another across reconnects.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

struct xcb_connection_t;

namespace tw {

class X11Edid {
public:
    X11Edid() = delete;

    // EDID bytes by output name ("DP-1") and by RandR monitor name; names without an EDID are
    // absent. Empty when the server has no RandR.
    static QHash<QString, QByteArray> byName(xcb_connection_t* connection);
};

} // namespace tw
