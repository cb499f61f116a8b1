// tarnwick-web --frame PATH [--no-sandbox]: commands on standard input, events on standard
// output (live/WebMessage), the page's picture in PATH. Ends when its input closes.
#include "live/WebMessage.h"
#include "live/web/WebRenderer.h"

#include <QApplication>
#include <QFile>
#include <QThread>

#include <cstdio>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    QString framePath;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--frame" && i + 1 < argc) {
            framePath = QFile::decodeName(argv[++i]);
        } else if (argument == "--no-sandbox") {
            // The engine refuses its sandbox to the administrator; the host decides.
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        }
    }
    if (framePath.isEmpty()) {
        std::fputs("usage: tarnwick-web --frame PATH [--no-sandbox]\n", stderr);
        return 2;
    }
    // Never a window on the person's display: pages are drawn into pictures alone.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);

    tw::WebRenderer renderer(framePath, [](const QByteArray& line) {
        std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
        std::fflush(stdout);
    });

    // Standard input is read on a thread of its own so the engine's loop never waits on it.
    QThread* reader = QThread::create([&renderer] {
        std::string line;
        while (std::getline(std::cin, line)) {
            const QByteArray bytes = QByteArray::fromStdString(line);
            QMetaObject::invokeMethod(&renderer, [&renderer, bytes] {
                if (const std::optional<tw::WebCommand> command =
                        tw::WebMessage::decodeCommand(bytes)) {
                    renderer.handle(*command);
                }
            });
        }
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit);
    });
    reader->start();
    const int status = QApplication::exec();
    reader->wait(200);
    return status;
}
