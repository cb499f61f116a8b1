// The latest readings of the machine with their short histories, as faces draw them. A plain
// value: the host keeps one up to date, a picture fills its own.
#pragma once

#include "platform/BluetoothSource.h"
#include "platform/PowerSource.h"
#include "platform/SystemSource.h"
#include "readings/ActivitySnapshot.h"
#include "readings/NetworkSnapshot.h"
#include "readings/NowPlaying.h"
#include "readings/SensorSnapshot.h"
#include "readings/SystemSnapshot.h"

#include <QList>

#include <optional>

namespace tw {

struct ReadingsBoard {
    // The longest history any face draws.
    static constexpr qsizetype historyLength = 60;

    // Each absent until first read; a failed reading keeps the last good one.
    std::optional<SystemSnapshot> system;
    // Oldest first, at most historyLength.
    QList<SystemSnapshot> systemHistory;
    std::optional<ActivitySnapshot> activity;
    // The mean core load of each activity sample, oldest first.
    QList<double> activityHistory;
    std::optional<SensorSnapshot> sensors;
    QList<SensorSnapshot> sensorHistory;
    std::optional<NetworkSnapshot> network;
    QList<NetworkSnapshot> networkHistory;
    std::optional<QList<Volume>> volumes;
    std::optional<BatterySnapshot> battery;
    // Whether the machine has Bluetooth that is on, and the paired devices.
    std::optional<bool> bluetoothAvailable;
    QList<BluetoothDevice> bluetooth;
    // What the session's players play; absent until the players were first asked.
    std::optional<NowPlaying> nowPlaying;

    bool operator==(const ReadingsBoard&) const = default;
};

} // namespace tw
