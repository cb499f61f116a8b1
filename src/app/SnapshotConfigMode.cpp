#include "app/LaunchModes.h"
#include "app/PictureLayouts.h"
#include "app/SceneWidgets.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "app/WidgetPicture.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/ConfigWindow.h"
#include "config/ControlKit.h"
#include "config/GalleryView.h"
#include "config/OnboardingView.h"
#include "desktop/LockPanePreview.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "look/ThemeStore.h"
#include "net/QtHttpClient.h"
#include "platform/LockScreenSurface.h"
#include "platform/PlatformServices.h"
#include "platform/QtScheduler.h"
#include "platform/null/MemoryDefaults.h"
#include "readings/AppEnergyMeter.h"
#include "settings/AppSettings.h"
#include "tick/SnapshotClock.h"
#include "updates/UpdateService.h"

#include <QCoreApplication>
#include <QImage>
#include <QLayout>
#include <QPainter>

#include <cmath>

namespace tw {

namespace {

// What the window shows over its content: the guide at a step (0 …), or nothing.
struct Guide {
    std::optional<int> step;
    bool hasTray = true;
};

// A version after this one with a few notes, as the release list would name it.
QByteArray sampleNewerReleases() {
    const SemanticVersion running =
        SemanticVersion::parse(QCoreApplication::applicationVersion()).value_or(SemanticVersion{});
    const SemanticVersion next{running.major, running.minor + 1, 0, {}};
    return QStringLiteral(
               R"([{"version":"%1","date":"2026-12-15","title":"Market tiles",)"
               R"("notes":["Stocks, coins and currencies on the desktop, with the day’s course.",)"
               R"("Measure your line from a tile or the command line.",)"
               R"("Stacks remember the tile you looked at last."]}])")
        .arg(next.toString())
        .toUtf8();
}

// The window as the host shows it, over preferences of its own that nothing writes back.
QImage configPicture(LaunchContext& context, const SnapshotWidgetOptions& options,
                     const ConfigSelection& selection, const Guide& guide = {}) {
    MemoryDefaults defaults;
    AppSettings settings(defaults);
    // As a returning person sees it, unless the guide is the picture.
    settings.setHasSeenGuide(!guide.step.has_value());
    ThemeStore theme(defaults, context.clock, QString());
    theme.suppressPersistence();
    if (!options.themeId.isEmpty()) {
        theme.selectPalette(options.themeId);
    }
    const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
    const std::unique_ptr<LockScreenSurface> surface = PlatformServices::makeLockScreenSurface();
    const FaceRegistry faces;
    const FaceContext base = options.baseContext(*symbols, context.clock.now());
    QString why;
    const QImage wallpaper = options.wallpaperPicture(QSize(1440, 900), why);
    LockPanePreview pane(wallpaper, QSizeF(1440, 900));

    ConfigContext config{
        .settings = settings,
        .theme = theme,
        .defaults = defaults,
        .lockScreenUnavailable = surface->unavailableReason().value_or(QString()),
        .hapticsUnavailable = PlatformServices::wording().noHaptics,
        .dockIconUnavailable = PlatformServices::wording().noDockIcon,
        .version = QCoreApplication::applicationVersion(),
        .dataDirectory = PlatformServices::wording().dataDirectoryDefault,
        .hasTray = guide.hasTray,
    };
    // The cost as the window would show it the moment it opens: this process's own figures, no
    // tile drawn yet.
    const std::unique_ptr<ProcessUsage> usage = PlatformServices::makeProcessUsage();
    QtScheduler scheduler;
    AppEnergyMeter meter(*usage, context.clock.system(), scheduler);
    meter.startLive();
    config.energy = &meter;
    config.cost = [] { return ConfigContext::Cost{}; };
    // The Layouts section with profiles, rules and backups a person might have.
    std::optional<PictureLayouts> layouts;
    if (selection.section == ConfigSection::layouts) {
        layouts.emplace(context.clock, scheduler, defaults);
        config.smartLayouts = &layouts->coordinator();
        config.dataDirectory = layouts->dataDirectory();
        config.clock = &context.clock;
    }
    config.makeGallery = [&]() -> QWidget* {
        auto* gallery = new GalleryView(faces, *symbols, context.clock);
        gallery->setTheme(theme.themed());
        return gallery;
    };
    config.paintLockPane = [&](QPainter& painter, const QRectF& rect) {
        pane.paint(painter, rect, SceneWidgets::lockScreen(), surface->unavailableReason(), base,
                   faces);
    };
    const ColorScheme scheme =
        options.shade == GlassLook::Shade::Light ? ColorScheme::Light : ColorScheme::Dark;
    // The updates section as it looks with a newer version found, from a list that never
    // reaches the network.
    QtHttpClient http(scheduler);
    defaults.setValue(UpdateService::lastCheckKey, context.clock.now().toString(Qt::ISODateWithMs));
    defaults.setValue(UpdateService::outcomeKey, QStringLiteral("available"));
    defaults.setValue(UpdateService::newerKey, QString::fromUtf8(sampleNewerReleases()));
    UpdateService updates(UpdateService::Services{
        .http = http,
        .endpoints = Endpoints(),
        .clock = context.clock,
        .scheduler = scheduler,
        .defaults = defaults,
        .runningVersion = QCoreApplication::applicationVersion(),
        .language = QStringLiteral("en"),
    });
    config.updates = &updates;
    config.installation = PlatformServices::installation();
    config.showWhatsNew = [] {};
    // A picture opens nothing, but shows its buttons as a person finds them.
    if (!config.open) {
        config.open = [](const QUrl&) { return false; };
    }
    config.clock = &context.clock;
    ConfigRoot root(config, scheme);
    // Laid out and drawn without being shown: nothing reaches a screen.
    root.resize(ConfigWindow::contentSize);
    root.select(selection);
    root.layout()->activate();
    root.select(selection);
    if (auto* view = root.findChild<OnboardingView*>()) {
        view->showStep(guide.step.value_or(0));
        // Never shown, the root tells nobody of its size.
        view->setGeometry(root.rect());
        view->layout()->activate();
    }
    return pictureOf(root, options.devicePixelRatio, Qt::transparent);
}

int runConfigPicture(LaunchContext& context, const QString& mode,
                     const std::optional<QString>& section, const std::optional<QString>& page) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const ConfigSelection selection =
        ConfigSelection::resolve(section.value_or(QString()), page.value_or(QString()), nullptr);
    if (problem.isEmpty() && section && !selection.section) {
        problem = QStringLiteral("unknown section \"%1\"; the sections are general, appearance, "
                                 "layouts, updates and about.")
                      .arg(*section);
    }
    if (problem.isEmpty() && page && selection.page.isEmpty()) {
        problem = QStringLiteral("unknown page \"%1\".").arg(*page);
    }
    const QImage picture =
        problem.isEmpty() ? configPicture(context, options, selection) : QImage();
    QString fields = QStringLiteral(" dark=%1").arg(options.darkField());
    if (const std::optional<QString> shown = page ? page : section) {
        fields += QStringLiteral(" page=") + *shown;
    }
    return reportSnapshot(context, mode, path, picture, problem, fields);
}

} // namespace

