#include "app/AppDelegate.h"
#include "app/LaunchModes.h"
#include "app/SingleInstance.h"
#include "backup/LayoutBackup.h"
#include "platform/AppPaths.h"
#include "platform/PlatformServices.h"
#include "platform/linux/TerminationSignals.h"
#include "tick/OffsetClock.h"
#include "tick/SnapshotClock.h"

#include <QApplication>
#include <QGuiApplication>

namespace tw {

std::optional<int> runDesktopHost(LaunchContext& context) {
    // Panels on an off-screen platform would run forever with nobody to see them.
    const QString platform = QGuiApplication::platformName();
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr ||
        QGuiApplication::primaryScreen() == nullptr || platform == QLatin1String("offscreen") ||
        platform == QLatin1String("minimal")) {
        context.err << PlatformServices::wording().needsDisplay << '\n';
        return 1;
    }
    auto instance = SingleInstance::claim(SingleInstance::serverName(AppPaths::appSupportDir()),
                                          qEnvironmentVariable("TKW_CONFIG_SECTION"),
                                          qEnvironmentVariable("TKW_SETTINGS_PAGE"),
                                          SingleInstance::filesToOpen(context.arguments.all()));
    if (!instance) {
        context.out << QStringLiteral(
            "Tarnwick is already running; its window was brought forward.\n");
        return 0;
    }
    // A restore that was cut short is finished before any store reads its file.
    LayoutBackup::finishPendingRestore({.directory = AppPaths::appSupportDir(),
                                        .defaults = context.defaults,
                                        .appVersion = QCoreApplication::applicationVersion()});
    // Read once: the clock starts at that moment and runs on, so a time rule can be watched now.
    const QString start = qEnvironmentVariable("TKW_CLOCK_START");
    const auto offset = OffsetClock::offsetFor(start, context.clock.system().now());
    if (!start.isEmpty() && !offset) {
        context.err << "TKW_CLOCK_START is not an ISO 8601 time and was ignored.\n";
    }
    const OffsetClock system(context.clock.system(), offset.value_or(std::chrono::milliseconds{0}));
    SnapshotClock current(system);
    current.setPinned(context.clock.pinned());
    AppDelegate delegate(context.defaults, {.system = system, .current = current},
                         context.arguments.all());
    delegate.applicationDidFinishLaunching(std::move(instance));
    // A logout's SIGTERM quits like the menu's Quit: what the stores hold is written first.
    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::received, qApp, [](int signal) {
        qInfo("Quitting on signal %d.", signal);
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}

} // namespace tw
