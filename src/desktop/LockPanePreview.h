// The lock screen's settings pane as one drawing: its title and lead, whether this system lets
// widgets stand above its lock screen (and plainly why not), a small preview of that lock screen
// with the widgets at their places, and each widget with whether it shows and why a personal one
// stays hidden. Painter level, no QWidget: a picture mode and the configuration window's lock
// section draw the same pane.
#pragma once

#include "desktop/LockScreenPicture.h"

#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>

#include <optional>

class QPainter;

namespace tw {

struct FaceContext;
class FaceRegistry;
struct WidgetInstance;

class LockPanePreview {
public:
    // `wallpaper` is the desktop picture; the preview shows a display of `display` points.
    LockPanePreview(const QImage& wallpaper, const QSizeF& display);

    // Fills `rect` with the pane in `base`'s shade and theme. `unavailable` is the system's reason
    // that nothing can be drawn above its lock screen, nullopt where it can. The preview's
    // rectangle within `rect`.
    QRectF paint(QPainter& painter, const QRectF& rect, const QList<WidgetInstance>& widgets,
                 const std::optional<QString>& unavailable, const FaceContext& base,
                 const FaceRegistry& faces);

private:
    QImage m_wallpaper;
    QSizeF m_display;
    // Made for the pixels the preview has, and again only when they change.
    std::optional<LockScreenPicture> m_lock;
    qreal m_lockRatio = 0;
};

} // namespace tw
