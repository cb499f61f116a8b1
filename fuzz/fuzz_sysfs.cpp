// sysfs attributes as the kernel, or a broken driver, may write them: "name=value" lines make
// one power supply's files, and every line is also a sensor's value and a chip's name. Any
// bytes give a battery whose figures stay in their ranges.
#include "Require.h"
#include "platform/linux/HwmonSensorSource.h"
#include "platform/linux/PowerSupply.h"
#include "platform/linux/SysfsText.h"

#include <QByteArray>
#include <QHash>

#include <cstdint>

using tw::fuzz::require;

namespace {

bool isEstimate(int minutes) {
    return minutes == -1 || minutes >= 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QHash<QByteArray, QByteArray> files;
    for (const QByteArray& line : bytes.split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0) {
            files.insert(line.left(equals), line.mid(equals + 1));
        }
        (void)tw::HwmonSensorSource::celsius(line);
        (void)tw::HwmonSensorSource::kindOfChip(tw::sysfs::word(line));
    }
    const auto file = [&files](const char* name) -> std::optional<QByteArray> {
        const auto it = files.constFind(QByteArray(name));
        return it == files.constEnd() ? std::nullopt : std::optional(*it);
    };
    const tw::PowerSupply supply = tw::PowerSupply::fromFiles(file);
    tw::PowerSupply battery = supply;
    battery.type = QStringLiteral("Battery");
    const tw::BatterySnapshot snapshot = tw::batteryFromSupplies({supply, battery, battery});
    require(snapshot.hasBattery || snapshot.percent == -1, "a percent without a battery");
    require(snapshot.percent >= -1 && snapshot.percent <= 100, "percent out of range");
    require(isEstimate(snapshot.timeToEmpty) && isEstimate(snapshot.timeToFull),
            "an estimate below a minute");
    return 0;
}
