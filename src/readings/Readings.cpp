#include "readings/Readings.h"

#include "platform/BluetoothSource.h"
#include "platform/Clock.h"
#include "platform/PowerSource.h"
#include "platform/SensorSource.h"
#include "platform/SystemSource.h"
#include "readings/ActivitySampler.h"
#include "readings/ActivityService.h"
#include "readings/MediaNowPlayingService.h"
#include "readings/NetworkSampler.h"
#include "readings/NetworkService.h"
#include "readings/PoolSampleRunner.h"
#include "readings/SensorReader.h"
#include "readings/SystemDataService.h"
#include "readings/SystemReader.h"
#include "readings/VolumeService.h"

#include <QThread>

namespace tw {

namespace {

using namespace std::chrono_literals;

// Ticks come a few milliseconds early or late. Polled feeds take a tick that comes a little
// before their interval, so a feed due every second is read on every one-second tick.
constexpr std::chrono::milliseconds tickSlack = 250ms;

template <typename T>
void appendCapped(QList<T>& history, const T& value) {
    history.append(value);
    if (history.size() > ReadingsBoard::historyLength) {
        history.remove(0, history.size() - ReadingsBoard::historyLength);
    }
}

// The readings are shared for a whole interval: on the tick's second, a reading due every two
// seconds is taken every two one-second ticks, not every two or three as the ticks wander.
QDateTime onTheSecond(const QDateTime& now) {
    const qint64 ms = now.toMSecsSinceEpoch();
    return now.addMSecs((ms + 500) / 1000 * 1000 - ms);
}

} // namespace

Readings::Readings(Sources sources, const Clock& clock, SampleRunner* runner, QObject* parent)
    : QObject(parent)
    , m_sources(sources)
    , m_clock(clock) {
    if (runner == nullptr) {
        m_ownRunner = std::make_unique<PoolSampleRunner>();
        runner = m_ownRunner.get();
    }
    if (SystemSource* system = m_sources.system) {
        m_system = std::make_unique<SystemDataService>(*system, *runner);
        m_activity = std::make_unique<ActivityService>(
            *system, *runner, [this](const ActivitySnapshot& snapshot) {
                m_board.activity = snapshot;
                appendCapped(m_board.activityHistory, snapshot.total());
                Q_EMIT boardChanged(ReadingFeed::activity);
            });
        m_network = std::make_unique<NetworkService>(
            *system, *runner, [this](const NetworkSnapshot& snapshot) {
                m_board.network = snapshot;
                appendCapped(m_board.networkHistory, snapshot);
                Q_EMIT boardChanged(ReadingFeed::network);
            });
        m_volumes =
            std::make_unique<VolumeService>(*system, *runner, [this](const QList<Volume>& volumes) {
                // No volume at all is a failed read: the last good list stands.
                if ((volumes.isEmpty() && m_board.volumes) || m_board.volumes == volumes) {
                    return;
                }
                m_board.volumes = volumes;
                Q_EMIT boardChanged(ReadingFeed::disks);
            });
    }
    if (SensorSource* sensors = m_sources.sensors) {
        m_sensors = std::make_unique<SensorReader>(*sensors, *runner);
    }
    if (m_sources.media != nullptr && m_sources.http != nullptr) {
        m_nowPlaying = std::make_unique<MediaNowPlayingService>(*m_sources.media, *m_sources.http,
                                                                *runner, m_clock);
        connect(m_nowPlaying.get(), &MediaNowPlayingService::changed, this,
                &Readings::readNowPlaying);
    }
}

Readings::~Readings() = default;

void Readings::setDemand(ReadingFeeds feeds) {
    m_tileDemand = feeds;
    applyDemand(m_tileDemand | m_previewDemand);
}

void Readings::setPreviewDemand(ReadingFeeds feeds) {
    m_previewDemand = feeds;
    applyDemand(m_tileDemand | m_previewDemand);
}

void Readings::applyDemand(ReadingFeeds feeds) {
    const ReadingFeeds gained = feeds & ~m_demand;
    const ReadingFeeds lost = m_demand & ~feeds;
    m_demand = feeds;
    if (m_sources.power != nullptr) {
        if (gained.testFlag(ReadingFeed::battery)) {
            m_powerConnection =
                connect(m_sources.power, &PowerSource::changed, this, &Readings::readBattery);
            readBattery();
        } else if (lost.testFlag(ReadingFeed::battery)) {
            disconnect(m_powerConnection);
        }
    }
    if (m_sources.bluetooth != nullptr) {
        if (gained.testFlag(ReadingFeed::bluetooth)) {
            m_bluetoothConnection = connect(m_sources.bluetooth, &BluetoothSource::changed, this,
                                            &Readings::readBluetooth);
            readBluetooth();
        } else if (lost.testFlag(ReadingFeed::bluetooth)) {
            disconnect(m_bluetoothConnection);
        }
    }
    if (m_nowPlaying && (gained | lost).testFlag(ReadingFeed::nowPlaying)) {
        m_nowPlaying->setActive(feeds.testFlag(ReadingFeed::nowPlaying));
        readNowPlaying();
    }
}

void Readings::refresh(const QDateTime& now) {
    const QDateTime beat = onTheSecond(now);
    if (m_demand.testFlag(ReadingFeed::nowPlaying) && m_nowPlaying) {
        m_nowPlaying->refreshIfDue(beat);
    }
    if (m_demand.testFlag(ReadingFeed::system) && m_system) {
        m_system->snapshot(beat, this, [this](const SystemSnapshot& snapshot) {
            if (m_board.system && m_board.system->sampledAt == snapshot.sampledAt) {
                return;
            }
            m_board.system = snapshot;
            appendCapped(m_board.systemHistory, snapshot);
            Q_EMIT boardChanged(ReadingFeed::system);
        });
    }
    if (m_demand.testFlag(ReadingFeed::sensors) && m_sensors) {
        m_sensors->snapshot(beat, this, [this](const SensorSnapshot& snapshot) {
            if (m_board.sensors && m_board.sensors->sampledAt == snapshot.sampledAt) {
                return;
            }
            m_board.sensors = snapshot;
            appendCapped(m_board.sensorHistory, snapshot);
            Q_EMIT boardChanged(ReadingFeed::sensors);
        });
    }
    if (m_demand.testFlag(ReadingFeed::activity) && m_activity) {
        m_activity->refresh(ActivityService::refreshInterval - tickSlack, beat);
    }
    if (m_demand.testFlag(ReadingFeed::network) && m_network) {
        m_network->refresh(NetworkService::refreshInterval - tickSlack, beat);
    }
    if (m_demand.testFlag(ReadingFeed::disks) && m_volumes) {
        m_volumes->refresh(VolumeService::refreshInterval - tickSlack, beat);
    }
}

void Readings::readBattery() {
    const BatterySnapshot battery = m_sources.power->battery();
    if (m_board.battery != battery) {
        m_board.battery = battery;
        Q_EMIT boardChanged(ReadingFeed::battery);
    }
}

void Readings::readBluetooth() {
    const bool available = m_sources.bluetooth->available();
    const QList<BluetoothDevice> devices = m_sources.bluetooth->devices();
    if (m_board.bluetoothAvailable != available || m_board.bluetooth != devices) {
        m_board.bluetoothAvailable = available;
        m_board.bluetooth = devices;
        Q_EMIT boardChanged(ReadingFeed::bluetooth);
    }
}

void Readings::readNowPlaying() {
    const std::optional<NowPlaying> now =
        m_nowPlaying->isActive() ? std::optional(m_nowPlaying->nowPlaying()) : std::nullopt;
    if (m_board.nowPlaying != now) {
        m_board.nowPlaying = now;
        Q_EMIT boardChanged(ReadingFeed::nowPlaying);
    }
}

ReadingsBoard Readings::sampleNow(ReadingFeeds feeds, std::chrono::milliseconds pause) const {
    ReadingsBoard board;
    if (SystemSource* source = m_sources.system) {
        SystemReader system(*source);
        ActivitySampler activity(*source);
        NetworkSampler network(*source);
        const QDateTime first = m_clock.now();
        const bool wantsSystem = feeds.testFlag(ReadingFeed::system);
        const bool wantsActivity = feeds.testFlag(ReadingFeed::activity);
        const bool wantsNetwork = feeds.testFlag(ReadingFeed::network);
        if (wantsSystem) {
            system.readCPUUsage();
        }
        if (wantsActivity) {
            activity.sample(first);
        }
        if (wantsNetwork) {
            network.sample(first);
        }
        if ((wantsSystem || wantsActivity || wantsNetwork) && pause.count() > 0) {
            QThread::msleep(static_cast<unsigned long>(pause.count()));
        }
        const QDateTime second = m_clock.now();
        if (wantsSystem) {
            board.system = system.read(second);
            board.systemHistory = {*board.system};
        }
        if (wantsActivity) {
            board.activity = activity.sample(second);
            board.activityHistory = {board.activity->total()};
        }
        if (wantsNetwork) {
            board.network = network.sample(second);
            board.networkHistory = {*board.network};
        }
        if (feeds.testFlag(ReadingFeed::disks)) {
            board.volumes = source->volumes();
        }
    }
    if (m_sources.sensors != nullptr && feeds.testFlag(ReadingFeed::sensors)) {
        board.sensors = SensorReader::snapshotOf(m_sources.sensors->read(), m_clock.now());
        board.sensorHistory = {*board.sensors};
    }
    if (m_sources.power != nullptr && feeds.testFlag(ReadingFeed::battery)) {
        board.battery = m_sources.power->battery();
    }
    if (m_sources.bluetooth != nullptr && feeds.testFlag(ReadingFeed::bluetooth)) {
        board.bluetoothAvailable = m_sources.bluetooth->available();
        board.bluetooth = m_sources.bluetooth->devices();
    }
    if (m_nowPlaying && m_nowPlaying->isActive() && feeds.testFlag(ReadingFeed::nowPlaying)) {
        board.nowPlaying = m_nowPlaying->nowPlaying();
    }
    return board;
}

} // namespace tw
