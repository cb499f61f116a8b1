// A machine whose name, user and boot time are given, for pictures and tests.
#pragma once

#include "platform/MachineIdentity.h"

namespace tw {

class FixedMachineIdentity final : public MachineIdentity {
public:
    FixedMachineIdentity(QString host, QString user, std::optional<QDateTime> bootedAt)
        : m_host(std::move(host))
        , m_user(std::move(user))
        , m_bootedAt(std::move(bootedAt)) {}

    QString hostName() const override { return m_host; }
    QString userName() const override { return m_user; }
    std::optional<QDateTime> bootedAt(const QDateTime&) const override { return m_bootedAt; }

private:
    QString m_host;
    QString m_user;
    std::optional<QDateTime> m_bootedAt;
};

} // namespace tw
