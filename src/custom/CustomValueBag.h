// Everything a custom widget may read at one moment: the time, the machine's readings and the
// fetched documents, so that one drawing reads one consistent set.
#pragma once

#include "custom/CustomJSON.h"
#include "platform/PowerSource.h"
#include "readings/SystemSnapshot.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <chrono>
#include <optional>

namespace tw {

struct CustomValueBag {
    QDateTime now;
    std::optional<BatterySnapshot> battery;
    std::optional<SystemSnapshot> system;
    // The machine's name and the short user name.
    QString host;
    QString user;
    std::chrono::duration<double> uptime{0};
    // The main source's document.
    std::optional<CustomJSON> data;
    // The documents of the extra sources that have one, by source name.
    QHash<QString, CustomJSON> named;
    // The entry of the list line being drawn.
    std::optional<CustomJSON> item;
    // The first error among the sources.
    std::optional<QString> dataError;

    // The main document for no name, else the extra source of that name; nullptr when missing.
    const CustomJSON* document(const std::optional<QString>& name) const;

    // Sample readings and documents for drawing a widget without live data; `user` is the
    // person's real short name, which the caller knows.
    static CustomValueBag preview(const QDateTime& now, const QString& user);

    bool operator==(const CustomValueBag&) const = default;
};

} // namespace tw
