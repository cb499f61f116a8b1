// The machine's readings the host keeps for its tiles: one board of the latest figures, sampled
// only for the feeds a visible tile needs, each at its own pace and off the main thread.
#pragma once

#include "readings/ReadingFeed.h"
#include "readings/ReadingsBoard.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace tw {

class ActivityService;
class BluetoothSource;
class Clock;
class HttpClient;
class MediaNowPlayingService;
class MediaPlayers;
class NetworkService;
class PowerSource;
class SampleRunner;
class SensorReader;
class SensorSource;
class SystemDataService;
class SystemSource;
class VolumeService;

class Readings final : public QObject {
    Q_OBJECT
public:
    // Each may be null: its feeds then stay empty, and faces show them as missing.
    struct Sources {
        SystemSource* system = nullptr;
        PowerSource* power = nullptr;
        SensorSource* sensors = nullptr;
        BluetoothSource* bluetooth = nullptr;
        // The now-playing feed needs both: the players, and the way to their covers on the web.
        MediaPlayers* media = nullptr;
        HttpClient* http = nullptr;
    };

    // Every feed there is.
    static constexpr ReadingFeeds allFeeds{ReadingFeed::system,    ReadingFeed::activity,
                                           ReadingFeed::sensors,   ReadingFeed::network,
                                           ReadingFeed::disks,     ReadingFeed::battery,
                                           ReadingFeed::bluetooth, ReadingFeed::nowPlaying};
    // How long `sampleNow` waits between two reads of the counters.
    static constexpr std::chrono::milliseconds samplePause{250};

    // The sources and the clock must outlive this. Without a runner the reads run on a thread
    // of the hub's own.
    Readings(Sources sources, const Clock& clock, SampleRunner* runner = nullptr,
             QObject* parent = nullptr);
    ~Readings() override;

    const ReadingsBoard& board() const { return m_board; }
    // What the tiles and the previews need together.
    ReadingFeeds demand() const { return m_demand; }

    // What visible tiles need now; nothing else is sampled. Battery and Bluetooth follow their
    // sources' announcements while demanded.
    void setDemand(ReadingFeeds feeds);
    // What previews outside the desktop (the gallery's) need while they are on screen, on top of
    // the tiles' demand.
    void setPreviewDemand(ReadingFeeds feeds);
    // On each tick: samples the demanded feeds that are due.
    void refresh(const QDateTime& now);
    // The demanded `feeds` read at once, for pictures: counters are read twice, `pause` apart,
    // so that loads and rates are real figures. Leaves the hub's own board alone.
    // The player the now-playing tiles show and their buttons' way to it; null without players.
    MediaNowPlayingService* nowPlaying() const { return m_nowPlaying.get(); }
    ReadingsBoard sampleNow(ReadingFeeds feeds = allFeeds,
                            std::chrono::milliseconds pause = samplePause) const;

Q_SIGNALS:
    void boardChanged(tw::ReadingFeeds changed);

private:
    void applyDemand(ReadingFeeds feeds);
    void readBattery();
    void readBluetooth();
    void readNowPlaying();

    Sources m_sources;
    const Clock& m_clock;
    std::unique_ptr<SampleRunner> m_ownRunner;
    ReadingsBoard m_board;
    ReadingFeeds m_demand;
    ReadingFeeds m_tileDemand;
    ReadingFeeds m_previewDemand;
    std::unique_ptr<SystemDataService> m_system;
    std::unique_ptr<ActivityService> m_activity;
    std::unique_ptr<SensorReader> m_sensors;
    std::unique_ptr<NetworkService> m_network;
    std::unique_ptr<VolumeService> m_volumes;
    std::unique_ptr<MediaNowPlayingService> m_nowPlaying;
    QMetaObject::Connection m_powerConnection;
    QMetaObject::Connection m_bluetoothConnection;
};

} // namespace tw
