#include "app/LaunchModes.h"
#include "faces/WallpaperRenderer.h"
#include "platform/AppPaths.h"
#include "platform/PlatformServices.h"

#include <QDir>

namespace tw {

std::optional<int> runWallpapersMode(LaunchContext& context) {
    const QString directory = context.values.value(0);
    const int written = WallpaperRenderer::writeAll(directory, QSize(960, 600));
    context.err << "wallpapers written=" << written << " dir=" << directory << '\n';
    return written < 1 ? 1 : 0;
}

std::optional<int> runApplyWallpaperMode(LaunchContext& context) {
    const QString id = context.values.value(0);
    const std::unique_ptr<DesktopPictureSetter> setter =
        PlatformServices::makeDesktopPictureSetter();
    const int count = WallpaperRenderer::applyEverywhere(
        id, *setter, QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("Wallpapers")));
    context.out << "apply-wallpaper id=" << id << " count=" << count << '\n';
    return count < 0 ? 1 : 0;
}

} // namespace tw
