// Dates as text with one pattern, in one time zone and the application's locale. Immutable once
// made; Formatters shares one per pattern and zone.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QTimeZone>

#include <optional>

namespace tw {

class DateFormatter {
public:
    // `pattern` uses Qt's date-time format ("HH:mm", "ddd d MMM"). An empty or unknown
    // `timeZoneId` means the machine's local time.
    DateFormatter(QString pattern, const QByteArray& timeZoneId, QLocale locale);

    // `time` shown in this formatter's zone; an invalid time gives "—".
    QString string(const QDateTime& time) const;

    const QString& pattern() const { return m_pattern; }
    const QLocale& locale() const { return m_locale; }
    // The zone dates are shown in; nullopt for local time.
    const std::optional<QTimeZone>& timeZone() const { return m_zone; }

private:
    QString m_pattern;
    std::optional<QTimeZone> m_zone;
    QLocale m_locale;
};

} // namespace tw
