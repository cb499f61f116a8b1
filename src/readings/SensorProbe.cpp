#include "readings/SensorProbe.h"

#include "platform/SensorSource.h"
#include "readings/SensorReader.h"
#include "text/L.h"

#include <QStringList>

namespace tw {

SensorProbe::Report SensorProbe::report(const SensorSource& source, const QDateTime& now) {
    const SensorSnapshot snapshot = SensorReader::snapshotOf(source.read(), now);
    QStringList lines;
    for (const SensorReading& reading : snapshot.temperatures) {
        lines << QStringLiteral("%1 %2 °C (%3 sensors)")
                     .arg(SensorReading::title(reading.kind))
                     .arg(reading.celsius, 0, 'f', 2)
                     .arg(reading.sources);
    }
    // Sensors of no known kind still tell a person what the machine offers.
    for (const SensorValue& other : snapshot.others) {
        lines << QStringLiteral("%1 %2 °C").arg(other.label).arg(other.celsius, 0, 'f', 2);
    }
    QString fans = QStringLiteral("fans:     ");
    if (snapshot.hasFans) {
        QStringList speeds;
        for (const double rpm : snapshot.fans) {
            speeds << QStringLiteral("%1 rpm").arg(rpm, 0, 'f', 0);
        }
        fans += speeds.join(QLatin1String(", "));
    } else {
        fans += L("sensord.noFans", QStringLiteral("none reported (fanless Mac, or no fan keys)"));
    }
    lines << fans << snapshot.missing;
    return {lines.join(QLatin1Char('\n')) + QLatin1Char('\n'),
            !snapshot.temperatures.isEmpty() || snapshot.hasFans || !snapshot.others.isEmpty()};
}

} // namespace tw
