// The machine's counters as Linux keeps them under /proc and /sys, read afresh on every call.
// The roots and the file system query are given, so that a made-up tree can stand in for them.
#pragma once

#include "platform/SystemSource.h"

#include <QByteArray>
#include <QMutex>
#include <QSet>
#include <QString>

#include <functional>

namespace tw {

class LinuxSystemSource final : public SystemSource {
public:
    struct Space {
        qint64 free = 0;
        qint64 total = 0;
    };
    // The space of the file system mounted at a path; none where it cannot be asked.
    using SpaceReader = std::function<std::optional<Space>(const QString& path)>;
    // statvfs: what a user may write (f_bavail) and the size, both in fragments.
    static std::optional<Space> statvfsSpace(const QString& path);

    explicit LinuxSystemSource(QString procRoot = QStringLiteral("/proc"),
                               QString sysRoot = QStringLiteral("/sys"),
                               SpaceReader space = statvfsSpace);

    std::optional<CpuTicks> processorTicks() const override;
    QMap<int, CpuTicks> coreTicks() const override;
    std::optional<MemoryCounters> memory() const override;
    std::optional<double> graphicsBusy() const override;
    // The root is named "Computer", the others after their mount point's last component.
    QList<Volume> volumes() const override;
    // Physical interfaces before virtual ones (bridges, veth, tunnels), each group up first,
    // then by name.
    QList<NetworkCounters> networkCounters() const override;
    QList<ProcessSample> processes() const override;

private:
    // Logs once per source; what some kernels and drivers simply lack is told as information.
    std::optional<QByteArray> read(const QString& path, const char* source,
                                   QtMsgType type = QtWarningMsg) const;
    void reportOnce(const char* source, const QString& message,
                    QtMsgType type = QtWarningMsg) const;
    bool isRemovable(const QByteArray& device) const;

    QString m_procRoot;
    QString m_sysRoot;
    SpaceReader m_space;
    qint64 m_ticksPerSecond;
    qint64 m_pageSize;
    mutable QMutex m_reportedLock;
    mutable QSet<QByteArray> m_reported;
};

} // namespace tw
