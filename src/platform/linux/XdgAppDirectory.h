// Applications by their window class on a freedesktop.org desktop: the desktop entry's Name,
// Icon (found in the icon themes) and Categories. The entries are read once, when first asked,
// and each answer is kept for the life of the process.
#pragma once

#include "platform/AppDirectory.h"
#include "platform/linux/XdgApplications.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace tw {

class XdgAppDirectory final : public AppDirectory {
public:
    // `iconRoots`: the "icons" directories, most important first; `themes` the icon themes to
    // look in, the person's first.
    XdgAppDirectory(QStringList iconRoots, QStringList themes);
    // The data directories' icon roots and "pixmaps", and the desktop's theme then hicolor.
    static XdgAppDirectory forSession();

    AppListing listing(const QString& id) const override;
    QString iconFile(const QString& iconName) const override;
    QList<InstalledApp> applications() const override;

private:
    QStringList m_iconRoots;
    QStringList m_themes;
    mutable std::optional<XdgApplications> m_applications;
    mutable QHash<QString, AppListing> m_listings;
    mutable QHash<QString, QString> m_icons;
};

} // namespace tw
