// Where the configuration window opens: one of its sections, and optionally a page inside it.
#pragma once

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace tw {

// Stored and named as "general", "appearance", "layouts", "updates", "about".
enum class ConfigSection { general, appearance, layouts, updates, about };

QString rawValue(ConfigSection section);
// Anything but one of the five words selects none.
std::optional<ConfigSection> configSectionFromRawValue(const QString& raw);
// The pages each section can open at, by name, in the order they stand on it.
QStringList configPages(ConfigSection section);
// The section a page stands in, if any.
std::optional<ConfigSection> sectionOfPage(const QString& page);

struct ConfigSelection {
    // None: the gallery.
    std::optional<ConfigSection> section = std::nullopt;
    // Empty: the top of the section.
    QString page = {};
    // Set: that tile's own page, whatever the section.
    QUuid widget = {};

    bool operator==(const ConfigSelection&) const = default;

    // From the values of "TKW_CONFIG_SECTION" and "TKW_SETTINGS_PAGE" (or the stored page of
    // "tarnwick.settings.page"). A page alone opens its own section; a page that does not stand in
    // the section is dropped. `problem` receives one line for each value that selects nothing.
    static ConfigSelection resolve(const QString& section, const QString& page, QString* problem);
};

} // namespace tw
