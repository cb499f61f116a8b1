#include "app/LaunchModes.h"
#include "app/SceneWidgets.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "desktop/LockPanePreview.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "platform/LockScreenSurface.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QPainter>

#include <cmath>

namespace tw {

namespace {

constexpr QSizeF pane(760, 480);
// The lock screen the preview stands for, in points.
constexpr QSizeF display(1440, 900);

} // namespace

std::optional<int> runSnapshotLockPaneMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const double ratio = options.devicePixelRatio;
    const QImage wallpaper =
        problem.isEmpty() ? options.wallpaperPicture(display.toSize(), problem) : QImage();
    QImage picture;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const std::unique_ptr<LockScreenSurface> surface =
            PlatformServices::makeLockScreenSurface();
        const FaceRegistry faces;
        LockPanePreview preview(wallpaper, display);
        picture =
            QImage(int(std::lround(pane.width() * ratio)), int(std::lround(pane.height() * ratio)),
                   QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&picture);
        painter.scale(ratio, ratio);
        preview.paint(painter, QRectF(QPointF(0, 0), pane), SceneWidgets::lockScreen(),
                      surface->unavailableReason(),
                      options.baseContext(*symbols, context.clock.now()), faces);
        painter.end();
        picture.setDevicePixelRatio(ratio);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-lockpane"), path, picture, problem,
                          QStringLiteral(" dark=%1").arg(options.darkField()));
}

} // namespace tw
