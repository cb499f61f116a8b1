// The kernel's counter texts: any bytes, read as each of them, parse without harm, and what comes
// out keeps the promises callers rely on.
#include "Require.h"
#include "platform/linux/ProcCounters.h"

#include <QByteArray>
#include <QSet>

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tw::ProcCounters;
    const QByteArray text =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    for (const int core : ProcCounters::processorTicks(text).cores.keys()) {
        require(core >= 0, "core numbers are not negative");
    }

    if (const auto memory = ProcCounters::memory(text)) {
        require(memory->total >= 0 && memory->available >= 0 && memory->application >= 0 &&
                    memory->wired >= 0 && memory->compressed >= 0 && memory->cached >= 0 &&
                    memory->swapUsed >= 0,
                "memory figures are not negative");
    }
    if (const auto uptime = ProcCounters::uptimeSeconds(text)) {
        require(std::isfinite(*uptime) && *uptime >= 0, "an uptime is a finite duration");
    }
    if (const auto stall = ProcCounters::pressureStall(text)) {
        require(*stall >= 0 && *stall <= 100, "a stall is a percentage");
    }

    const QList<ProcCounters::Mount> volumes =
        ProcCounters::volumeMounts(ProcCounters::mounts(text));
    QSet<QByteArray> devices;
    for (qsizetype i = 0; i < volumes.size(); ++i) {
        require(volumes[i].path.startsWith(QLatin1Char('/')), "mount paths are absolute");
        require(i == 0 || volumes[i].path != QLatin1String("/"), "the root comes first");
        require(!devices.contains(volumes[i].device), "a device counts once");
        devices.insert(volumes[i].device);
    }

    for (const tw::NetworkCounters& counters : ProcCounters::networkCounters(text)) {
        require(!counters.interface.isEmpty() && counters.interface != QLatin1String("lo") &&
                    !counters.interface.contains(QLatin1Char('/')) &&
                    counters.interface != QLatin1String(".."),
                "interface names are safe path components, loopback left out");
    }

    ProcCounters::processStat(text);
    return 0;
}
