// A stand-in for the application in the relaunch test. The first generation records its pid in
// the file named by its argument and relaunches itself; the second records its pid and whether
// the first was still alive when it started, and ends.
#include "platform/PlatformServices.h"
#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

#include <csignal>

namespace {

void record(const QString& path, const QString& line) {
    QFile file(path);
    if (file.open(QIODevice::Append | QIODevice::Text)) {
        file.write((line + QLatin1Char('\n')).toUtf8());
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QString marker = app.arguments().value(1);
    if (marker.isEmpty()) {
        return 2;
    }
    const qint64 pid = QCoreApplication::applicationPid();
    QFile file(marker);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        const QStringList first =
            QString::fromUtf8(file.readLine()).trimmed().split(QLatin1Char(' '));
        file.close();
        const bool firstAlive = ::kill(static_cast<pid_t>(first.value(1).toLongLong()), 0) == 0;
        record(marker, QStringLiteral("second %1 %2")
                           .arg(pid)
                           .arg(firstAlive ? QStringLiteral("alive") : QStringLiteral("gone")));
        return 0;
    }
    record(marker, QStringLiteral("first %1").arg(pid));
    const std::unique_ptr<tw::Relauncher> relauncher = tw::PlatformServices::makeRelauncher();
    QTimer::singleShot(0, &app, [&app, &marker, &relauncher] {
        if (!tw::AppSettings::relaunch(*relauncher)) {
            record(marker, QStringLiteral("failed"));
            app.exit(1);
        }
    });
    return app.exec();
}
