// The installed applications by id with their icon files, read from the `AppDirectory` when
// first asked and again when asked for an id it does not know (something newly installed).
#pragma once

#include "platform/AppDirectory.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

class AppCatalog {
public:
    explicit AppCatalog(const AppDirectory& directory);

    // Nullopt for an application not installed here (after one fresh look).
    std::optional<InstalledApp> app(const QString& id);
    // The picture file of the application's icon; empty without one.
    QString iconFile(const InstalledApp& app);
    QList<InstalledApp> all();

private:
    void load();

    const AppDirectory& m_directory;
    bool m_loaded = false;
    QList<InstalledApp> m_apps;
    QHash<QString, qsizetype> m_byId;
    // Ids looked for since the last reading: each is worth one fresh look, not one per paint.
    QStringList m_missed;
};

} // namespace tw
