#include "platform/linux/ProcCounters.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tw {

namespace {

// Above this a memory figure is garbage; it also keeps a sum of a few figures inside qint64.
constexpr quint64 maxMemoryBytes = quint64(1) << 56;

QList<QByteArray> lines(const QByteArray& text) {
    QList<QByteArray> result;
    for (QByteArray& line : text.split('\n')) {
        if (!line.isEmpty() && line.size() <= ProcCounters::maxLineBytes) {
            result.append(std::move(line));
        }
    }
    return result;
}

QList<QByteArray> words(const QByteArray& line) {
    return line.simplified().split(' ');
}

std::optional<quint64> sum(std::initializer_list<quint64> terms) {
    quint64 total = 0;
    for (const quint64 term : terms) {
        if (__builtin_add_overflow(total, term, &total)) {
            return std::nullopt;
        }
    }
    return total;
}

std::optional<CpuTicks> cpuTicks(const QList<QByteArray>& fields) {
    // user nice system idle, then (newer kernels) iowait irq softirq steal; guest time is
    // already inside user.
    if (fields.size() < 5) {
        return std::nullopt;
    }
    std::array<quint64, 8> values{};
    for (qsizetype i = 1; i < fields.size() && i <= qsizetype(values.size()); ++i) {
        const std::optional<quint64> value = ProcCounters::number(fields[i]);
        if (!value) {
            return std::nullopt;
        }
        values.at(i - 1) = *value;
    }
    const std::optional<quint64> system = sum({values[2], values[5], values[6], values[7]});
    const std::optional<quint64> idle = sum({values[3], values[4]});
    if (!system || !idle) {
        return std::nullopt;
    }
    return CpuTicks{.user = values[0], .nice = values[1], .system = *system, .idle = *idle};
}

bool isVolumeType(const QByteArray& type) {
    static const QSet<QByteArray> types = {
        "ext2", "ext3", "ext4",    "btrfs", "xfs",      "vfat",    "exfat",    "ntfs",  "ntfs3",
        "f2fs", "zfs",  "fuseblk", "jfs",   "reiserfs", "hfsplus", "bcachefs", "nilfs2"};
    return types.contains(type);
}

bool isUnder(const QString& path, QLatin1StringView directory) {
    return path == directory || (path.startsWith(directory) && path.size() > directory.size() &&
                                 path[directory.size()] == QLatin1Char('/'));
}

// Where the system keeps its own file systems (boot loaders, packages, runtime state, the files a
// container is given); removable media under /run/media are a person's.
bool isSystemPath(const QString& path) {
    if (isUnder(path, QLatin1StringView("/run/media"))) {
        return false;
    }
    constexpr std::array directories{"/boot", "/efi", "/etc", "/proc",
                                     "/sys",  "/dev", "/run", "/snap"};
    return std::ranges::any_of(directories, [&path](const char* directory) {
        return isUnder(path, QLatin1StringView(directory));
    });
}

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

} // namespace

std::optional<quint64> ProcCounters::number(const QByteArray& text) {
    const QByteArray digits = text.trimmed();
    if (digits.isEmpty() || digits.size() > 20) {
        return std::nullopt;
    }
    for (const char c : digits) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
    }
    bool ok = false;
    const quint64 value = digits.toULongLong(&ok, 10);
    return ok ? std::optional(value) : std::nullopt;
}

ProcCounters::ProcessorTicks ProcCounters::processorTicks(const QByteArray& stat) {
    ProcessorTicks result;
    for (const QByteArray& line : lines(stat)) {
        if (!line.startsWith("cpu")) {
            continue;
        }
        const QList<QByteArray> fields = words(line);
        const std::optional<CpuTicks> ticks = cpuTicks(fields);
        if (!ticks) {
            continue;
        }
        const QByteArray& name = fields.first();
        if (name == "cpu") {
            if (!result.all) {
                result.all = ticks;
            }
            continue;
        }
        const std::optional<quint64> core = number(name.mid(3));
        if (core && *core <= quint64(std::numeric_limits<int>::max()) &&
            !result.cores.contains(int(*core))) {
            result.cores.insert(int(*core), *ticks);
        }
    }
    return result;
}

std::optional<MemoryCounters> ProcCounters::memory(const QByteArray& meminfo) {
    QHash<QByteArray, quint64> bytes;
    for (const QByteArray& line : lines(meminfo)) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0) {
            continue;
        }
        const QList<QByteArray> fields = words(line.mid(colon + 1));
        const std::optional<quint64> value = number(fields.value(0));
        if (!value || fields.size() > 2) {
            continue;
        }
        const quint64 unit = fields.value(1) == "kB" ? 1024 : fields.size() == 1 ? 1 : 0;
        if (unit == 0 || *value > maxMemoryBytes / unit) {
            continue;
        }
        bytes.insert(line.left(colon), *value * unit);
    }
    if (!bytes.contains("MemTotal")) {
        return std::nullopt;
    }
    // Every figure is below 2^56, so these few-term sums cannot overflow.
    const auto get = [&bytes](const char* key) { return qint64(bytes.value(key)); };
    MemoryCounters memory;
    memory.total = get("MemTotal");
    memory.available = bytes.contains("MemAvailable")
                           ? get("MemAvailable")
                           : get("MemFree") + get("Buffers") + get("Cached");
    memory.application = get("AnonPages") + get("Shmem");
    // Mlocked pages are left out: they are already counted as anonymous or cached pages.
    memory.wired = get("SUnreclaim") + get("KernelStack") + get("PageTables");
    memory.compressed = get("Zswap");
    // Shared memory is counted as cached by the kernel but is held by programs.
    memory.cached =
        std::max<qint64>(0, get("Buffers") + get("Cached") - get("Shmem") + get("SReclaimable"));
    memory.swapUsed = std::max<qint64>(0, get("SwapTotal") - get("SwapFree"));
    return memory;
}

