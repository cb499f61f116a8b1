#include "SysfsTree.h"
#include "TestRows.h"
#include "platform/linux/HwmonSensorSource.h"

#include <QTemporaryDir>
#include <QTest>

namespace tw {

namespace {

QStringList describe(const SensorSample& sample) {
    static const char* const kinds[] = {"soc", "battery", "storage"};
    QStringList lines;
    for (const SensorValue& value : sample.temperatures) {
        lines.append(
            QStringLiteral("%1: %2 %3")
                .arg(value.label,
                     QLatin1String(value.kind ? kinds[static_cast<int>(*value.kind)] : "none"))
                .arg(value.celsius));
    }
    for (const FanValue& fan : sample.fans) {
        lines.append(QStringLiteral("%1: %2 rpm").arg(fan.label).arg(fan.rpm));
    }
    return lines + sample.missing;
}

} // namespace

// The real source over hwmon and thermal trees written to a temporary directory.
class TestHwmonSensorSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void read_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("expected");
        using test::row;
        const auto list = [](std::initializer_list<const char*> lines) {
            QStringList result;
            for (const char* line : lines) {
                result.append(QString::fromUtf8(line));
            }
            return result;
        };
        row("nothing", QStringList(),
            list({"No hwmon sensors found in <root>/class/hwmon.", "No temperatures are reported.",
                  "No fan speeds are reported."}));
        row("a laptop, chips in their numbers' order",
            list({"class/hwmon/hwmon0/name=acpitz", "class/hwmon/hwmon0/temp1_input=40000",
                  "class/hwmon/hwmon1/name=coretemp", "class/hwmon/hwmon1/temp1_label=Package id 0",
                  "class/hwmon/hwmon1/temp1_input=45500", "class/hwmon/hwmon1/temp2_label=Core 0",
                  "class/hwmon/hwmon1/temp2_input=44000", "class/hwmon/hwmon2/name=BAT0",
                  "class/hwmon/hwmon2/temp1_input=30100", "class/hwmon/hwmon10/name=nvme",
                  "class/hwmon/hwmon10/temp1_label=Composite",
                  "class/hwmon/hwmon10/temp1_input=38850", "class/hwmon/hwmon3/name=thinkpad",
                  "class/hwmon/hwmon3/fan1_input=2400"}),
            list({"acpitz temp1: none 40", "coretemp Package id 0: soc 45.5",
                  "coretemp Core 0: soc 44", "BAT0 temp1: battery 30.1",
                  "nvme Composite: storage 38.85", "thinkpad fan1: 2400 rpm"}));
        row("the ACPI zone alone is the processor; a sleeping disk is left out",
            list({"class/hwmon/hwmon0/name=acpitz", "class/hwmon/hwmon0/temp1_input=51000",
                  "class/hwmon/hwmon1/name=drivetemp",
                  "class/hwmon/hwmon1/temp1_input=<unreadable>"}),
            list({"acpitz temp1: soc 51", "No fan speeds are reported.",
                  "One sensor could not be read."}));
        row("thermal zones stand in for the processor, without repeating a chip",
            list({"class/hwmon/hwmon0/name=amdgpu", "class/hwmon/hwmon0/temp1_label=edge",
                  "class/hwmon/hwmon0/temp1_input=50000", "class/hwmon/hwmon1/name=acpitz",
                  "class/hwmon/hwmon1/temp1_input=40000", "class/thermal/thermal_zone0/type=acpitz",
                  "class/thermal/thermal_zone0/temp=40000",
                  "class/thermal/thermal_zone1/type=x86_pkg_temp",
                  "class/thermal/thermal_zone1/temp=47000"}),
            list({"amdgpu edge: none 50", "acpitz temp1: none 40", "x86_pkg_temp: soc 47",
                  "No fan speeds are reported."}));
        row("no name, no labels, garbage and unreadable values",
            list({"class/hwmon/hwmon0/temp1_input=garbage", "class/hwmon/hwmon0/temp3_input=-5000",
                  "class/hwmon/hwmon0/fan1_input=0", "class/hwmon/hwmon0/fan2_input=<unreadable>",
                  "class/hwmon/hwmon0/temp_input=1000"}),
            list({"hwmon0 temp3: none -5", "hwmon0 fan1: 0 rpm",
                  "No processor temperature is reported.", "2 sensors could not be read."}));
    }
    void read() {
        QFETCH(QStringList, files);
        QFETCH(QStringList, expected);
        QTemporaryDir sys;
        QVERIFY(test::writeSysfsTree(sys.path(), files));
        expected.replaceInStrings(QStringLiteral("<root>"), sys.path());
        QCOMPARE(describe(HwmonSensorSource(sys.path()).read()), expected);
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestHwmonSensorSource)
#include "tst_hwmonsensorsource.moc"
