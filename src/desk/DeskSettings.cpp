#include "desk/DeskSettings.h"

#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace tw::DeskSettings {

namespace {

// Past the year 5000 is no timer's moment; it also keeps milliseconds inside 64 bits.
constexpr double latestSeconds = 1e11;

} // namespace

int read(const WidgetSettings& settings, const QString& key, int fallback, int lowest,
         int highest) {
    bool ok = false;
    const int value = settings.value(key).trimmed().toInt(&ok);
    if (!ok) {
        return fallback;
    }
    return std::clamp(value, lowest, highest);
}

std::optional<double> seconds(const WidgetSettings& settings, const QString& key) {
    bool ok = false;
    const double value = settings.value(key).trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::abs(value) > latestSeconds) {
        return std::nullopt;
    }
    return value;
}

std::optional<QDateTime> moment(const WidgetSettings& settings, const QString& key) {
    const auto value = seconds(settings, key);
    if (!value || *value < 0) {
        return std::nullopt;
    }
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(*value * 1000)),
                                          QTimeZone::utc());
}

QString fromMoment(const QDateTime& moment) {
    return fromSeconds(static_cast<double>(moment.toMSecsSinceEpoch()) / 1000);
}

QString fromSeconds(double seconds) {
    return QString::number(seconds, 'f', 3);
}

bool flag(const WidgetSettings& settings, const QString& key) {
    const QString value = settings.value(key).trimmed().toLower();
    return value == QLatin1String("true") || value == QLatin1String("1") ||
           value == QLatin1String("yes") || value == QLatin1String("on");
}

} // namespace tw::DeskSettings
