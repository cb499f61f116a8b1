#include "settings/DateFormatter.h"

namespace tw {

DateFormatter::DateFormatter(QString pattern, const QByteArray& timeZoneId, QLocale locale)
    : m_pattern(std::move(pattern))
    , m_locale(std::move(locale)) {
    if (!timeZoneId.isEmpty()) {
        // Reading the zone database is the costly part of a formatter; it happens once here.
        QTimeZone zone(timeZoneId);
        if (zone.isValid()) {
            m_zone = std::move(zone);
        }
    }
}

QString DateFormatter::string(const QDateTime& time) const {
    if (!time.isValid()) {
        return QStringLiteral("—");
    }
    const QDateTime shown = m_zone ? time.toTimeZone(*m_zone) : time.toLocalTime();
    return m_locale.toString(shown, m_pattern);
}

} // namespace tw