std::optional<int> runSnapshotTutorialMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const QString raw = context.arguments.secondValue(QStringLiteral("--snapshot-tutorial"))
                            .value_or(QStringLiteral("1"));
    bool number = false;
    const int step = raw.toInt(&number);
    if (problem.isEmpty() && (!number || step < 1 || step > OnboardingView::stepCount)) {
        problem = QStringLiteral("unknown step \"%1\"; the steps are 1 to %2.")
                      .arg(raw)
                      .arg(OnboardingView::stepCount);
    }
    const Guide guide{.step = step - 1,
                      .hasTray = !context.arguments.has(QStringLiteral("--no-tray"))};
    const QImage picture =
        problem.isEmpty() ? configPicture(context, options, ConfigSelection{}, guide) : QImage();
    return reportSnapshot(context, QStringLiteral("snapshot-tutorial"), path, picture, problem,
                          QStringLiteral(" dark=%1 step=%2").arg(options.darkField(), raw));
}

std::optional<int> runSnapshotConfigMode(LaunchContext& context) {
    return runConfigPicture(context, QStringLiteral("snapshot-config"),
                            context.arguments.secondValue(QStringLiteral("--snapshot-config")),
                            std::nullopt);
}

std::optional<int> runSnapshotSettingsMode(LaunchContext& context) {
    return runConfigPicture(context, QStringLiteral("snapshot-settings"), std::nullopt,
                            context.arguments.secondValue(QStringLiteral("--snapshot-settings"))
                                .value_or(QStringLiteral("look")));
}

std::optional<int> runSnapshotKitMode(LaunchContext& context) {
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QImage picture;
    if (options.problem.isEmpty()) {
        ControlKit kit(options.shade == GlassLook::Shade::Light ? ColorScheme::Light
                                                                : ColorScheme::Dark);
        kit.resize(ConfigWindow::contentSize.width(), kit.sizeHint().height());
        kit.layout()->activate();
        picture = pictureOf(kit, options.devicePixelRatio, Qt::transparent);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-kit"), context.values.value(0), picture,
                          options.problem, QStringLiteral(" dark=%1").arg(options.darkField()));
}

std::optional<int> runSnapshotGeneralMode(LaunchContext& context) {
    return runConfigPicture(context, QStringLiteral("snapshot-general"), QStringLiteral("general"),
                            std::nullopt);
}

} // namespace tw
