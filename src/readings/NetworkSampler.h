// The traffic through each network interface as rates between two reads. Used by one task at a
// time.
#pragma once

#include "platform/SystemSource.h"
#include "readings/NetworkSnapshot.h"

#include <QHash>

#include <optional>

namespace tw {

class NetworkSampler {
public:
    explicit NetworkSampler(SystemSource& source);

    // Bytes per second since the last read: 0 on the first, for an interface new since then, and
    // for a counter that went back (the interface came up again).
    NetworkSnapshot sample(const QDateTime& now);

private:
    SystemSource& m_source;
    QHash<QString, NetworkCounters> m_previous;
    std::optional<QDateTime> m_previousAt;
};

} // namespace tw
