#include "readings/SensorSnapshot.h"

#include "text/L.h"

namespace tw {

QString SensorReading::title(Kind kind) {
    switch (kind) {
    case Kind::soc:
        return L("sensors.kind.soc", QStringLiteral("Chip"));
    case Kind::battery:
        return L("sensors.kind.battery", QStringLiteral("Battery"));
    case Kind::storage:
        return L("sensors.kind.storage", QStringLiteral("Storage"));
    }
    return {};
}

} // namespace tw
