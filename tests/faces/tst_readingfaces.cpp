// The faces of the machine's readings: their texts, what they choose to show, the feeds they ask
// for, and every size drawn inside its tile from a full board, a board of honest absences and one
// of edge cases.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/ActivityFace.h"
#include "faces/BatteryFace.h"
#include "faces/BluetoothFace.h"
#include "faces/DiskFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/NetworkFace.h"
#include "faces/ReadingText.h"
#include "faces/SensorsFace.h"
#include "faces/SystemFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QLocale>
#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::row;
using tw::test::spillOf;

namespace {

SystemSnapshot systemAt(double cpu, std::optional<double> gpu) {
    SystemSnapshot s;
    s.cpu = cpu;
    s.gpu = gpu;
    s.ramUsed = 6e9;
    s.ramTotal = 16e9;
    s.diskFree = 120e9;
    s.diskTotal = 500e9;
    return s;
}

BatterySnapshot battery(int percent, bool charging, bool plugged, int toEmpty, int toFull) {
    return {.percent = percent,
            .isCharging = charging,
            .isPluggedIn = plugged,
            .hasBattery = true,
            .timeToEmpty = toEmpty,
            .timeToFull = toFull};
}

// Every reading at its extremes: loads at the top, many cores, programs, fans, volumes and
// devices, long names, a memory split larger than the memory.
ReadingsBoard fullBoard() {
    ReadingsBoard b;
    for (int i = 0; i < ReadingsBoard::historyLength; ++i) {
        b.systemHistory << systemAt(0.5 + 0.5 * std::sin(i), 0.3);
        b.activityHistory << 0.4;
        SensorSnapshot s;
        s.temperatures = {{SensorKind::soc, 60.0 + i % 7, 2}, {SensorKind::storage, 40, 1}};
        b.sensorHistory << s;
        NetworkSnapshot n;
        n.interfaces = {InterfaceRate{QStringLiteral("wlan0"), true, true,
                                      2e5 + 9e5 * std::pow(std::sin(i / 6.0), 2), 3e4 + i * 1e3,
                                      1'234'000'000, 345'000'000},
                        InterfaceRate{QStringLiteral("enp3s0"), false, true, 1200, 300, 5, 1}};
        b.networkHistory << n;
    }
    b.system = b.systemHistory.last();
    ActivitySnapshot a;
    a.cores = QList<double>(64, 0.97);
    a.memTotal = 64e9;
    a.memApp = 30e9;
    a.memWired = 20e9;
    a.memCompressed = 10e9;
    a.memCached = 10e9;
    a.pressure = ActivitySnapshot::Pressure::critical;
    a.byCPU = QList<ActivityProcess>(6, {1, QString(80, QLatin1Char('w')), 12.5, 999'000'000'000});
    a.byMemory = a.byCPU;
    b.activity = a;
    b.sensors = b.sensorHistory.last();
    b.sensors->temperatures << SensorReading{SensorKind::battery, 149, 1};
    b.sensors->others = QList<SensorValue>(12, {QString(60, QLatin1Char('x')), std::nullopt, 99});
    b.sensors->fans = QList<double>(8, 65535);
    b.sensors->hasFans = true;
    b.battery = battery(76, false, false, 130, -1);
    b.network = b.networkHistory.last();
    b.volumes = QList<Volume>{
        {QStringLiteral("/home"), QStringLiteral("Home"), 120'000'000'000, 900'000'000'000, false},
        {QStringLiteral("/"), QStringLiteral("System"), 41'000'000'000, 256'000'000'000, false},
        {QStringLiteral("/media/usb"), QStringLiteral("A removable drive with a long name"),
         15'000'000'000, 128'000'000'000, true},
        {QStringLiteral("/mnt/data"), QStringLiteral("Data"), 1'900'000'000'000, 4'000'000'000'000,
         false},
        {QStringLiteral("/mnt/old"), QStringLiteral("Old"), 1, 500'000'000'000, false}};
    b.bluetoothAvailable = true;
    b.bluetooth = {
        {QStringLiteral("AA"), QStringLiteral("MX Master 3"), QStringLiteral("input-mouse"), true,
         84},
        {QStringLiteral("BB"), QStringLiteral("Headphones with a very long name indeed"),
         QStringLiteral("audio-headset"), true, 15},
        {QStringLiteral("CC"), QStringLiteral("Keyboard"), QStringLiteral("input-keyboard"), false,
         52},
        {QStringLiteral("DD"), QStringLiteral("Phone"), QStringLiteral("phone"), false, {}},
        {QStringLiteral("EE"), QString(), QString(), false, 100},
        {QStringLiteral("FF"), QStringLiteral("Speaker"), QStringLiteral("audio-card"), false, 0}};
    return b;
}

// What a desktop computer without Bluetooth reads: no battery, no interface, no volume; a virtual
// machine's graphics load, memory and disk unknown, its sensors absent.
ReadingsBoard honestBoard() {
    ReadingsBoard b;
    b.system = systemAt(0, std::nullopt);
    b.system->ramTotal = 0;
    b.system->diskTotal = 0;
    b.systemHistory = {*b.system};
    b.activity = ActivitySnapshot();
    b.sensors = SensorSnapshot();
    b.sensors->missing = {QStringLiteral("No hwmon sensors found in /sys/class/hwmon.")};
    b.battery = BatterySnapshot{};
    b.network = NetworkSnapshot{};
    b.volumes = QList<Volume>{};
    b.bluetoothAvailable = false;
    return b;
}

// Single entries, zeros and a history shorter than the chart.
ReadingsBoard edgeBoard() {
    ReadingsBoard b;
    b.system = systemAt(1, 1);
    b.systemHistory = {*b.system};
    b.activity = ActivitySnapshot();
    b.activity->cores = {1.0};
    b.activityHistory = {1.0};
    // No processor figure: the battery leads; fans said present but none read.
    b.sensors = SensorSnapshot();
    b.sensors->temperatures = {{SensorKind::battery, -40, 1}};
    b.sensors->hasFans = true;
    b.sensorHistory = {*b.sensors};
    b.battery = battery(5, true, true, -1, 6000);
    NetworkSnapshot s;
    s.interfaces = {InterfaceRate{QStringLiteral("enp0s31f6-with-a-long-name"), false, true,
                                  999'999'999'999, 0, 0, 0}};
    b.networkHistory = {s, s};
    b.network = s;
    b.volumes = QList<Volume>{{QStringLiteral("/"), QString(), 0, 0, false}};
    b.bluetoothAvailable = true;
    b.bluetooth = {
        {QStringLiteral("AA"), QStringLiteral("Phone"), QStringLiteral("phone"), true, {}}};
    return b;
}

const NullSymbolProvider kSymbols;

QStringList words(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

QStringList paths(const QList<Volume>& volumes) {
    QStringList out;
    for (const Volume& v : volumes) {
        out << v.path;
    }
    return out;
}

} // namespace

class TestReadingFaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void texts_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        row("nothing", "rate", 0.0, "0\u00a0B/s");
        row("bytes stay whole", "rate", 999.0, "999\u00a0B/s");
        row("one kilobyte", "rate", 1000.0, "1.0\u00a0KB/s");
        row("one decimal below ten", "rate", 1540.0, "1.5\u00a0KB/s");
        row("rounds up to ten without a decimal", "rate", 9960.0, "10\u00a0KB/s");
        row("rounds up into the next unit", "rate", 999'600.0, "1.0\u00a0MB/s");
        row("negative", "rate", -1.0, "\u2014");
        row("not a number", "bytes", std::nan(""), "\u2014");
        row("terabytes", "bytes", 4e12, "4.0\u00a0TB");
        row("beyond the largest unit", "bytes", 2e18, "2,000\u00a0PB");
        row("minutes", "duration", 40.0, "40 min");
        row("whole hours", "duration", 180.0, "3 h");
        row("hours and minutes", "duration", 130.0, "2 h 10 min");
        row("unknown span", "duration", -1.0, "\u2014");
    }
    void texts() {
        QFETCH(QString, kind);
        QFETCH(double, value);
        QFETCH(QString, expected);
        const QString text = kind == QLatin1String("rate") ? ReadingText::rate(value)
                             : kind == QLatin1String("bytes")
                                 ? ReadingText::bytes(value)
                                 : ReadingText::duration(static_cast<int>(value));
        QCOMPARE(text, expected);
    }

    void batteryTexts_data() {
        QTest::addColumn<BatterySnapshot>("battery");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("time");
        row("on battery", battery(76, false, false, 130, -1), "On battery", "2 h 10 min left");
        row("on battery, time unknown", battery(76, false, false, -1, -1), "On battery", "");
        row("charging", battery(40, true, true, -1, 40), "Charging", "Full in 40 min");
        row("charging, time unknown", battery(40, true, true, 90, -1), "Charging", "");
        row("plugged in, full", battery(100, false, true, -1, -1), "Fully charged", "");
        row("plugged in, held below full", battery(80, false, true, 300, -1), "Not charging", "");
        row("no battery", BatterySnapshot{}, "No battery", "On mains power");
    }
    void batteryTexts() {
        QFETCH(BatterySnapshot, battery);
        QFETCH(QString, state);
        QFETCH(QString, time);
        QCOMPARE(BatteryFace::stateText(battery), state);
        QCOMPARE(BatteryFace::timeText(battery), time);
    }

    // Which interface, volume order and devices each face picks from a reading.
    void choices() {
        const ReadingsBoard full = fullBoard();
        const NetworkSnapshot& network = *full.network;
        QCOMPARE(NetworkFace::chosen(network, QString())->interface, QStringLiteral("wlan0"));
        QCOMPARE(NetworkFace::chosen(network, QStringLiteral("enp3s0"))->interface,
                 QStringLiteral("enp3s0"));
        QVERIFY(NetworkFace::chosen(network, QStringLiteral("eth9")) == nullptr);
        NetworkSnapshot down = network;
        for (InterfaceRate& rate : down.interfaces) {
            rate.up = false;
        }
        QVERIFY(NetworkFace::chosen(down, QString()) == nullptr);
        // A reading without the interface counts as no traffic, so the chart keeps its place.
        QList<NetworkSnapshot> readings{network, NetworkSnapshot{}, network};
        QCOMPARE(
            NetworkFace::history(readings, QStringLiteral("enp3s0"), NetworkFace::Direction::up),
            (QList<double>{300, 0, 300}));

        const QList<Volume>& volumes = *full.volumes;
        QCOMPARE(paths(DiskFace::ordered(volumes, QString())),
                 words("/ /home /media/usb /mnt/data /mnt/old"));
        QCOMPARE(paths(DiskFace::ordered(volumes, QStringLiteral("/mnt/data"))),
                 words("/mnt/data /home / /media/usb /mnt/old"));
        QCOMPARE(paths(DiskFace::ordered(volumes, QStringLiteral("/absent"))), paths(volumes));
        QCOMPARE(DiskFace::usedFraction(volumes.at(4)), 1.0 - 1 / 5e11);
        QCOMPARE(DiskFace::usedFraction(Volume{}), 0.0);
        QCOMPARE(DiskFace::usedFraction(
                     Volume{.path = {}, .name = {}, .free = 10, .total = 5, .removable = false}),
                 0.0);

        QStringList names;
        for (const BluetoothDevice& device : BluetoothFace::withBattery(full.bluetooth)) {
            names << device.address;
        }
        QCOMPARE(names, words("AA BB CC EE FF"));
        BluetoothDevice late = full.bluetooth.at(2);
        late.connected = true;
        QCOMPARE(BluetoothFace::withBattery({full.bluetooth.at(4), late}).first().address,
                 QStringLiteral("CC"));
    }

    // Percentages, shares of a core, degrees and fan speeds as the faces print them.
    void figures_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const QString dash = QStringLiteral("\u2014");
        row("percent: none", ReadingText::percent(std::nullopt), dash);
        row("percent: not a number", ReadingText::percent(std::nan("")), dash);
        row("percent: rounds", ReadingText::percent(0.235), "24%");
        row("percent: clamps", ReadingText::percent(1.7), "100%");
        row("core share: several cores", ActivityFace::coreShare(1.434), "143%");
        row("core share: negative", ActivityFace::coreShare(-0.1), dash);
        row("list: cpu to memory", ActivityFace::toggledList(QString()), "memory");
        row("list: memory to cpu", ActivityFace::toggledList(QStringLiteral("memory")), "cpu");
        row("degrees: celsius", SensorsFace::degrees(54.4, false), "54°C");
        row("degrees: fahrenheit", SensorsFace::degrees(100, true), "212°F");
        row("degrees: none", SensorsFace::degrees(std::nullopt, true), dash);
        row("degrees: infinite", SensorsFace::degrees(INFINITY, false), dash);
        row("rpm", SensorsFace::rpm(1850.4), "1,850 rpm");
    }
    void figures() {
        QFETCH(QString, text);
        QTEST(text, "expected");
    }

    // The metrics setting, read leniently: the digits are the metrics in the order shown.
    void metrics_data() {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("expected");
        row("empty is all", QString(), "0123");
        row("order kept", "disk, CPU", "30");
        row("repeats and unknowns dropped", "ram,ram,fan,", "2");
        row("nothing known is all", "fan", "0123");
    }
    void metrics() {
        QFETCH(QString, setting);
        QString read;
        for (const SysMetric metric : SystemFace::metrics(setting)) {
            read += QString::number(static_cast<int>(metric));
        }
        QTEST(read, "expected");
    }

    // Which histories a size draws, and what goes into them.
    void histories() {
        const ReadingsBoard board = fullBoard();
        const QList<SysMetric> shown{SysMetric::ram, SysMetric::gpu};
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::small, shown), QList<SysMetric>());
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::large, shown), {SysMetric::ram});
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::grand, shown), shown);
        const QList<double> cpu = SystemFace::history(&board, SysMetric::cpu);
        QCOMPARE(cpu.size(), SystemFace::historyLength);
        QCOMPARE(cpu.last(), board.systemHistory.last().cpu);
        // Readings without a graphics load leave no zero behind.
        ReadingsBoard mixed;
        mixed.systemHistory = {systemAt(0.1, 0.5), systemAt(0.1, std::nullopt)};
        QCOMPARE(SystemFace::history(&mixed, SysMetric::gpu), QList<double>{0.5});
        QCOMPARE(SystemFace::history(nullptr, SysMetric::cpu), QList<double>());
        // The processor's temperature leads; without it, the first there is.
        SensorSnapshot sensors;
        sensors.temperatures = {{SensorKind::battery, 30, 1}, {SensorKind::storage, 40, 1}};
        QCOMPARE(SensorsFace::hero(sensors)->kind, SensorKind::battery);
        sensors.temperatures << SensorReading{SensorKind::soc, 70, 3};
        QCOMPARE(SensorsFace::hero(sensors)->kind, SensorKind::soc);
        QCOMPARE(SensorsFace::history(&board, SensorKind::storage).size(),
                 ReadingsBoard::historyLength);
    }

