// How long a finished timer rings.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <chrono>
#include <optional>

namespace tw {

enum class AlarmLength { once, tenSeconds, thirtySeconds, untilStopped };

inline constexpr std::array<AlarmLength, 4> allAlarmLengths{
    AlarmLength::once, AlarmLength::tenSeconds, AlarmLength::thirtySeconds,
    AlarmLength::untilStopped};

QString rawValue(AlarmLength length);
AlarmLength resolveAlarmLength(QStringView raw, AlarmLength fallback);
// "alarm.once", "alarm.10s", "alarm.30s", "alarm.until".
QString label(AlarmLength length);
// How long the sound repeats; none for once. Until stopped still ends after ten minutes: a
// forgotten timer on an empty desk must not ring for ever.
std::optional<std::chrono::milliseconds> budget(AlarmLength length);

} // namespace tw
