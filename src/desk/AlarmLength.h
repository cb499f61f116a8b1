// How long a finished timer rings.
#pragma once

#include <QString>
#include <QStringView>

#include <chrono>
#include <optional>

namespace tw {

enum class AlarmLength { once, tenSeconds, thirtySeconds, untilStopped };

AlarmLength resolveAlarmLength(QStringView raw, AlarmLength fallback);
// How long the sound repeats; none for once. Until stopped still ends after ten minutes: a
// forgotten timer on an empty desk must not ring for ever.
std::optional<std::chrono::milliseconds> budget(AlarmLength length);

} // namespace tw
