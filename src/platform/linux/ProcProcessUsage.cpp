#include "platform/linux/ProcProcessUsage.h"

#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

namespace tw {

namespace {

std::chrono::nanoseconds duration(const timeval& t) {
    return std::chrono::seconds(t.tv_sec) + std::chrono::microseconds(t.tv_usec);
}

} // namespace

std::chrono::nanoseconds ProcProcessUsage::processorTime() const {
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) {
        return std::chrono::nanoseconds(0);
    }
    return duration(usage.ru_utime) + duration(usage.ru_stime);
}

qint64 ProcProcessUsage::residentBytes() const {
    // "size resident shared text lib data dt", in pages.
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> fields = statm.read(256).split(' ');
    bool ok = false;
    const qint64 pages = fields.value(1).toLongLong(&ok);
    return ok ? pages * sysconf(_SC_PAGESIZE) : 0;
}

} // namespace tw
