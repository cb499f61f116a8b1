#include "platform/AppRole.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<AppRole, 9> rawValues{{"calendar", "clock", "weather", "system-monitor",
                                           "settings", "photos", "terminal", "file-manager",
                                           "music-player"}};

} // namespace

QString rawValue(AppRole role) {
    return rawValues.of(role);
}

std::optional<AppRole> appRoleFromRawValue(QStringView raw) {
    return rawValues.parse(raw, Qt::CaseInsensitive);
}

} // namespace tw
