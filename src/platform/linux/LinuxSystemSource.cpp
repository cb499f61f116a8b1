#include "platform/linux/LinuxSystemSource.h"

#include "platform/linux/ProcCounters.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMutexLocker>

#include <algorithm>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcReadings, "tarnwick.readings")

// /proc files report a size of 0, so they are read to their end, but never past this.
constexpr qsizetype maxFileBytes = qsizetype(1024) * 1024;
// A process's stat line is about 300 bytes.
constexpr qsizetype maxProcessStatBytes = 4096;

std::optional<QByteArray> readCapped(const QString& path, qsizetype cap) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::nullopt;
    }
    QByteArray data;
    for (;;) {
        const QByteArray piece = file.read(std::min<qsizetype>(16384, cap + 1 - data.size()));
        if (piece.isEmpty()) {
            // A directory opens, then fails to read.
            return file.error() == QFileDevice::NoError ? std::optional(data) : std::nullopt;
        }
        data.append(piece);
        if (data.size() > cap) {
            return std::nullopt;
        }
    }
}

std::optional<quint64> readNumber(const QString& path) {
    const std::optional<QByteArray> text = readCapped(path, 64);
    return text ? ProcCounters::number(*text) : std::nullopt;
}

std::optional<std::chrono::nanoseconds> fromTicks(quint64 ticks, qint64 ticksPerSecond) {
    constexpr quint64 perSecond = 1'000'000'000;
    const auto rate = quint64(ticksPerSecond);
    const quint64 seconds = ticks / rate;
    if (seconds > quint64(std::numeric_limits<qint64>::max()) / perSecond - 1) {
        return std::nullopt;
    }
    return std::chrono::nanoseconds(
        qint64(seconds * perSecond + (ticks % rate) * perSecond / rate));
}

QString volumeName(const QString& path) {
    if (path == QLatin1String("/")) {
        return QStringLiteral("Computer");
    }
    return path.section(QLatin1Char('/'), -1);
}

} // namespace

LinuxSystemSource::LinuxSystemSource(QString procRoot, QString sysRoot, SpaceReader space)
    : m_procRoot(std::move(procRoot))
    , m_sysRoot(std::move(sysRoot))
    , m_space(std::move(space))
    , m_ticksPerSecond(std::max<long>(1, sysconf(_SC_CLK_TCK)))
    , m_pageSize(std::max<long>(1, sysconf(_SC_PAGESIZE))) {}

std::optional<LinuxSystemSource::Space> LinuxSystemSource::statvfsSpace(const QString& path) {
    struct statvfs info {};
    if (statvfs(QFile::encodeName(path).constData(), &info) != 0) {
        return std::nullopt;
    }
    qint64 free = 0;
    qint64 total = 0;
    if (__builtin_mul_overflow(info.f_bavail, info.f_frsize, &free) ||
        __builtin_mul_overflow(info.f_blocks, info.f_frsize, &total)) {
        return std::nullopt;
    }
    return Space{.free = free, .total = total};
}

void LinuxSystemSource::reportOnce(const char* source, const QString& message,
                                   QtMsgType type) const {
    const QMutexLocker locker(&m_reportedLock);
    if (m_reported.contains(source)) {
        return;
    }
    m_reported.insert(source);
    if (type == QtInfoMsg) {
        qCInfo(lcReadings).noquote() << message;
    } else {
        qCWarning(lcReadings).noquote() << message;
    }
}

std::optional<QByteArray> LinuxSystemSource::read(const QString& path, const char* source,
                                                  QtMsgType type) const {
    std::optional<QByteArray> text = readCapped(path, maxFileBytes);
    if (!text) {
        reportOnce(source,
                   QStringLiteral("cannot read %1 (missing, unreadable or larger than %2 bytes); "
                                  "its readings are left out")
                       .arg(path)
                       .arg(maxFileBytes),
                   type);
    }
    return text;
}

std::optional<CpuTicks> LinuxSystemSource::processorTicks() const {
    const QString path = m_procRoot + QLatin1String("/stat");
    const std::optional<QByteArray> stat = read(path, "stat");
    if (!stat) {
        return std::nullopt;
    }
    std::optional<CpuTicks> ticks = ProcCounters::processorTicks(*stat).all;
    if (!ticks) {
        reportOnce("stat", QStringLiteral("%1 has no readable \"cpu\" line").arg(path));
    }
    return ticks;
}

QMap<int, CpuTicks> LinuxSystemSource::coreTicks() const {
    const QString path = m_procRoot + QLatin1String("/stat");
    const std::optional<QByteArray> stat = read(path, "stat");
    if (!stat) {
        return {};
    }
    QMap<int, CpuTicks> cores = ProcCounters::processorTicks(*stat).cores;
    if (cores.isEmpty()) {
        reportOnce("stat", QStringLiteral("%1 has no readable \"cpuN\" line").arg(path));
    }
    return cores;
}

std::optional<MemoryCounters> LinuxSystemSource::memory() const {
    const QString path = m_procRoot + QLatin1String("/meminfo");
    const std::optional<QByteArray> meminfo = read(path, "meminfo");
    if (!meminfo) {
        return std::nullopt;
    }
    std::optional<MemoryCounters> memory = ProcCounters::memory(*meminfo);
    if (!memory) {
        reportOnce("meminfo", QStringLiteral("%1 has no readable MemTotal").arg(path));
        return std::nullopt;
    }
    // Kernels before 4.20, or built without pressure stall information, have no such file.
    const std::optional<QByteArray> pressure =
        read(m_procRoot + QLatin1String("/pressure/memory"), "pressure", QtInfoMsg);
    if (pressure) {
        memory->pressureStall = ProcCounters::pressureStall(*pressure);
    }
    return memory;
}

