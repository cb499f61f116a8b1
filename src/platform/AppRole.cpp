#include "platform/AppRole.h"

#include <array>
#include <utility>

namespace tw {

namespace {

constexpr std::array<std::pair<AppRole, const char*>, 9> names{{
    {AppRole::calendar, "calendar"},
    {AppRole::clock, "clock"},
    {AppRole::weather, "weather"},
    {AppRole::systemMonitor, "system-monitor"},
    {AppRole::settings, "settings"},
    {AppRole::photos, "photos"},
    {AppRole::terminal, "terminal"},
    {AppRole::fileManager, "file-manager"},
    {AppRole::musicPlayer, "music-player"},
}};

} // namespace

QString rawValue(AppRole role) {
    for (const auto& [candidate, name] : names) {
        if (candidate == role) {
            return QLatin1String(name);
        }
    }
    return {};
}

std::optional<AppRole> appRoleFromRawValue(QStringView raw) {
    for (const auto& [role, name] : names) {
        if (raw.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
            return role;
        }
    }
    return std::nullopt;
}

} // namespace tw
