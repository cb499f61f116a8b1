#include "Files.h"
#include "SysfsTree.h"
#include "TestRows.h"
#include "platform/linux/HwmonSensorSource.h"
#include "platform/linux/LinuxMachineIdentity.h"
#include "platform/linux/LinuxSystemSource.h"
#include "platform/linux/ProcCounters.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace tw;

namespace {

using Tree = QMap<QString, QByteArray>;

// A file's content, or "<dir>" for a directory (which reads as an error where a file is wanted),
// or "-> target" for a symbolic link.
void plant(const QString& root, const Tree& tree) {
    for (auto it = tree.begin(); it != tree.end(); ++it) {
        const QString path = root + QLatin1Char('/') + it.key();
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        if (it.value() == "<dir>") {
            QVERIFY(QDir().mkpath(path));
        } else if (it.value().startsWith("-> ")) {
            QVERIFY(QFile::link(QString::fromUtf8(it.value().mid(3)), path));
        } else {
            QVERIFY(test::writeFile(path, it.value()));
        }
    }
}

QString text(const CpuTicks& t) {
    return QStringLiteral("%1/%2/%3/%4").arg(t.user).arg(t.nice).arg(t.system).arg(t.idle);
}

QString text(const std::optional<CpuTicks>& all, const QMap<int, CpuTicks>& cores) {
    QStringList parts{all ? text(*all) : QStringLiteral("none")};
    for (auto it = cores.begin(); it != cores.end(); ++it) {
        parts << QStringLiteral("%1=%2").arg(it.key()).arg(text(it.value()));
    }
    return parts.join(QLatin1Char(' '));
}

QString text(const std::optional<MemoryCounters>& m) {
    if (!m) {
        return QStringLiteral("none");
    }
    QStringList kib;
    for (const qint64 bytes : {m->total, m->available, m->application, m->wired, m->compressed,
                               m->cached, m->swapUsed}) {
        kib << QString::number(bytes / 1024);
    }
    kib << (m->pressureStall ? QString::number(*m->pressureStall) : QStringLiteral("-"));
    return kib.join(QLatin1Char(' '));
}

// Well-formed but for its length.
const QByteArray longLine = "cpu3" + QByteArray(ProcCounters::maxLineBytes, ' ') + "1 1 1 1\n";

QByteArray processStat(const QByteArray& name, int utime, int stime, int rss) {
    return QByteArray() + "7 (" + name + ") S 1 7 7 0 -1 4194560 100 0 0 0 " +
           QByteArray::number(utime) + " " + QByteArray::number(stime) +
           " 0 0 20 0 1 0 500 1000000 " + QByteArray::number(rss) +
           " 18446744073709551615 1 1 0 0 0 0 0 0 0 0 0 0 17 1 0 0 0 0 0\n";
}

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

class tst_LinuxSystemSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        QVERIFY(m_dir.emplace().isValid());
        m_proc = m_dir->filePath(QStringLiteral("proc"));
        m_sys = m_dir->filePath(QStringLiteral("sys"));
    }

    void ticks_data() {
        QTest::addColumn<QByteArray>("stat");
        QTest::addColumn<QString>("expected");
        using test::row;
        row("interrupts, steal and wait folded in",
            QByteArray("cpu  100 5 30 400 20 3 2 1 50 0\n"
                       "cpu0 60 5 20 200 10 2 1 1 50 0\ncpu1 40 0 10 200 10 1 1 0 0 0\n"
                       "intr 12345 0 0\nctxt 999\n"),
            "100/5/36/420 0=60/5/24/210 1=40/0/12/210");
        row("core 1 offline", QByteArray("cpu 1 2 3 4\ncpu0 1 1 1 1\ncpu2 0 1 2 3\n"),
            "1/2/3/4 0=1/1/1/1 2=0/1/2/3");
        row("garbage lines dropped",
            QByteArray("cpu 1 2 3 4 5 6 7 8\ncpu0 a b c d\ncpu1 1 2\n"
                       "cpu2 99999999999999999999 1 1 1\ncpux 1 1 1 1\ncpu-1 1 1 1 1\n") +
                longLine + "cpu4 18446744073709551615 0 18446744073709551615 0 0 1\ncpu5 9 9 9 9\n",
            "1/2/24/9 5=9/9/9/9");
        row("no aggregate line", QByteArray("cpu0 1 1 1 1\n"), "none 0=1/1/1/1");
        row("missing", QByteArray("<none>"), "none");
        row("read error", QByteArray("<dir>"), "none");
    }
    void ticks() {
        QFETCH(QByteArray, stat);
        QFETCH(QString, expected);
        if (stat != "<none>") {
            plant(m_proc, {{QStringLiteral("stat"), stat}});
        }
        const LinuxSystemSource source(m_proc, m_sys);
        QCOMPARE(text(source.processorTicks(), source.coreTicks()), expected);
    }

    void coreGoesOfflineBetweenReadsAndFailuresLogOnce() {
        const LinuxSystemSource source(m_proc, m_sys);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("cannot read .*stat")));
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        QVERIFY(source.coreTicks().isEmpty());
        QVERIFY(!source.processorTicks());

        plant(m_proc, {{QStringLiteral("stat"), "cpu 2 2 2 2\ncpu0 1 1 1 1\ncpu1 1 1 1 1\n"}});
        QCOMPARE(source.coreTicks().keys(), (QList<int>{0, 1}));
        plant(m_proc, {{QStringLiteral("stat"), "cpu 2 2 2 2\ncpu0 1 1 1 1\n"}});
        QCOMPARE(source.coreTicks().keys(), (QList<int>{0}));
    }

    void memory_data() {
        QTest::addColumn<QByteArray>("meminfo");
        QTest::addColumn<QByteArray>("pressure");
        QTest::addColumn<QString>("expected");
        using test::row;
        const QByteArray modern = "MemTotal:       16000 kB\nMemFree:         1000 kB\n"
                                  "MemAvailable:    9000 kB\nBuffers:          300 kB\n"
                                  "Cached:          5000 kB\nSwapCached:         0 kB\n"
                                  "SwapTotal:       4000 kB\nSwapFree:        3500 kB\n"
                                  "Zswap:            120 kB\nAnonPages:       4000 kB\n"
                                  "Mlocked:           64 kB\nShmem:            700 kB\n"
                                  "SReclaimable:     400 kB\nSUnreclaim:       200 kB\n"
                                  "KernelStack:       30 kB\nPageTables:        70 kB\n"
                                  "HugePages_Total:    0\n";
        row("modern kernel", modern,
            QByteArray("some avg10=1.25 avg60=0.50 avg300=0.10 total=42\n"
                       "full avg10=0.50 avg60=0.10 avg300=0.00 total=7\n"),
            "16000 9000 4700 300 120 5000 500 1.25");
        row("old kernel: no MemAvailable, Zswap or pressure",
            QByteArray("MemTotal: 8000 kB\nMemFree: 1000 kB\nBuffers: 200 kB\nCached: 800 kB\n"
                       "AnonPages: 3000 kB\nShmem: 100 kB\nSwapTotal: 0 kB\nSwapFree: 0 kB\n"),
            QByteArray("<none>"), "8000 2000 3100 0 0 900 0 -");
        row("shared memory above the cache",
            QByteArray("MemTotal: 8000 kB\nCached: 100 kB\nShmem: 900 kB\n"
                       "SwapTotal: 10 kB\nSwapFree: 20 kB\n"),
            QByteArray("<dir>"), "8000 100 900 0 0 0 0 -");
        row("garbage and overflow dropped",
            QByteArray("MemTotal: 8000 kB\nMemFree: 99999999999999999999 kB\n"
                       "Buffers: x kB\nCached: 72057594037927936 kB\nAnonPages: 10 MB\n"
                       "Shmem 5 kB\n: 7 kB\nSUnreclaim: -5 kB\n"),
            QByteArray("some avg10=nan\nsome avg10=1e9\n"), "8000 0 0 0 0 0 0 -");
        row("no MemTotal", QByteArray("MemFree: 1000 kB\n"), QByteArray("<none>"), "none");
        row("read error", QByteArray("<dir>"), QByteArray("<none>"), "none");
    }
    void memory() {
        QFETCH(QByteArray, meminfo);
        QFETCH(QByteArray, pressure);
        QFETCH(QString, expected);
        plant(m_proc, {{QStringLiteral("meminfo"), meminfo}});
        if (pressure != "<none>") {
            plant(m_proc, {{QStringLiteral("pressure/memory"), pressure}});
        }
        QCOMPARE(text(LinuxSystemSource(m_proc, m_sys).memory()), expected);
    }

    // The machine's boot time from /proc/uptime, seen from a fixed moment.
    void bootedAt_data() {
        QTest::addColumn<QByteArray>("uptime");
        QTest::addColumn<qint64>("msecsBefore");
        using test::row;
        row("uptime and idle", QByteArray("12345.67 40000.12\n"), qint64(12345670));
        row("just booted", QByteArray("0.00 0.00\n"), qint64(0));
        row("negative", QByteArray("-5.0 1.0\n"), qint64(-1));
        row("garbage", QByteArray("up a while\n"), qint64(-1));
        row("not finite", QByteArray("inf 1\n"), qint64(-1));
        row("empty", QByteArray(""), qint64(-1));
        row("read error", QByteArray("<dir>"), qint64(-1));
    }
    void bootedAt() {
        QFETCH(QByteArray, uptime);
        QFETCH(qint64, msecsBefore);
        plant(m_proc, {{QStringLiteral("uptime"), uptime}});
        const QDateTime now(QDate(2026, 3, 14), QTime(9, 0));
        const auto booted = LinuxMachineIdentity(m_proc).bootedAt(now);
        QCOMPARE(booted ? booted->msecsTo(now) : -1, msecsBefore);
        QVERIFY(!LinuxMachineIdentity().userName().isEmpty());
    }

    void graphicsBusy_data() {
        QTest::addColumn<Tree>("sys");
        QTest::addColumn<double>("expected");
        using test::row;
        const QString busy = QStringLiteral("class/drm/card%1/device/gpu_busy_percent");
        row("busiest of two", Tree{{busy.arg(0), "30\n"}, {busy.arg(1), "75\n"}}, 0.75);
        row("connectors and garbage ignored",
            Tree{{busy.arg(0), "12\n"},
                 {busy.arg(1), "150\n"},
                 {busy.arg(2), "lots\n"},
                 {QStringLiteral("class/drm/card0-DP-1/device/gpu_busy_percent"), "99\n"}},
            0.12);
        row("no driver reports", Tree{{QStringLiteral("class/drm/card0/device/vendor"), "0x8086"}},
            -1.0);
    }
    void graphicsBusy() {
        QFETCH(Tree, sys);
        QFETCH(double, expected);
        plant(m_sys, sys);
        QCOMPARE(LinuxSystemSource(m_proc, m_sys).graphicsBusy().value_or(-1.0), expected);
    }

    void volumes_data() {
        QTest::addColumn<QByteArray>("mounts");
        QTest::addColumn<QString>("expected");
        using test::row;
        row("desktop",
            QByteArray("proc /proc proc rw 0 0\nsysfs /sys sysfs rw 0 0\n"
                       "tmpfs /run tmpfs rw 0 0\n/dev/nvme0n1p1 /boot/efi vfat rw 0 0\n"
                       "/dev/nvme0n1p2 /home btrfs rw 0 0\n/dev/nvme0n1p2 / btrfs rw 0 0\n"
                       "/dev/loop3 /snap/core/1 squashfs ro 0 0\n"
                       "/dev/sdb1 /run/media/me/My\\040Stick vfat rw 0 0\n"
                       "/dev/sdc /mnt/Back\\134up\\011Disk ext4 rw 0 0\n"
                       "overlay /var/lib/docker/overlay2/x/merged overlay rw 0 0\n"
                       "server:/srv /mnt/nfs nfs4 rw 0 0\n/dev/sdd1 /mnt/full ext4 rw 0 0\n"),
            "/ Computer 10/100 | /run/media/me/My Stick My Stick 10/100 removable | "
            "/mnt/Back\\up\tDisk Back\\up\tDisk 10/100");
        row("container: an overlay root, the host's files bound in",
            QByteArray("overlay / overlay rw,lowerdir=/a:/b 0 0\nproc /proc proc rw 0 0\n"
                       "/dev/vda /etc/hosts ext4 rw 0 0\n/dev/vda /data ext4 rw 0 0\n"),
            "/ Computer 10/100 | /data data 10/100");
        row("root mounted over", QByteArray("rootfs / rootfs rw 0 0\n/dev/sdc / xfs rw 0 0\n"),
            "/ Computer 10/100");
        row("garbage lines", QByteArray("\n/dev/sdc\n/dev/sdc relative ext4\n/dev/sdc /x\n"), "");
        row("read error", QByteArray("<dir>"), "");
    }
    void volumes() {
        QFETCH(QByteArray, mounts);
        QFETCH(QString, expected);
        plant(m_proc, {{QStringLiteral("self/mounts"), mounts}});
        plant(m_sys, {{QStringLiteral("block/sdb/removable"), "1\n"},
                      {QStringLiteral("block/sdb/sdb1/partition"), "1\n"},
                      {QStringLiteral("class/block/sdb1"), "-> ../../block/sdb/sdb1"},
                      {QStringLiteral("block/sdc/removable"), "0\n"}});
        const auto space = [](const QString& path) -> std::optional<LinuxSystemSource::Space> {
            if (path == QLatin1String("/mnt/full")) {
                return LinuxSystemSource::Space{.free = 0, .total = 0};
            }
            return LinuxSystemSource::Space{.free = 10, .total = 100};
        };
        QStringList shown;
        for (const Volume& v : LinuxSystemSource(m_proc, m_sys, space).volumes()) {
            shown << QStringLiteral("%1 %2 %3/%4%5")
                         .arg(v.path, v.name)
                         .arg(v.free)
                         .arg(v.total)
                         .arg(v.removable ? QStringLiteral(" removable") : QString());
        }
        QCOMPARE(shown.join(QStringLiteral(" | ")), expected);
    }

    void networkCounters_data() {
        QTest::addColumn<QByteArray>("netDev");
        QTest::addColumn<QString>("expected");
        const QByteArray header =
            "Inter-|   Receive                                                |  Transmit\n"
            " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets "
            "errs drop fifo colls carrier compressed\n";
        const auto line = [](const char* name, const char* received,
                             const char* sent) -> QByteArray {
            return QByteArray(name) + ": " + received + " 10 0 0 0 0 0 0 " + sent +
                   " 20 0 0 0 0 0 0\n";
        };
        using test::row;
        row("physical first, up first, then by name",
            header + line("lo", "9", "9") + line("docker0", "1", "2") + line("wlan0", "3", "4") +
                line("veth1", "5", "6") + line("eth0", "7", "8") + line("enp3s0", "0", "0"),
            "eth0 7/8 up, enp3s0 0/0, wlan0 3/4 wireless, veth1 5/6 up, docker0 1/2");
        row("garbage lines",
            header + "bad: x y\n../../etc: 1 1 1 1 1 1 1 1 1\n" +
                line("eth0", "18446744073709551616", "1") + "eth0 1 2 3\n",
            "");
        row("only loopback", header + line("lo", "1", "1"), "");
        row("read error", QByteArray("<dir>"), "");
    }
    void networkCounters() {
        QFETCH(QByteArray, netDev);
        QFETCH(QString, expected);
        plant(m_proc, {{QStringLiteral("net/dev"), netDev}});
        plant(m_sys, {{QStringLiteral("class/net/eth0/operstate"), "up\n"},
                      {QStringLiteral("class/net/eth0/device"), "<dir>"},
                      {QStringLiteral("class/net/wlan0/operstate"), "down\n"},
                      {QStringLiteral("class/net/wlan0/device"), "<dir>"},
                      {QStringLiteral("class/net/wlan0/phy80211"), "<dir>"},
                      {QStringLiteral("class/net/enp3s0/operstate"), "unknown\n"},
                      {QStringLiteral("class/net/enp3s0/carrier"), "0\n"},
                      {QStringLiteral("class/net/enp3s0/device"), "<dir>"},
                      {QStringLiteral("class/net/veth1/operstate"), "unknown\n"},
                      {QStringLiteral("class/net/veth1/carrier"), "1\n"},
                      {QStringLiteral("class/net/docker0/operstate"), "down\n"}});
        QStringList shown;
        for (const NetworkCounters& n : LinuxSystemSource(m_proc, m_sys).networkCounters()) {
            shown << QStringLiteral("%1 %2/%3%4%5")
                         .arg(n.interface)
                         .arg(n.received)
                         .arg(n.sent)
                         .arg(n.up ? QStringLiteral(" up") : QString(),
                              n.wireless ? QStringLiteral(" wireless") : QString());
        }
        QCOMPARE(shown.join(QStringLiteral(", ")), expected);
    }

    void processes() {
        plant(m_proc, {{QStringLiteral("1/stat"), processStat("systemd", 150, 50, 3)},
                       {QStringLiteral("77/stat"), processStat("a) (b", 1, 2, 0)},
                       {QStringLiteral("78/stat"), processStat("x", 1, 2, 3).left(40)},
                       {QStringLiteral("79/stat"), processStat("y", -1, 2, 3)},
                       {QStringLiteral("80/stat"), "<dir>"},
                       {QStringLiteral("81/comm"), "gone\n"},
                       {QStringLiteral("self/stat"), processStat("self", 1, 1, 1)},
                       {QStringLiteral("12ab/stat"), processStat("bad", 1, 1, 1)}});
        const qint64 tick = 1'000'000'000 / sysconf(_SC_CLK_TCK);
        const auto page = quint64(sysconf(_SC_PAGESIZE));
        QList<ProcessSample> processes = LinuxSystemSource(m_proc, m_sys).processes();
        std::sort(processes.begin(), processes.end(),
                  [](const auto& a, const auto& b) { return a.pid < b.pid; });
        const QList<ProcessSample> expected{
            {.pid = 1,
             .name = QStringLiteral("systemd"),
             .processorTime = std::chrono::nanoseconds(200 * tick),
             .residentBytes = 3 * page},
            {.pid = 77,
             .name = QStringLiteral("a) (b"),
             .processorTime = std::chrono::nanoseconds(3 * tick),
             .residentBytes = 0},
        };
        QCOMPARE(processes, expected);
    }

    // Temperatures and fans from hwmon and thermal trees.
    void sensors_data() {
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
    void sensors() {
        QFETCH(QStringList, files);
        QFETCH(QStringList, expected);
        QTemporaryDir sys;
        QVERIFY(test::writeSysfsTree(sys.path(), files));
        expected.replaceInStrings(QStringLiteral("<root>"), sys.path());
        QCOMPARE(describe(HwmonSensorSource(sys.path()).read()), expected);
    }

    // The machine running the test: plausible figures, not exact ones.
    void thisMachine() {
        const LinuxSystemSource source;
        const std::optional<CpuTicks> all = source.processorTicks();
        QVERIFY(all && all->user + all->system + all->idle > 0);
        const QMap<int, CpuTicks> cores = source.coreTicks();
        QVERIFY(!cores.isEmpty() && cores.size() <= sysconf(_SC_NPROCESSORS_CONF));

        const std::optional<MemoryCounters> memory = source.memory();
        QVERIFY(memory && memory->total > 0);
        QVERIFY(memory->available > 0 && memory->available <= memory->total);
        QVERIFY(memory->application > 0 && memory->application < memory->total);

        const QList<Volume> volumes = source.volumes();
        QVERIFY(!volumes.isEmpty());
        QCOMPARE(volumes.first().path, QStringLiteral("/"));
        QVERIFY(volumes.first().free <= volumes.first().total);

        for (const NetworkCounters& n : source.networkCounters()) {
            QVERIFY(n.interface != QLatin1String("lo"));
        }

        const QList<ProcessSample> processes = source.processes();
        const auto self = std::find_if(processes.begin(), processes.end(),
                                       [](const auto& p) { return p.pid == getpid(); });
        QVERIFY(self != processes.end());
        QCOMPARE(self->name, QStringLiteral("tst_linuxsystem"));
        QVERIFY(self->residentBytes > quint64(1024) * 1024);
    }

private:
    std::optional<QTemporaryDir> m_dir;
    QString m_proc;
    QString m_sys;
};

QTEST_GUILESS_MAIN(tst_LinuxSystemSource)
#include "tst_linuxsystemsource.moc"
