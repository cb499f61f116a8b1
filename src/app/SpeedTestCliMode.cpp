#include "app/LaunchModes.h"
#include "platform/QtScheduler.h"
#include "speed/SpeedTestService.h"
#include "tick/SnapshotClock.h"

#include <QCoreApplication>
#include <QTimer>

namespace tw {

namespace {

using namespace std::chrono_literals;

QString figure(std::optional<double> value) {
    return value ? QString::number(*value, 'f', 1) : QStringLiteral("—");
}

// "phase=download live=412.7 down=398.0 ping=3.1"; a failure carries its reason in the phase.
QString line(const SpeedTestBoard& board) {
    QString phase = SpeedTestPhase::name(board.phase.kind);
    if (board.phase.kind == SpeedTestPhase::Kind::failed) {
        phase += QLatin1Char('(') + board.phase.message + QLatin1Char(')');
    }
    return QStringLiteral("phase=%1 live=%2 down=%3 ping=%4")
        .arg(phase, figure(board.liveMbps), figure(board.downMbps), figure(board.pingMs));
}

} // namespace

std::optional<int> runSpeedTestCliMode(LaunchContext& context) {
    QtScheduler scheduler;
    SpeedTestService service(
        {context.clock, scheduler, context.defaults, Endpoints::fromEnvironment(), {}});
    QTimer poll;
    const auto report = [&] {
        context.out << line(service.board()) << Qt::endl;
        if (!service.phase().isRunning()) {
            QCoreApplication::quit();
        }
    };
    QObject::connect(&poll, &QTimer::timeout, &service, report);
    // The end is reported at once, not at the next poll.
    QObject::connect(&service, &SpeedTestService::boardChanged, &service, [&] {
        if (!service.phase().isRunning()) {
            poll.stop();
            report();
        }
    });
    service.start();
    if (service.phase().isRunning()) {
        poll.start(500ms);
        QCoreApplication::exec();
    }
    return 0;
}

} // namespace tw
