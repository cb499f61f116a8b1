#include "ScriptedReadings.h"
#include "TestRows.h"
#include "readings/SensorProbe.h"
#include "readings/SensorReader.h"

#include <QTest>

#include <limits>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));

SensorValue value(std::optional<SensorKind> kind, double celsius, const char* label = "t") {
    return {QString::fromUtf8(label), kind, celsius};
}

} // namespace

class TestSensorReader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Implausible values are left out and not counted; the chip shows its hottest die, the
    // battery and storage their mean.
    void kindsFromAcceptedValues() {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        SensorSample sample;
        sample.temperatures = {value(SensorKind::soc, 50),       value(SensorKind::soc, 71.5),
                               value(SensorKind::soc, 0),        value(SensorKind::soc, 200),
                               value(SensorKind::storage, 30),   value(SensorKind::storage, 40),
                               value(SensorKind::storage, nan),  value(std::nullopt, 45, "acpitz"),
                               value(std::nullopt, 150, "bogus")};
        sample.fans = {{u"fan1"_s, 1200}};
        const SensorSnapshot snapshot = SensorReader::snapshotOf(sample, start);
        QCOMPARE(snapshot.temperatures,
                 QList<SensorReading>({{SensorKind::soc, 71.5, 2}, {SensorKind::storage, 35, 2}}));
        QCOMPARE(snapshot.others, QList<SensorValue>({value(std::nullopt, 45, "acpitz")}));
        QCOMPARE(snapshot.fans, QList<double>({1200}));
        QVERIFY(snapshot.hasFans);
    }

    void twoRefreshesWithinThreeSecondsReadOnce() {
        ScriptedSensorSource source;
        InlineRunner runner;
        SensorReader reader(source, runner);
        const auto ignore = [](const SensorSnapshot&) {};
        reader.snapshot(start, this, ignore);
        reader.snapshot(start.addMSecs(2999), this, ignore);
        QCOMPARE(source.reads, 1);
        reader.snapshot(start.addSecs(3), this, ignore);
        QCOMPARE(source.reads, 2);
    }

    void probeText_data() {
        QTest::addColumn<SensorSample>("sample");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("found");
        SensorSample full;
        full.temperatures = {value(SensorKind::storage, 38.126), value(SensorKind::soc, 61.0),
                             value(SensorKind::soc, 58.0), value(std::nullopt, 40, "iwlwifi")};
        full.fans = {{u"fan1"_s, 1834.6}, {u"fan2"_s, 900}};
        row("kinds, others and fans", full,
            "Chip 61.00 °C (2 sensors)\nStorage 38.13 °C (1 sensors)\niwlwifi 40.00 °C\n"
            "fans:     1835 rpm, 900 rpm\n",
            true);
        SensorSample none;
        none.missing = {u"No temperature sensors were found."_s};
        row("nothing", none,
            "fans:     none reported (fanless Mac, or no fan keys)\n"
            "No temperature sensors were found.\n",
            false);
        SensorSample fansOnly;
        fansOnly.fans = {{u"fan1"_s, 0}};
        row("a stopped fan is a fan", fansOnly, "fans:     0 rpm\n", true);
    }
    void probeText() {
        QFETCH(SensorSample, sample);
        QFETCH(QString, text);
        QFETCH(bool, found);
        ScriptedSensorSource source;
        source.sample = sample;
        const SensorProbe::Report report = SensorProbe::report(source, start);
        QCOMPARE(report.text, text);
        QCOMPARE(report.foundAnything, found);
    }
};

QTEST_GUILESS_MAIN(TestSensorReader)
#include "tst_sensorreader.moc"
