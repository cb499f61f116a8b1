// The machine's name from the system, the user from the password database (else $USER), and the
// boot time from /proc/uptime, whose root is given so that a made-up tree can stand in.
#pragma once

#include "platform/MachineIdentity.h"

namespace tw {

class LinuxMachineIdentity final : public MachineIdentity {
public:
    explicit LinuxMachineIdentity(QString procRoot = QStringLiteral("/proc"));

    QString hostName() const override;
    QString userName() const override;
    std::optional<QDateTime> bootedAt(const QDateTime& now) const override;

private:
    QString m_procRoot;
};

} // namespace tw
