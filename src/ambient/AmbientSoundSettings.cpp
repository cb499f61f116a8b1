#include "ambient/AmbientSoundSettings.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tw {

namespace {

constexpr std::array<int, 5> sleepLengths{0, 15, 30, 60, 90};

} // namespace

AmbientSoundSettings AmbientSoundSettings::from(const WidgetSettings& settings) {
    AmbientSoundSettings result;
    result.sound = ambientSoundFrom(settings.value(QStringLiteral("sound")));
    bool ok = false;
    const double percent = settings.value(QStringLiteral("volume")).trimmed().toDouble(&ok);
    if (ok && std::isfinite(percent)) {
        result.volume = std::clamp(std::round(percent / 10) / 10, 0.1, 1.0);
    }
    const int minutes = settings.value(QStringLiteral("sleep")).trimmed().toInt(&ok);
    if (ok && minutes > 0) {
        result.sleep = std::chrono::minutes(std::min(minutes, 24 * 60));
    }
    return result;
}

QString AmbientSoundSettings::volumeValue(double volume) {
    return QString::number(int(std::lround(std::clamp(volume, 0.1, 1.0) * 10)) * 10);
}

double AmbientSoundSettings::stepped(double volume, int tenths) {
    return std::clamp(std::round(volume * 10 + tenths) / 10, 0.1, 1.0);
}

std::chrono::minutes AmbientSoundSettings::nextSleep(std::chrono::minutes sleep) {
    for (const int length : sleepLengths) {
        if (length > sleep.count()) {
            return std::chrono::minutes(length);
        }
    }
    return std::chrono::minutes(0);
}

} // namespace tw
