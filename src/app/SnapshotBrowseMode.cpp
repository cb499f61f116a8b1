#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "app/WidgetPicture.h"
#include "config/ConfigPalette.h"
#include "config/ConfigWindow.h"
#include "config/GalleryView.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QImage>
#include <QVBoxLayout>

namespace tw {

namespace {

// The gallery page as the configuration window shows it, in the house colours, never on screen.
QImage browsePicture(const SnapshotWidgetOptions& options, ColorScheme scheme, const Clock& clock) {
    const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
    const FaceRegistry faces;
    const ConfigPalette colours = ConfigPalette::of(scheme);
    QWidget page;
    page.setObjectName(QStringLiteral("page"));
    page.setPalette(colours.palette());
    page.setStyleSheet(colours.styleSheet());
    auto* gallery = new GalleryView(faces, *symbols, clock, &page);
    const FaceContext look = options.baseContext(*symbols, clock.now());
    gallery->setTheme(look.theme);
    gallery->setGlass(look.glass);
    auto* layout = new QVBoxLayout(&page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(gallery);
    page.resize(ConfigWindow::contentSize);
    // Laid out without being shown: the off-screen platform has nowhere to show a window.
    page.ensurePolished();
    layout->activate();

    return pictureOf(page, options.devicePixelRatio, colours.window);
}

} // namespace

std::optional<int> runSnapshotBrowseMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    // The window is light unless asked for dark; --light wins when both are given.
    const bool dark = context.arguments.has(QStringLiteral("--dark")) &&
                      !context.arguments.has(QStringLiteral("--light"));
    options.shade = dark ? GlassLook::Shade::Dark : GlassLook::Shade::Light;
    QImage picture;
    if (options.problem.isEmpty()) {
        picture =
            browsePicture(options, dark ? ColorScheme::Dark : ColorScheme::Light, context.clock);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-browse"), path, picture,
                          options.problem,
                          dark ? QStringLiteral(" dark=true") : QStringLiteral(" dark=false"));
}

} // namespace tw
