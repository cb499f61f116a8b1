#include "platform/linux/PowerSupply.h"

#include "platform/linux/SysfsText.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

// Beyond a week the rate is noise (a battery idling at a few µW), not an estimate.
constexpr double longestEstimateMinutes = 7 * 24 * 60;

std::optional<bool> flag(const std::optional<QByteArray>& bytes) {
    if (!bytes) {
        return std::nullopt;
    }
    const std::optional<qint64> value = sysfs::integer(*bytes);
    if (!value) {
        return std::nullopt;
    }
    return *value != 0;
}

std::optional<qint64> number(const std::optional<QByteArray>& bytes) {
    return bytes ? sysfs::integer(*bytes) : std::nullopt;
}

QString text(const std::optional<QByteArray>& bytes) {
    return bytes ? sysfs::word(*bytes) : QString();
}

bool isExternal(const PowerSupply& supply) {
    return supply.type == QLatin1String("Mains") || supply.type.startsWith(QLatin1String("USB"));
}

bool powersThisMachine(const PowerSupply& supply) {
    return supply.type == QLatin1String("Battery") &&
           supply.scope.compare(QLatin1String("Device"), Qt::CaseInsensitive) != 0 &&
           supply.present.value_or(true);
}

// The batteries' content, what they lack to be full, and the rate it moves at, all in one unit
// (energy or charge) that every battery reports; none when they do not share one.
struct Amounts {
    double now = 0;
    double full = 0;
    double rate = 0;
};

std::optional<Amounts> sum(const QList<const PowerSupply*>& batteries, bool energy) {
    Amounts total;
    for (const PowerSupply* battery : batteries) {
        const auto& now = energy ? battery->energyNow : battery->chargeNow;
        const auto& full = energy ? battery->energyFull : battery->chargeFull;
        const auto& rate = energy ? battery->powerNow : battery->currentNow;
        if (!now || !full || *full <= 0) {
            return std::nullopt;
        }
        total.now += static_cast<double>(std::max<qint64>(*now, 0));
        total.full += static_cast<double>(*full);
        // Some drivers sign the rate by direction.
        total.rate += std::fabs(static_cast<double>(rate.value_or(0)));
    }
    return total;
}

int minutes(double amount, double rate) {
    if (rate <= 0 || amount <= 0) {
        return -1;
    }
    const double value = std::round(amount / rate * 60);
    return value >= 1 && value <= longestEstimateMinutes ? static_cast<int>(value) : -1;
}

} // namespace

PowerSupply
PowerSupply::fromFiles(const std::function<std::optional<QByteArray>(const char*)>& file) {
    PowerSupply supply;
    supply.type = text(file("type"));
    supply.scope = text(file("scope"));
    supply.status = text(file("status"));
    supply.online = flag(file("online"));
    supply.present = flag(file("present"));
    supply.capacity = number(file("capacity"));
    supply.energyNow = number(file("energy_now"));
    supply.energyFull = number(file("energy_full"));
    supply.powerNow = number(file("power_now"));
    supply.chargeNow = number(file("charge_now"));
    supply.chargeFull = number(file("charge_full"));
    supply.currentNow = number(file("current_now"));
    return supply;
}

QList<PowerSupply> PowerSupply::readAll(const QString& sysRoot) {
    const QDir dir(sysRoot + QStringLiteral("/class/power_supply"));
    QList<PowerSupply> supplies;
    for (const QString& name : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString base = dir.filePath(name) + QLatin1Char('/');
        supplies.append(fromFiles([&base](const char* attribute) {
            return sysfs::read(base + QLatin1String(attribute));
        }));
    }
    return supplies;
}

BatterySnapshot batteryFromSupplies(const QList<PowerSupply>& supplies) {
    QList<const PowerSupply*> batteries;
    bool anyExternal = false;
    bool externalOnline = false;
    for (const PowerSupply& supply : supplies) {
        if (powersThisMachine(supply)) {
            batteries.append(&supply);
        } else if (isExternal(supply) && supply.online) {
            anyExternal = true;
            externalOnline = externalOnline || *supply.online;
        }
    }
    BatterySnapshot snapshot;
    if (batteries.isEmpty()) {
        return snapshot;
    }
    snapshot.hasBattery = true;
    bool discharging = false;
    for (const PowerSupply* battery : batteries) {
        snapshot.isCharging = snapshot.isCharging || battery->status == QLatin1String("Charging");
        discharging = discharging || battery->status == QLatin1String("Discharging");
    }
    snapshot.isPluggedIn = anyExternal ? externalOnline : !discharging;

    std::optional<Amounts> amounts = sum(batteries, true);
    if (!amounts) {
        amounts = sum(batteries, false);
    }
    std::optional<double> percent;
    if (amounts) {
        percent = amounts->now / amounts->full * 100;
    } else {
        double capacities = 0;
        int counted = 0;
        for (const PowerSupply* battery : batteries) {
            if (battery->capacity) {
                capacities += static_cast<double>(*battery->capacity);
                ++counted;
            }
        }
        if (counted > 0) {
            percent = capacities / counted;
        }
    }
    if (percent) {
        snapshot.percent = static_cast<int>(std::clamp(std::round(*percent), 0.0, 100.0));
    }
    if (amounts && discharging) {
        snapshot.timeToEmpty = minutes(amounts->now, amounts->rate);
    }
    if (amounts && snapshot.isCharging) {
        snapshot.timeToFull = minutes(amounts->full - amounts->now, amounts->rate);
    }
    return snapshot;
}

} // namespace tw
