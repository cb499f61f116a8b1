// Knows no application: each is its id, without icon, of no category. Tests give it listings.
#pragma once

#include "platform/AppDirectory.h"

#include <QHash>
#include <QList>

namespace tw {

class PlainAppDirectory final : public AppDirectory {
public:
    AppListing listing(const QString& id) const override {
        return m_known.value(id, AppListing{.name = id,
                                            .icon = {},
                                            .category = AppCategory::other,
                                            .isScreenLocker = false});
    }

    QString iconFile(const QString& iconName) const override { return m_icons.value(iconName); }
    QList<InstalledApp> applications() const override { return m_installed; }

    void add(const QString& id, const AppListing& listing) { m_known.insert(id, listing); }
    void install(const InstalledApp& app, const QString& iconFile = {}) {
        m_installed.append(app);
        m_icons.insert(app.icon, iconFile);
    }

private:
    QList<InstalledApp> m_installed;
    QHash<QString, QString> m_icons;
    QHash<QString, AppListing> m_known;
};

} // namespace tw
