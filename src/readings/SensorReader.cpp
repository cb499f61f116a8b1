#include "readings/SensorReader.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tw {

SensorReader::SensorReader(const SensorSource& source, SampleRunner& runner)
    : SharedSample(
          refreshInterval,
          [&source](const QDateTime& now) { return snapshotOf(source.read(), now); }, runner) {}

bool SensorReader::isPlausible(double celsius) {
    return !std::isnan(celsius) && celsius > lowestCelsius && celsius < highestCelsius;
}

SensorSnapshot SensorReader::snapshotOf(const SensorSample& sample, const QDateTime& now) {
    SensorSnapshot snapshot;
    snapshot.sampledAt = now;
    QMap<SensorKind, QList<double>> byKind;
    for (const SensorValue& value : sample.temperatures) {
        if (!isPlausible(value.celsius)) {
            continue;
        }
        if (value.kind) {
            byKind[*value.kind].append(value.celsius);
        } else {
            snapshot.others.append(value);
        }
    }
    for (const SensorKind kind : SensorReading::allKinds) {
        const QList<double> values = byKind.value(kind);
        if (values.isEmpty()) {
            continue;
        }
        // The hottest die is what limits the chip; a battery or a drive is one body.
        const double celsius =
            kind == SensorKind::soc
                ? *std::max_element(values.begin(), values.end())
                : std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
        snapshot.temperatures.append({kind, celsius, int(values.size())});
    }
    for (const FanValue& fan : sample.fans) {
        if (!std::isnan(fan.rpm) && fan.rpm >= 0) {
            snapshot.fans.append(fan.rpm);
        }
    }
    snapshot.hasFans = !snapshot.fans.isEmpty();
    snapshot.missing = sample.missing;
    return snapshot;
}

} // namespace tw
