#include "platform/linux/XdgAppDirectory.h"

#include "platform/linux/LinuxAppCategory.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

#include <algorithm>

namespace tw {

namespace {

// Sizes that draw well in a row of bars, larger ones first.
const QStringList sizes{QStringLiteral("64x64"),   QStringLiteral("48x48"),
                        QStringLiteral("96x96"),   QStringLiteral("128x128"),
                        QStringLiteral("256x256"), QStringLiteral("scalable"),
                        QStringLiteral("32x32")};

} // namespace

XdgAppDirectory::XdgAppDirectory(QStringList iconRoots, QStringList themes)
    : m_iconRoots(std::move(iconRoots))
    , m_themes(std::move(themes)) {}

XdgAppDirectory XdgAppDirectory::forSession() {
    QStringList roots{QDir::homePath() + QStringLiteral("/.icons")};
    QStringList pixmaps;
    for (const QString& data :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        roots.append(data + QStringLiteral("/icons"));
        pixmaps.append(data + QStringLiteral("/pixmaps"));
    }
    QStringList themes{QIcon::themeName(), QStringLiteral("hicolor"), QStringLiteral("Adwaita")};
    themes.removeAll(QString());
    themes.removeDuplicates();
    return XdgAppDirectory(roots + pixmaps, themes);
}

AppListing XdgAppDirectory::listing(const QString& id) const {
    const auto known = m_listings.constFind(id);
    if (known != m_listings.cend()) {
        return *known;
    }
    if (!m_applications) {
        m_applications = XdgApplications::scan();
    }
    AppListing listing{.name = id,
                       .icon = {},
                       .category = AppCategory::other,
                       .isScreenLocker = isLinuxScreenLocker(id)};
    const std::optional<XdgApplications::Found> found = m_applications->entryForWindowClass(id);
    listing.category = linuxAppCategory(found ? QStringList{id, found->id} : QStringList{id},
                                        found ? found->entry.categories : QStringList());
    if (found) {
        listing.name = found->entry.name;
        listing.icon = iconFile(found->entry.icon);
    }
    m_listings.insert(id, listing);
    return listing;
}

QString XdgAppDirectory::iconFile(const QString& iconName) const {
    if (iconName.isEmpty()) {
        return {};
    }
    if (QDir::isAbsolutePath(iconName)) {
        return QFileInfo(iconName).isFile() ? iconName : QString();
    }
    const auto known = m_icons.constFind(iconName);
    if (known != m_icons.cend()) {
        return *known;
    }
    QString file;
    const QStringList names{iconName + QStringLiteral(".png"), iconName + QStringLiteral(".svg")};
    for (const QString& theme : m_themes) {
        for (const QString& root : m_iconRoots) {
            for (const QString& size : sizes) {
                const QDir sizeDir(root + QLatin1Char('/') + theme + QLatin1Char('/') + size);
                // Themes sort their icons into contexts: "apps", "legacy", …
                for (const QString& context :
                     sizeDir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
                    for (const QString& name : names) {
                        const QString candidate =
                            sizeDir.filePath(context + QLatin1Char('/') + name);
                        if (file.isEmpty() && QFileInfo(candidate).isFile()) {
                            file = candidate;
                        }
                    }
                }
                if (!file.isEmpty()) {
                    m_icons.insert(iconName, file);
                    return file;
                }
            }
        }
    }
    // Old programs put a picture straight into "pixmaps", which is among the roots.
    for (const QString& root : m_iconRoots) {
        for (const QString& name : names) {
            if (file.isEmpty() && QFileInfo(root + QLatin1Char('/') + name).isFile()) {
                file = root + QLatin1Char('/') + name;
            }
        }
    }
    m_icons.insert(iconName, file);
    return file;
}

QList<InstalledApp> XdgAppDirectory::applications() const {
    QList<InstalledApp> out;
    const QString suffix = QStringLiteral(".desktop");
    for (const XdgApplications::Found& found : XdgApplications::scan().shown()) {
        out.append({.id = found.id.endsWith(suffix) ? found.id.chopped(suffix.size()) : found.id,
                    .name = found.entry.name,
                    .icon = found.entry.icon,
                    .keywords = found.entry.keywords});
    }
    std::sort(out.begin(), out.end(), [](const InstalledApp& a, const InstalledApp& b) {
        return QString::localeAwareCompare(a.name, b.name) < 0;
    });
    return out;
}

} // namespace tw
