// The speed test host as a process of its own, for the end-to-end test and the benchmark:
// prints "port=N", serves until its standard input closes, then prints what it moved.
#include "SpeedTestServer.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <unistd.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    tw::test::SpeedTestServer::Limits limits;
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype rate = arguments.indexOf(QStringLiteral("--mbit"));
    if (rate > 0 && rate + 1 < arguments.size()) {
        limits.rate = arguments[rate + 1].toLongLong() * 1'000'000;
    }
    tw::test::SpeedTestServer server(limits);
    QTextStream out(stdout);
    if (!server.isListening()) {
        out << "error=not listening\n";
        return 1;
    }
    out << "port=" << server.port() << Qt::endl;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char buffer[256];
        if (::read(STDIN_FILENO, buffer, sizeof buffer) <= 0) {
            app.quit();
        }
    });
    app.exec();
    out << "served=" << server.served() << " swallowed=" << server.swallowed() << Qt::endl;
    return 0;
}
