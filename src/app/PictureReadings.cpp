#include "app/PictureReadings.h"

#include "platform/PlatformServices.h"
#include "platform/SystemClock.h"
#include "readings/Readings.h"

#include <QLoggingCategory>

namespace tw {

ReadingsBoard pictureReadings(ReadingFeeds feeds) {
    if (!feeds) {
        return {};
    }
    // What a source notes about this machine (no graphics load reported, say) is the host's
    // log's; a picture's stderr holds its own report. QT_LOGGING_RULES still wins.
    QLoggingCategory::setFilterRules(QStringLiteral("tarnwick.readings.info=false"));
    const PlatformServices sources = PlatformServices::makeReadingSources();
    // Loads and rates are measured between two reads in real time, whatever time the picture
    // shows.
    const SystemClock clock;
    const Readings readings({.system = sources.system.get(),
                             .power = sources.power.get(),
                             .sensors = sources.sensors.get(),
                             .bluetooth = sources.bluetooth.get()},
                            clock);
    return readings.sampleNow(feeds);
}

} // namespace tw
