#include "platform/linux/LinuxMachineIdentity.h"

#include "platform/linux/ProcCounters.h"

#include <QFile>
#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

namespace tw {

LinuxMachineIdentity::LinuxMachineIdentity(QString procRoot)
    : m_procRoot(std::move(procRoot)) {}

QString LinuxMachineIdentity::hostName() const {
    return QSysInfo::machineHostName();
}

QString LinuxMachineIdentity::userName() const {
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_name != nullptr) {
        return QString::fromLocal8Bit(entry->pw_name);
    }
    return qEnvironmentVariable("USER");
}

std::optional<QDateTime> LinuxMachineIdentity::bootedAt(const QDateTime& now) const {
    QFile file(m_procRoot + QStringLiteral("/uptime"));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    // The file is one short line; a larger read is no uptime.
    const auto seconds = ProcCounters::uptimeSeconds(file.read(256));
    if (!seconds) {
        return std::nullopt;
    }
    return now.addMSecs(-qint64(*seconds * 1000));
}

} // namespace tw
