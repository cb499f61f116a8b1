// The machine and the person the program runs for, as custom widgets' tokens name them: the
// machine's name, the short user name and when the machine started.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tw {

class MachineIdentity {
public:
    MachineIdentity() = default;
    virtual ~MachineIdentity() = default;
    Q_DISABLE_COPY_MOVE(MachineIdentity)

    virtual QString hostName() const = 0;
    virtual QString userName() const = 0;
    // Seen from `now`; nullopt where the system does not tell.
    virtual std::optional<QDateTime> bootedAt(const QDateTime& now) const = 0;
};

} // namespace tw
