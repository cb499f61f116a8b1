// The kinds of application a person has one favourite of: what a click wants opened, said
// without naming any program, so that each platform finds the person's own choice.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

enum class AppRole {
    calendar,
    clock,
    weather,
    systemMonitor,
    settings,
    photos,
    terminal,
    fileManager,
    musicPlayer,
};

// "calendar", "clock", "weather", "system-monitor", "settings", "photos", "terminal",
// "file-manager", "music-player".
QString rawValue(AppRole role);
// The raw value in any case; anything else is none.
std::optional<AppRole> appRoleFromRawValue(QStringView raw);

} // namespace tw
