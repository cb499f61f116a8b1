#include "config/ConfigSection.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<ConfigSection, 5> sectionWords{
    std::array{"general", "appearance", "layouts", "updates", "about"}};

constexpr ConfigSection allSections[] = {ConfigSection::general, ConfigSection::appearance,
                                         ConfigSection::layouts, ConfigSection::updates,
                                         ConfigSection::about};

} // namespace

QString rawValue(ConfigSection section) {
    return sectionWords.of(section);
}

std::optional<ConfigSection> configSectionFromRawValue(const QString& raw) {
    return sectionWords.parse(raw);
}

QStringList configPages(ConfigSection section) {
    switch (section) {
    case ConfigSection::general:
        return {QStringLiteral("startup"), QStringLiteral("energy"), QStringLiteral("interaction"),
                QStringLiteral("language")};
    case ConfigSection::appearance:
        return {QStringLiteral("theme"), QStringLiteral("look"), QStringLiteral("displays"),
                QStringLiteral("lock")};
    case ConfigSection::layouts:
        return {QStringLiteral("arrangement"), QStringLiteral("profiles"), QStringLiteral("rules"),
                QStringLiteral("backups"), QStringLiteral("files")};
    case ConfigSection::updates:
        return {QStringLiteral("version")};
    case ConfigSection::about:
        return {QStringLiteral("data"), QStringLiteral("cost"), QStringLiteral("licences")};
    }
    return {};
}

std::optional<ConfigSection> sectionOfPage(const QString& page) {
    for (const ConfigSection section : allSections) {
        if (configPages(section).contains(page)) {
            return section;
        }
    }
    return std::nullopt;
}

ConfigSelection ConfigSelection::resolve(const QString& section, const QString& page,
                                         QString* problem) {
    ConfigSelection selection;
    QStringList problems;
    if (!section.isEmpty()) {
        selection.section = configSectionFromRawValue(section);
        if (!selection.section) {
            problems << QStringLiteral("unknown configuration section \"%1\"; none selected")
                            .arg(section);
        }
    }
    if (!page.isEmpty()) {
        const std::optional<ConfigSection> home = sectionOfPage(page);
        if (!home || (selection.section && *selection.section != *home)) {
            problems << QStringLiteral("unknown settings page \"%1\"; none selected").arg(page);
        } else {
            selection.section = home;
            selection.page = page;
        }
    }
    if (problem) {
        *problem = problems.join(QStringLiteral("; "));
    }
    return selection;
}

} // namespace tw
