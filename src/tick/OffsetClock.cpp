#include "tick/OffsetClock.h"

namespace tw {

OffsetClock::OffsetClock(const Clock& base, std::chrono::milliseconds offset)
    : m_base(base)
    , m_offset(offset) {}

QDateTime OffsetClock::now() const {
    return m_base.now().addMSecs(m_offset.count());
}

std::chrono::nanoseconds OffsetClock::uptime() const {
    return m_base.uptime();
}

std::optional<std::chrono::milliseconds> OffsetClock::offsetFor(const QString& start,
                                                                const QDateTime& now) {
    const QDateTime moment = QDateTime::fromString(start.trimmed(), Qt::ISODateWithMs);
    if (!moment.isValid() || !now.isValid()) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(now.msecsTo(moment));
}

} // namespace tw
