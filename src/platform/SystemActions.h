// One-click actions of the person's session that need no administrator: lock the screen, turn
// the displays off, take a screenshot, silence notification banners. Each is offered only where
// the desktop can do it.
#pragma once

#include "platform/Workspace.h"

#include <QObject>

namespace tw {

enum class SystemAction { lockScreen, displayOff, screenshot, doNotDisturb };

class SystemActions : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual bool offers(SystemAction action) const = 0;
    // Does it, without waiting for it to finish; do-not-disturb turns over.
    virtual LaunchResult run(SystemAction action) = 0;
    // Whether banners are held back now; false where the desktop has no such switch.
    virtual bool doNotDisturb() const = 0;

Q_SIGNALS:
    // What is offered, or do-not-disturb, changed.
    void changed();
};

} // namespace tw
