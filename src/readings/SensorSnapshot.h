// The temperatures by what they stand for, and the fans.
#pragma once

#include "platform/SensorSource.h"

#include <QDateTime>
#include <QList>

namespace tw {

struct SensorReading {
    using Kind = SensorKind;
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