std::optional<double> ProcCounters::pressureStall(const QByteArray& pressure) {
    for (const QByteArray& line : lines(pressure)) {
        const QList<QByteArray> fields = words(line);
        if (fields.first() != "some") {
            continue;
        }
        for (const QByteArray& field : fields) {
            if (field.startsWith("avg10=")) {
                bool ok = false;
                const double percent = field.mid(6).toDouble(&ok);
                if (ok && std::isfinite(percent) && percent >= 0 && percent <= 100) {
                    return percent;
                }
                return std::nullopt;
            }
        }
    }
    return std::nullopt;
}

std::optional<double> ProcCounters::uptimeSeconds(const QByteArray& uptime) {
    const QList<QByteArray> fields = words(lines(uptime).value(0));
    bool ok = false;
    const double seconds = fields.value(0).toDouble(&ok);
    if (!ok || !std::isfinite(seconds) || seconds < 0) {
        return std::nullopt;
    }
    return seconds;
}

QByteArray ProcCounters::decodeMountEscapes(const QByteArray& field) {
    QByteArray decoded;
    decoded.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
            isOctal(field[i + 2]) && isOctal(field[i + 3])) {
            const int value =
                (field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0');
            if (value <= 0xff) {
                decoded.append(char(value));
                i += 3;
                continue;
            }
        }
        decoded.append(field[i]);
    }
    return decoded;
}

QList<ProcCounters::Mount> ProcCounters::mounts(const QByteArray& table) {
    QList<Mount> result;
    for (const QByteArray& line : lines(table)) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() < 3) {
            continue;
        }
        const QByteArray path = decodeMountEscapes(fields[1]);
        if (!path.startsWith('/') || path.contains('\0') || fields[2].isEmpty()) {
            continue;
        }
        result.append({.device = decodeMountEscapes(fields[0]),
                       .path = QFile::decodeName(path),
                       .type = fields[2]});
    }
    return result;
}

QList<ProcCounters::Mount> ProcCounters::volumeMounts(const QList<Mount>& mounts) {
    QHash<QString, qsizetype> latest;
    for (qsizetype i = 0; i < mounts.size(); ++i) {
        latest.insert(mounts[i].path, i);
    }
    QList<Mount> visible;
    for (qsizetype i = 0; i < mounts.size(); ++i) {
        if (latest.value(mounts[i].path) == i) {
            visible.append(mounts[i]);
        }
    }
    QList<Mount> result;
    QSet<QByteArray> devices;
    for (const Mount& mount : visible) {
        if (mount.path == QLatin1String("/")) {
            result.prepend(mount);
            devices.insert(mount.device);
        }
    }
    for (const Mount& mount : visible) {
        if (mount.path != QLatin1String("/") && isVolumeType(mount.type) &&
            !isSystemPath(mount.path) && !devices.contains(mount.device)) {
            result.append(mount);
            devices.insert(mount.device);
        }
    }
    return result;
}

QList<NetworkCounters> ProcCounters::networkCounters(const QByteArray& netDev) {
    QList<NetworkCounters> result;
    for (const QByteArray& line : lines(netDev)) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0) {
            continue;
        }
        const QByteArray name = line.left(colon).trimmed();
        // The name becomes part of a path under /sys; the kernel allows at most 15 bytes.
        if (name.isEmpty() || name.size() > 15 || name.contains('/') || name == "." ||
            name == ".." || name == "lo") {
            continue;
        }
        const QList<QByteArray> fields = words(line.mid(colon + 1));
        const std::optional<quint64> received = number(fields.value(0));
        const std::optional<quint64> sent = number(fields.value(8));
        if (received && sent) {
            result.append(
                {.interface = QString::fromUtf8(name), .received = *received, .sent = *sent});
        }
    }
    return result;
}

std::optional<ProcCounters::ProcessStat> ProcCounters::processStat(const QByteArray& stat) {
    if (stat.size() > maxLineBytes) {
        return std::nullopt;
    }
    // The name may itself hold spaces and parentheses; only the last ")" closes it.
    const qsizetype open = stat.indexOf('(');
    const qsizetype close = stat.lastIndexOf(')');
    if (open < 0 || close < open) {
        return std::nullopt;
    }
    // From the state, the third field: utime and stime are the 14th and 15th, rss the 24th.
    const QList<QByteArray> fields = words(stat.mid(close + 1));
    if (fields.size() < 22) {
        return std::nullopt;
    }
    const std::optional<quint64> user = number(fields[11]);
    const std::optional<quint64> system = number(fields[12]);
    const std::optional<quint64> resident = number(fields[21]);
    if (!user || !system || !resident) {
        return std::nullopt;
    }
    const std::optional<quint64> ticks = sum({*user, *system});
    if (!ticks) {
        return std::nullopt;
    }
    return ProcessStat{.name = QString::fromUtf8(stat.mid(open + 1, close - open - 1)),
                       .processorTicks = *ticks,
                       .residentPages = *resident};
}

} // namespace tw
