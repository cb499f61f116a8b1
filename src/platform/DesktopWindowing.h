// Makes top-level windows live on the desktop: above its background, below every normal window,
// on every workspace, out of task lists, and reports when one is covered by other windows.
#pragma once

#include <QObject>

namespace tw {

class DesktopWindowing : public QObject {
    Q_OBJECT
public:
    // Whether a desktop window may take the keyboard focus when clicked.
    enum class Focus { Never, WhenClicked };

    using QObject::QObject;

    // The toolkit flags of a desktop window, given to it before its native window is created:
    // Qt writes WM_HINTS' input field and the "below" state from them each time it maps it.
    static Qt::WindowFlags windowFlags(Focus focus) {
        Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint |
                                Qt::NoDropShadowWindowHint;
        flags.setFlag(Qt::WindowDoesNotAcceptFocus, focus == Focus::Never);
        return flags;
    }

    // `window` is a top-level QWindow made with `windowFlags(focus)` that has not been shown
    // yet: window managers read these hints when they take a window on. Creates the native
    // window if needed.
    virtual void prepare(QObject* window, Focus focus) = 0;
    // Reports when an ordinary top-level window (not prepared) is covered, nothing more.
    virtual void watchCoverage(QObject* window) = 0;
    // Stops tracking a window; destroyed windows are forgotten by themselves.
    virtual void release(QObject* window) = 0;
    // Whether a compositor blends translucent windows with what lies below; without one the
    // transparent parts of a window show as black and the window should be cut to its shape.
    virtual bool isCompositing() const = 0;
    // Whether `coveredChanged` is ever emitted on this system.
    virtual bool canReportCoverage() const = 0;

Q_SIGNALS:
    // A prepared window became fully covered by other windows, or came back into view.
    void coveredChanged(QObject* window, bool covered);
};

} // namespace tw
