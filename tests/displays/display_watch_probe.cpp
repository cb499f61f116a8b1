// Prints each settled change of the display set, one line each, for the end-to-end test:
//   ready screens=<n> ids=<id,...>
//   settled screens=<n> changed=<true|false> ids=<id,...>
// Quits by itself after the number of seconds given as its argument (default 45).
#include "displays/ScreenTopologyWatcher.h"
#include "platform/QtScheduler.h"
#include "platform/linux/QtDisplays.h"

#include <QGuiApplication>
#include <QStringList>
#include <QTimer>

#include <cstdio>

namespace {

QString ids(const QList<tw::LayoutDisplay>& displays) {
    QStringList list;
    for (const tw::LayoutDisplay& display : displays) {
        list.append(display.id);
    }
    return list.join(QLatin1Char(','));
}

void say(const QString& line) {
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? arguments.at(1).toInt() : 45;
    QTimer::singleShot(std::chrono::seconds(seconds > 0 ? seconds : 45), &app,
                       &QCoreApplication::quit);

    tw::QtDisplays displays;
    tw::QtScheduler scheduler;
    tw::ScreenTopologyWatcher watcher(displays, scheduler);
    QObject::connect(
        &watcher, &tw::ScreenTopologyWatcher::settled, &app,
        [](const tw::ScreenTopologyWatcher::Change& change) {
            say(QStringLiteral("settled screens=%1 changed=%2 ids=%3")
                    .arg(change.displays.size())
                    .arg(change.topologyChanged ? QStringLiteral("true") : QStringLiteral("false"))
                    .arg(ids(change.displays)));
        });
    watcher.start();
    say(QStringLiteral("ready screens=%1 ids=%2")
            .arg(displays.screens().size())
            .arg(ids(tw::LayoutDisplay::currentDisplays(displays))));
    return app.exec();
}