std::optional<double> LinuxSystemSource::graphicsBusy() const {
    // Only amdgpu publishes its load as a file; i915 and xe count engine busyness in perf
    // counters, which need a privileged, long-lived reader, so those machines report none.
    const QDir drm(m_sysRoot + QLatin1String("/class/drm"));
    std::optional<quint64> busiest;
    for (const QString& card : drm.entryList({QStringLiteral("card*")}, QDir::Dirs)) {
        if (!ProcCounters::number(card.mid(4).toLatin1())) {
            continue;
        }
        const std::optional<quint64> percent =
            readNumber(drm.filePath(card + QLatin1String("/device/gpu_busy_percent")));
        if (percent && *percent <= 100) {
            busiest = std::max(busiest.value_or(0), *percent);
        }
    }
    if (!busiest) {
        reportOnce("gpu",
                   QStringLiteral("no graphics device under %1 reports its load").arg(drm.path()),
                   QtInfoMsg);
        return std::nullopt;
    }
    return double(*busiest) / 100.0;
}

bool LinuxSystemSource::isRemovable(const QByteArray& device) const {
    if (!device.startsWith("/dev/")) {
        return false;
    }
    const QString name = QFile::decodeName(device.mid(5));
    if (name.contains(QLatin1Char('/')) || name.startsWith(QLatin1Char('.'))) {
        return false;
    }
    // A whole disk has the attribute itself; a partition's link leads into its disk's directory.
    std::optional<quint64> removable =
        readNumber(m_sysRoot + QLatin1String("/block/") + name + QLatin1String("/removable"));
    if (!removable) {
        removable = readNumber(m_sysRoot + QLatin1String("/class/block/") + name +
                               QLatin1String("/../removable"));
    }
    return removable == quint64(1);
}

QList<Volume> LinuxSystemSource::volumes() const {
    const std::optional<QByteArray> table =
        read(m_procRoot + QLatin1String("/self/mounts"), "mounts");
    if (!table) {
        return {};
    }
    QList<Volume> volumes;
    for (const ProcCounters::Mount& mount :
         ProcCounters::volumeMounts(ProcCounters::mounts(*table))) {
        const std::optional<Space> space = m_space(mount.path);
        if (!space || space->total <= 0) {
            continue;
        }
        volumes.append({.path = mount.path,
                        .name = volumeName(mount.path),
                        .free = std::clamp(space->free, qint64(0), space->total),
                        .total = space->total,
                        .removable = isRemovable(mount.device)});
    }
    return volumes;
}

QList<NetworkCounters> LinuxSystemSource::networkCounters() const {
    const std::optional<QByteArray> netDev = read(m_procRoot + QLatin1String("/net/dev"), "netdev");
    if (!netDev) {
        return {};
    }
    struct Entry {
        NetworkCounters counters;
        bool isVirtual = false;
    };
    QList<Entry> entries;
    for (NetworkCounters& counters : ProcCounters::networkCounters(*netDev)) {
        const QDir dir(m_sysRoot + QLatin1String("/class/net/") + counters.interface);
        const QByteArray state =
            readCapped(dir.filePath(QStringLiteral("operstate")), 64).value_or(QByteArray());
        // Some drivers never set an operational state; their carrier tells instead.
        counters.up = state.trimmed() == "up" ||
                      (state.trimmed() == "unknown" &&
                       readNumber(dir.filePath(QStringLiteral("carrier"))) == quint64(1));
        counters.wireless =
            dir.exists(QStringLiteral("wireless")) || dir.exists(QStringLiteral("phy80211"));
        entries.append(
            {.counters = std::move(counters), .isVirtual = !dir.exists(QStringLiteral("device"))});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return std::tuple(a.isVirtual, !a.counters.up, a.counters.interface) <
               std::tuple(b.isVirtual, !b.counters.up, b.counters.interface);
    });
    QList<NetworkCounters> result;
    result.reserve(entries.size());
    for (Entry& entry : entries) {
        result.append(std::move(entry.counters));
    }
    return result;
}

QList<ProcessSample> LinuxSystemSource::processes() const {
    if (!QFileInfo(m_procRoot).isDir()) {
        reportOnce("processes", QStringLiteral("cannot list the processes in %1").arg(m_procRoot));
        return {};
    }
    QList<ProcessSample> processes;
    QDirIterator entries(m_procRoot, QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        const QString name = entries.fileName();
        bool isPid = false;
        const qint32 pid = name.toInt(&isPid);
        if (!isPid || pid <= 0 || !name.front().isDigit()) {
            continue;
        }
        // The stat line carries the same name as comm, so one read per process is enough.
        const std::optional<QByteArray> text =
            readCapped(entries.filePath() + QLatin1String("/stat"), maxProcessStatBytes);
        const std::optional<ProcCounters::ProcessStat> stat =
            text ? ProcCounters::processStat(*text) : std::nullopt;
        if (!stat) {
            continue;
        }
        const std::optional<std::chrono::nanoseconds> time =
            fromTicks(stat->processorTicks, m_ticksPerSecond);
        quint64 resident = 0;
        if (!time || __builtin_mul_overflow(stat->residentPages, quint64(m_pageSize), &resident)) {
            continue;
        }
        processes.append(
            {.pid = pid, .name = stat->name, .processorTime = *time, .residentBytes = resident});
    }
    return processes;
}

} // namespace tw
