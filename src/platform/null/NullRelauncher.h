// A relauncher that starts nothing and reports success or failure as told.
#pragma once

#include "platform/Relauncher.h"

namespace tw {

class NullRelauncher final : public Relauncher {
public:
    explicit NullRelauncher(bool starts)
        : m_starts(starts) {}

    bool startAfterExit(qint64, const QString&, const QStringList&) override { return m_starts; }

private:
    bool m_starts;
};

} // namespace tw