    void deviceSymbols_data() {
        QTest::addColumn<QString>("icon");
        QTest::addColumn<QString>("symbol");
        row("mouse", "input-mouse", "computermouse");
        row("headset", "audio-headset", "headphones");
        row("phone by prefix", "phone-apple-iphone", "iphone");
        row("unknown kind", "printer", "wave.3.right.circle.fill");
        row("no icon", "", "wave.3.right.circle.fill");
    }
    void deviceSymbols() {
        QFETCH(QString, icon);
        QFETCH(QString, symbol);
        QCOMPARE(BluetoothFace::symbolFor(icon), symbol);
    }

    void feeds() {
        const FaceRegistry faces;
        const QList<std::pair<QString, ReadingFeed>> kinds{
            {QStringLiteral("battery"), ReadingFeed::battery},
            {QStringLiteral("network"), ReadingFeed::network},
            {QStringLiteral("disk"), ReadingFeed::disks},
            {QStringLiteral("btdevices"), ReadingFeed::bluetooth},
            {QStringLiteral("system"), ReadingFeed::system},
            {QStringLiteral("activity"), ReadingFeed::activity},
            {QStringLiteral("sensors"), ReadingFeed::sensors}};
        for (const auto& [kind, feed] : kinds) {
            QVERIFY2(faces.hasOwnFace(kind), qPrintable(kind));
            for (WidgetSize size : WidgetRegistry::builtInDefinition(kind)->metadata.allowedSizes) {
                QCOMPARE(faces.face(kind).feeds(size, {}), ReadingFeeds(feed));
                QVERIFY(!faces.face(kind).grain(size, {}).has_value());
            }
        }
    }

