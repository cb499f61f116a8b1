// The temperatures by what they stand for, and the fans.
#pragma once

#include "platform/SensorSource.h"

#include <QDateTime>
#include <QList>

#include <array>

namespace tw {

struct SensorReading {
    using Kind = SensorKind;
    // The kinds in the order they are shown.
    static constexpr std::array<Kind, 3> allKinds{Kind::soc, Kind::battery, Kind::storage};
    // The kind's name for a person, localised.
    static QString title(Kind kind);

    Kind kind = Kind::soc;
    double celsius = 0;
    // How many sensors went into the figure.
    int sources = 0;
    bool operator==(const SensorReading&) const = default;
};

struct SensorSnapshot {
    QDateTime sampledAt;
    // In the order soc, battery, storage; a kind with no sensor is absent.
    QList<SensorReading> temperatures;
    // Sensors of none of the three kinds, as read, for the larger faces.
    QList<SensorValue> others;
    // Revolutions per minute.
    QList<double> fans;
    bool hasFans = false;
    // What could not be found, for a person.
    QStringList missing;
    bool operator==(const SensorSnapshot&) const = default;
};

} // namespace tw
