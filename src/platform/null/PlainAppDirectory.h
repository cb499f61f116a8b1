// Knows no application: each is its id, without icon, of no category. Tests give it listings.
#pragma once

#include "platform/AppDirectory.h"

#include <QHash>

namespace tw {

class PlainAppDirectory final : public AppDirectory {
public:
    AppListing listing(const QString& id) const override {
        return m_known.value(id, AppListing{.name = id,
                                            .icon = {},
                                            .category = AppCategory::other,
                                            .isScreenLocker = false});
    }

    QString iconFile(const QString&) const override { return {}; }

    void add(const QString& id, const AppListing& listing) { m_known.insert(id, listing); }

private:
    QHash<QString, AppListing> m_known;
};

} // namespace tw
