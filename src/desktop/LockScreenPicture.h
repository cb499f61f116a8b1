// What the lock screen would show with widgets above it: the desktop picture, darkened towards
// the top as lock screens do, the system's large date and time in its clock region, a password
// field in its login region and the round controls of its footer, and the widgets the policy
// lets show on their glass at their lock-screen places. Painter level, in one display's points.
#pragma once

#include "desktop/GlassScene.h"

#include <QList>
#include <QRectF>

class QPainter;

namespace tw {

struct FaceContext;
class FaceRegistry;
struct WidgetInstance;

class LockScreenPicture {
public:
    LockScreenPicture(const QImage& wallpaper, const QSizeF& display, qreal devicePixelRatio);

    const QSizeF& display() const { return m_scene.display(); }

    // The whole display at the painter's origin, with `base`'s time, theme and glass; the
    // rectangles of the tiles drawn, in order of `widgets`.
    QList<QRectF> paint(QPainter& painter, const QList<WidgetInstance>& widgets,
                        const FaceContext& base, const FaceRegistry& faces);

private:
    GlassScene m_scene;
};

} // namespace tw
