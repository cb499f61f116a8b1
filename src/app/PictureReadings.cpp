#include "app/PictureReadings.h"

#include "net/QtHttpClient.h"
#include "platform/PlatformServices.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"
#include "readings/Readings.h"

#include <QEventLoop>
#include <QLoggingCategory>
#include <QTimer>

namespace tw {

namespace {

using namespace std::chrono_literals;

// Power and Bluetooth answer with what their services last announced; a picture gives them a
// moment to hear the first announcement.
constexpr std::chrono::milliseconds firstAnnouncement = 400ms;
// The players answer, and the cover of the one shown arrives, within this or not at all.
constexpr std::chrono::milliseconds playersAnswer = 1500ms;

template <typename Source>
void awaitFirstAnnouncement(Source* source) {
    if (source == nullptr) {
        return;
    }
    QEventLoop loop;
    QTimer::singleShot(firstAnnouncement, &loop, &QEventLoop::quit);
    QObject::connect(source, &Source::changed, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

ReadingsBoard pictureReadings(ReadingFeeds feeds) {
    if (!feeds) {
        return {};
    }
    // What a source notes about this machine (no graphics load reported, say) is the host's
    // log's; a picture's stderr holds its own report. QT_LOGGING_RULES still wins.
    QLoggingCategory::setFilterRules(QStringLiteral("tarnwick.readings.info=false"));
    const PlatformServices sources = PlatformServices::makeReadingSources();
    if (feeds.testFlag(ReadingFeed::battery)) {
        awaitFirstAnnouncement(sources.power.get());
    }
    if (feeds.testFlag(ReadingFeed::bluetooth)) {
        awaitFirstAnnouncement(sources.bluetooth.get());
    }
    // Loads and rates are measured between two reads in real time, whatever time the picture
    // shows.
    const SystemClock clock;
    QtScheduler scheduler;
    QtHttpClient http(scheduler);
    const bool media = feeds.testFlag(ReadingFeed::nowPlaying);
    const std::unique_ptr<MediaPlayers> players =
        media ? PlatformServices::makeMediaPlayers(clock) : nullptr;
    Readings readings({.system = sources.system.get(),
                       .power = sources.power.get(),
                       .sensors = sources.sensors.get(),
                       .bluetooth = sources.bluetooth.get(),
                       .media = players.get(),
                       .http = &http},
                      clock);
    if (media) {
        // Until the shown track has its cover, or the players had their time.
        QEventLoop loop;
        QTimer::singleShot(playersAnswer, &loop, &QEventLoop::quit);
        QObject::connect(&readings, &Readings::boardChanged, &loop, [&] {
            const auto& now = readings.board().nowPlaying;
            if (now && !now->artwork.isEmpty()) {
                loop.quit();
            }
        });
        readings.setDemand(ReadingFeed::nowPlaying);
        loop.exec();
    }
    return readings.sampleNow(feeds);
}

} // namespace tw
