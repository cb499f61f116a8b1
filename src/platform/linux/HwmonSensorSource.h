// Temperatures and fans from the kernel's hwmon devices (/sys/class/hwmon), named as sensor
// tools show them ("coretemp Package id 0"), with the thermal zones where no hwmon device
// reports the processor.
#pragma once

#include "platform/SensorSource.h"

#include <QByteArray>

namespace tw {

class HwmonSensorSource final : public SensorSource {
public:
    // `sysRoot` is "/sys" but for tests.
    explicit HwmonSensorSource(QString sysRoot = QStringLiteral("/sys"));

    SensorSample read() const override;

    // What a chip's temperatures stand for, by its hwmon name; "acpitz" is decided by the
    // caller, as it stands for the processor only where nothing better reports.
    static std::optional<SensorKind> kindOfChip(const QString& name);
    // A temperature attribute, in millidegrees.
    static std::optional<double> celsius(const QByteArray& bytes);

private:
    QString m_sysRoot;
};

} // namespace tw
