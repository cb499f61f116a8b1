#include "app/LaunchModes.h"
#include "app/SceneWidgets.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "desktop/LockScreenPicture.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QPainter>

#include <cmath>

namespace tw {

namespace {

// The display the lock screen is drawn for, in points.
constexpr QSizeF display(1440, 900);

} // namespace

std::optional<int> runSnapshotLockMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const QList<SceneLook> looks = options.sceneLooks(problem);
    const double ratio = options.devicePixelRatio;
    const QSize pixels(int(std::lround(display.width() * ratio)),
                       int(std::lround(display.height() * ratio)));
    const QImage wallpaper =
        problem.isEmpty() ? options.wallpaperPicture(pixels, problem) : QImage();
    QImage picture;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        FaceContext base = options.baseContext(*symbols, context.clock.now());
        base.glass.finish = looks.first().finish;
        LockScreenPicture lock(wallpaper, display, ratio);
        picture = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&picture);
        painter.scale(ratio, ratio);
        lock.paint(painter, SceneWidgets::lockScreen(), base, faces);
        painter.end();
        picture.setDevicePixelRatio(ratio);
    }
    return reportSnapshot(
        context, QStringLiteral("snapshot-lock"), path, picture, problem,
        QStringLiteral(" style=%1 dark=%2")
            .arg(looks.isEmpty() ? QString() : looks.first().id, options.darkField()));
}

} // namespace tw
