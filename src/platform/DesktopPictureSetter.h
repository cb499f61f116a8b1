// Puts a picture on the displays through the running desktop's own mechanism, so that the desktop
// keeps showing it after the program ends.
#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

namespace tw {

class DesktopPictureSetter {
public:
    virtual ~DesktopPictureSetter() = default;

    // One display: its connector name ("DP-1") and its area in device pixels on the virtual
    // screen, origin at the top-left.
    struct Target {
        QString screen;
        QRect pixels;
        bool operator==(const Target&) const = default;
    };

    // The displays a picture can be put on now; empty when none can be reached.
    virtual QList<Target> targets() const = 0;
    // Shows files[i] on targets[i]; gives how many displays now show theirs, 0 when the
    // desktop's mechanism is unavailable (and says why in the log).
    virtual int show(const QList<Target>& targets, const QStringList& files) = 0;
};

} // namespace tw
