// The connected displays, in internal points (origin at the lower-left of the primary display,
// y upward), and the events that change them.
#pragma once

#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>

namespace tw {

// One connected display. Rectangles are in internal points: x()/y() is the lower-left corner,
// so the top edge is y() + height().
struct ScreenInfo {
    QString id;          // stable across reconnects: derived from EDID where known, else the name
    QString name;        // the name people see
    QRectF frame;        // the whole display
    QRectF visibleFrame; // the part not taken by panels and docks
    bool isMain = false; // the first display of the list

    friend bool operator==(const ScreenInfo&, const ScreenInfo&) = default;
};

class Displays : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Every connected display, the main one first.
    virtual QList<ScreenInfo> screens() const = 0;
    // Each display keeps its own set of virtual desktops; a desktop without the notion says no.
    virtual bool hasSeparateSpacesPerDisplay() const { return false; }

Q_SIGNALS:
    // A display was added or removed, or one changed its geometry; readings may still be in flux.
    void screensChanged();
    // The machine is about to sleep / has woken.
    void willSleep();
    void didWake();
    // The displays went dark / lit again while the machine runs on (a screen saver, power
    // saving): the displays are still there and must not be taken for unplugged.
    void screensDidSleep();
    void screensDidWake();
};

} // namespace tw
