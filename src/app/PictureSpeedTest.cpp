#include "app/PictureSpeedTest.h"

#include "faces/SpeedTestFace.h"
#include "text/L.h"

namespace tw {

SpeedTestBoard pictureSpeedTest(const WidgetSettings& settings) {
    using Kind = SpeedTestPhase::Kind;
    SpeedTestBoard board = SpeedTestFace::sampleBoard();
    const QString state = settings.value(QStringLiteral("state"));
    if (state == QLatin1String("never")) {
        return {};
    }
    if (state == QLatin1String("failed")) {
        board.phase = {Kind::failed,
                       L("speedtest.error", QStringLiteral("No connection to the test server"))};
        return board;
    }
    const struct {
        const char* name;
        Kind kind;
        double progress;
        double live;
    } moments[] = {{"ping", Kind::ping, 0.04, 0},
                   {"download", Kind::download, 0.36, 468.2},
                   {"upload", Kind::upload, 0.78, 41.7}};
    for (const auto& moment : moments) {
        if (state == QLatin1String(moment.name)) {
            board.phase = {moment.kind, {}};
            board.progress = moment.progress;
            board.liveMbps = moment.live;
            board.pingMs = 8.4;
            board.downMbps = moment.kind == Kind::upload ? std::optional(471.9) : std::nullopt;
            board.upMbps.reset();
            if (moment.kind == Kind::ping) {
                board.pingMs.reset();
            }
        }
    }
    return board;
}

} // namespace tw
