// Reading and writing the timers' stored settings: numbers and moments as strings, read leniently.
#pragma once

#include "model/WidgetInstance.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tw::DeskSettings {

// An integer setting: absent or unreadable gives `fallback`, out of range is clamped into it.
int read(const WidgetSettings& settings, const QString& key, int fallback, int lowest, int highest);
// A finite number of seconds, or nothing for an absent or unreadable value.
std::optional<double> seconds(const WidgetSettings& settings, const QString& key);
// A moment stored as seconds since 1970, or nothing for an absent, unreadable or absurd value.
std::optional<QDateTime> moment(const WidgetSettings& settings, const QString& key);
// The stored forms.
QString fromMoment(const QDateTime& moment);
QString fromSeconds(double seconds);
// True for "true", "1", "yes" and "on".
bool flag(const WidgetSettings& settings, const QString& key);

} // namespace tw::DeskSettings
