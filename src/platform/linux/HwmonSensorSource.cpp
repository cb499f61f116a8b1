#include "platform/linux/HwmonSensorSource.h"

#include "platform/linux/SysfsText.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace tw {

namespace {

const QString acpiZone = QStringLiteral("acpitz");

// The entries of `dir` named `prefix` + number + `suffix`, by that number: hwmon2 before hwmon10.
QList<std::pair<qint64, QString>> numbered(const QDir& dir, const QString& prefix,
                                           const QString& suffix) {
    const QRegularExpression pattern(QLatin1Char('^') + QRegularExpression::escape(prefix) +
                                     QStringLiteral("(\\d{1,9})") +
                                     QRegularExpression::escape(suffix) + QLatin1Char('$'));
    QList<std::pair<qint64, QString>> entries;
    for (const QString& name : dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QRegularExpressionMatch match = pattern.match(name);
        if (match.hasMatch()) {
            entries.append({match.captured(1).toLongLong(), name});
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

QString attribute(const QDir& dir, const QString& name) {
    const std::optional<QByteArray> bytes = sysfs::read(dir.filePath(name));
    return bytes ? sysfs::word(*bytes) : QString();
}

struct Reading {
    SensorSample sample;
    int unreadable = 0;
    bool processor = false;
    QStringList chips;
    QList<qsizetype> acpiZones;

    void addTemperature(const QString& label, const QString& chip, double celsius) {
        std::optional<SensorKind> kind = HwmonSensorSource::kindOfChip(chip);
        if (chip == acpiZone) {
            acpiZones.append(sample.temperatures.size());
        }
        processor = processor || kind == SensorKind::soc;
        sample.temperatures.append({label, kind, celsius});
    }

    void readChip(const QDir& dir) {
        QString chip = attribute(dir, QStringLiteral("name"));
        if (chip.isEmpty()) {
            chip = dir.dirName();
        }
        chips.append(chip);
        const auto labelOf = [&](const QString& prefix, qint64 index) -> QString {
            const QString plain = prefix + QString::number(index);
            const QString label = attribute(dir, plain + QStringLiteral("_label"));
            return chip + QLatin1Char(' ') + (label.isEmpty() ? plain : label);
        };
        for (const auto& [index, name] :
             numbered(dir, QStringLiteral("temp"), QStringLiteral("_input"))) {
            const std::optional<QByteArray> bytes = sysfs::read(dir.filePath(name));
            const std::optional<double> value =
                bytes ? HwmonSensorSource::celsius(*bytes) : std::nullopt;
            if (!value) {
                ++unreadable;
                continue;
            }
            addTemperature(labelOf(QStringLiteral("temp"), index), chip, *value);
        }
        for (const auto& [index, name] :
             numbered(dir, QStringLiteral("fan"), QStringLiteral("_input"))) {
            const std::optional<QByteArray> bytes = sysfs::read(dir.filePath(name));
            const std::optional<qint64> rpm = bytes ? sysfs::integer(*bytes) : std::nullopt;
            if (!rpm) {
                ++unreadable;
                continue;
            }
            sample.fans.append({labelOf(QStringLiteral("fan"), index), static_cast<double>(*rpm)});
        }
    }

    // Thermal zones that are also hwmon devices were read there already.
    void readThermalZones(const QDir& thermal) {
        for (const auto& [index, name] : numbered(thermal, QStringLiteral("thermal_zone"), {})) {
            const QDir zone(thermal.filePath(name));
            const QString type = attribute(zone, QStringLiteral("type"));
            if (type.isEmpty() || chips.contains(type)) {
                continue;
            }
            const std::optional<QByteArray> bytes =
                sysfs::read(zone.filePath(QStringLiteral("temp")));
            const std::optional<double> value =
                bytes ? HwmonSensorSource::celsius(*bytes) : std::nullopt;
            if (!value) {
                ++unreadable;
                continue;
            }
            addTemperature(type, type, *value);
        }
    }
};

} // namespace

HwmonSensorSource::HwmonSensorSource(QString sysRoot)
    : m_sysRoot(std::move(sysRoot)) {}

std::optional<SensorKind> HwmonSensorSource::kindOfChip(const QString& name) {
    static const QStringList processors = {
        QStringLiteral("coretemp"),    QStringLiteral("k10temp"),
        QStringLiteral("zenpower"),    QStringLiteral("cpu_thermal"),
        QStringLiteral("soc_thermal"), QStringLiteral("x86_pkg_temp"),
    };
    static const QStringList storage = {QStringLiteral("nvme"), QStringLiteral("drivetemp")};
    if (processors.contains(name)) {
        return SensorKind::soc;
    }
    if (storage.contains(name)) {
        return SensorKind::storage;
    }
    if (name.startsWith(QLatin1String("BAT")) ||
        name.contains(QLatin1String("battery"), Qt::CaseInsensitive)) {
        return SensorKind::battery;
    }
    return std::nullopt;
}

std::optional<double> HwmonSensorSource::celsius(const QByteArray& bytes) {
    const std::optional<qint64> millidegrees = sysfs::integer(bytes);
    if (!millidegrees) {
        return std::nullopt;
    }
    return static_cast<double>(*millidegrees) / 1000;
}

SensorSample HwmonSensorSource::read() const {
    Reading reading;
    const QDir hwmon(m_sysRoot + QStringLiteral("/class/hwmon"));
    const auto chips = numbered(hwmon, QStringLiteral("hwmon"), {});
    for (const auto& entry : chips) {
        reading.readChip(QDir(hwmon.filePath(entry.second)));
    }
    if (!reading.processor) {
        reading.readThermalZones(QDir(m_sysRoot + QStringLiteral("/class/thermal")));
    }
    // The ACPI zone is a board's guess; it stands for the processor only when nothing else does.
    for (const qsizetype index : std::as_const(reading.acpiZones)) {
        reading.sample.temperatures[index].kind =
            reading.processor ? std::nullopt : std::optional(SensorKind::soc);
    }

    SensorSample& sample = reading.sample;
    const bool processor =
        std::any_of(sample.temperatures.begin(), sample.temperatures.end(),
                    [](const SensorValue& value) { return value.kind == SensorKind::soc; });
    if (chips.isEmpty()) {
        sample.missing.append(QStringLiteral("No hwmon sensors found in %1.").arg(hwmon.path()));
    }
    if (sample.temperatures.isEmpty()) {
        sample.missing.append(QStringLiteral("No temperatures are reported."));
    } else if (!processor) {
        sample.missing.append(QStringLiteral("No processor temperature is reported."));
    }
    if (sample.fans.isEmpty()) {
        sample.missing.append(QStringLiteral("No fan speeds are reported."));
    }
    if (reading.unreadable == 1) {
        sample.missing.append(QStringLiteral("One sensor could not be read."));
    } else if (reading.unreadable > 1) {
        sample.missing.append(
            QStringLiteral("%1 sensors could not be read.").arg(reading.unreadable));
    }
    return sample;
}

} // namespace tw