    // Every size of every reading face, on either glass, inside its padded tile; a null board
    // is drawn by the renderer's own test of every kind.
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("board");
        QTest::addColumn<QString>("style");
        for (const char* kind :
             {"battery", "network", "disk", "btdevices", "system", "activity", "sensors"}) {
            const WidgetMetadata metadata =
                WidgetRegistry::builtInDefinition(QLatin1String(kind))->metadata;
            for (WidgetSize size : metadata.allowedSizes) {
                for (const char* board : {"full", "honest", "edge"}) {
                    const QByteArray tag =
                        QByteArray(kind) + '/' + rawValue(size).toUtf8() + '/' + board;
                    row(tag.constData(), kind, size, board, "");
                    if (QLatin1String(kind) == QLatin1String("battery")) {
                        row(QByteArray(tag + "/ring").constData(), kind, size, board, "ring");
                    }
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, board);
        QFETCH(QString, style);
        const ReadingsBoard readings = board == QLatin1String("full")     ? fullBoard()
                                       : board == QLatin1String("honest") ? honestBoard()
                                                                          : edgeBoard();
        const FaceRegistry faces;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            FaceContext context =
                FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
            context.theme = Theme::defaultTheme();
            context.glass.shade = shade;
            context.surface = SurfaceFlags::snapshot();
            context.symbols = &kSymbols;
            context.readings = &readings;
            if (!style.isEmpty()) {
                context.settings.insert(QStringLiteral("style"), style);
            }
            const QString spill = spillOf(faces.face(kind), context);
            QVERIFY2(spill.isEmpty(), qPrintable(spill));
        }
    }
};

QTEST_MAIN(TestReadingFaces)
#include "tst_readingfaces.moc"
