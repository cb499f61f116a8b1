#include "app/LaunchChain.h"

#include "app/LaunchModes.h"
#include "platform/PlatformServices.h"
#include "platform/SettingsDefaults.h"
#include "platform/SystemClock.h"
#include "settings/AppSettings.h"
#include "settings/Localization.h"
#include "tick/SnapshotClock.h"

#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>

#include <memory>
#include <span>

namespace tw {

namespace {

std::unique_ptr<QCoreApplication> makeApplication(ApplicationKind kind, int& argc, char** argv) {
    switch (kind) {
    case ApplicationKind::core:
        return std::make_unique<QCoreApplication>(argc, argv);
    case ApplicationKind::gui:
        return std::make_unique<QGuiApplication>(argc, argv);
    case ApplicationKind::offscreen:
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(argc, argv);
    case ApplicationKind::offscreenWidgets:
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QApplication>(argc, argv);
    case ApplicationKind::widgets:
        return std::make_unique<QApplication>(argc, argv);
    }
    Q_UNREACHABLE();
}

QStringList rawArguments(int argc, char** argv) {
    QStringList arguments;
    for (const char* argument : std::span(argv, static_cast<std::size_t>(argc))) {
        arguments.append(QString::fromLocal8Bit(argument));
    }
    return arguments;
}

bool matches(const LaunchStep& step, const LaunchArguments& arguments) {
    return step.flag != nullptr &&
           arguments.values(QLatin1String(step.flag), step.valueCount).has_value();
}

// Mode flags present without their values: they count as absent, which a person may not expect.
void noteMissingValues(const LaunchArguments& arguments, QTextStream& err) {
    for (const LaunchStep& step : LaunchChain::steps()) {
        if (step.flag != nullptr && step.valueCount > 0 &&
            arguments.has(QLatin1String(step.flag))) {
            err << step.flag << " is missing its value and was ignored; see tarnwick --help.\n";
        }
    }
}

} // namespace

const QList<LaunchStep>& LaunchChain::steps() {
    using enum ApplicationKind;
    // The order is part of the interface: with several flags the first listed wins. Picture
    // modes of the configuration window stand before the TWK_TIME step, widget pictures after.
    static const QList<LaunchStep> chain{
        {"--help", 0, core, &runHelpMode},
        {"-h", 0, core, &runHelpMode},
        {"--web", 2, offscreen, &runWebMode},
        {"--camera", 0, offscreen, &runCameraMode},
        {"--sensord", 0, core, &runSensordMode},
        {"--wallpapers", 1, offscreen, &runWallpapersMode},
        {"--apply-wallpaper", 1, offscreen, &runApplyWallpaperMode},
        {"--sizes", 0, core, &runSizesMode},
        {"--counts", 0, core, &runCountsMode},
        {"--icon", 1, offscreen, &runIconMode},
        {"--snapshot-aiprompt", 1, core, &runSnapshotAIPromptMode},
        {"--snapshot-whatsnew", 1, offscreenWidgets, &runSnapshotWhatsNewMode},
        {"--snapshot-browse", 1, offscreenWidgets, &runSnapshotBrowseMode},
        {"--snapshot-kit", 1, offscreenWidgets, &runSnapshotKitMode},
        {"--snapshot-general", 1, offscreenWidgets, &runSnapshotGeneralMode},
        {"--snapshot-config", 1, offscreenWidgets, &runSnapshotConfigMode},
        {"--snapshot-settings", 1, offscreenWidgets, &runSnapshotSettingsMode},
        {"--snapshot-tutorial", 1, offscreenWidgets, &runSnapshotTutorialMode},
        {"--snapshot-customeditor", 1, offscreenWidgets, &runSnapshotCustomEditorMode},
        {"--snapshot-notice", 1, offscreenWidgets, &runSnapshotNoticeMode},
        {nullptr, 0, core, &runSnapshotTimeStep},
        {"--snapshot-widget", 1, offscreen, &runSnapshotWidgetMode},
        {"--snapshot-gallery", 1, offscreen, &runSnapshotGalleryMode},
        {"--snapshot-share", 1, offscreen, &runSnapshotShareMode},
        {"--snapshot-glass", 1, offscreen, &runSnapshotGlassMode},
        {"--snapshot-lock", 1, offscreen, &runSnapshotLockMode},
        {"--snapshot-glass-hero", 1, offscreen, &runSnapshotGlassHeroMode},
        {"--snapshot-lockpane", 1, offscreen, &runSnapshotLockPaneMode},
        {"--snapshot-livebg", 1, offscreen, &runSnapshotLiveBackdropMode},
        {"--snapshot-glassintro", 1, offscreen, &runSnapshotGlassIntroMode},
        {"--speedtest-cli", 0, core, &runSpeedTestCliMode},
        {"--list-sizes", 0, core, &runListSizesMode},
        {"--probe-skylight", 0, core, &runProbeSkylightMode},
        // Reads its three values itself, so that a missing one is reported, not ignored.
        {"--sky", 0, core, &runSkyMode},
    };
    return chain;
}

const LaunchStep& LaunchChain::application() {
    static const LaunchStep host{nullptr, 0, ApplicationKind::widgets, &runDesktopHost};
    return host;
}

const LaunchStep* LaunchChain::winner(const LaunchArguments& arguments) {
    for (const LaunchStep& step : steps()) {
        if (matches(step, arguments)) {
            return &step;
        }
    }
    return nullptr;
}

int LaunchChain::run(int& argc, char** argv) {
    // The one place the version is set: the build's project version.
    QCoreApplication::setApplicationVersion(QStringLiteral(TARNWICK_VERSION));
    const LaunchArguments arguments(rawArguments(argc, argv));
    const LaunchStep* chosen = winner(arguments);
    if (chosen == nullptr) {
        if (const std::optional<QString> problem = PlatformServices::whyNoDisplay()) {
            QTextStream err(stderr);
            err << *problem << '\n';
            noteMissingValues(arguments, err);
            return 1;
        }
    }
    const std::unique_ptr<QCoreApplication> app = makeApplication(
        chosen != nullptr ? chosen->application : application().application, argc, argv);

    SettingsDefaults defaults;
    // Before anything is looked at: every mode may render localised text.
    Localization::installPlatformWording(PlatformServices::wording().stringTable);
    AppSettings::applyLanguagePreferenceAtStartup(defaults);

    SystemClock systemClock;
    SnapshotClock clock(systemClock);
    QTextStream out(stdout);
    QTextStream err(stderr);
    LaunchContext context{arguments, clock, defaults, out, err, {}};

    for (const LaunchStep& step : steps()) {
        if (&step == chosen) {
            context.values = arguments.values(QLatin1String(step.flag), step.valueCount).value();
            return step.run(context).value_or(0);
        }
        if (step.flag == nullptr) {
            if (const std::optional<int> status = step.run(context)) {
                return *status;
            }
        }
    }
    return application().run(context).value_or(0);
}

} // namespace tw
