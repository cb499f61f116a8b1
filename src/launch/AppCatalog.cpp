#include "launch/AppCatalog.h"

namespace tw {

AppCatalog::AppCatalog(const AppDirectory& directory)
    : m_directory(directory) {}

void AppCatalog::load() {
    m_apps = m_directory.applications();
    m_byId.clear();
    for (qsizetype i = 0; i < m_apps.size(); ++i) {
        m_byId.insert(m_apps.at(i).id, i);
    }
    m_loaded = true;
}

std::optional<InstalledApp> AppCatalog::app(const QString& id) {
    if (!m_loaded || (!m_byId.contains(id) && !m_missed.contains(id))) {
        if (m_loaded) {
            m_missed << id;
        }
        load();
    }
    const auto found = m_byId.constFind(id);
    if (found == m_byId.cend()) {
        return std::nullopt;
    }
    return m_apps.at(*found);
}

QString AppCatalog::iconFile(const InstalledApp& app) {
    return m_directory.iconFile(app.icon);
}

QList<InstalledApp> AppCatalog::all() {
    load();
    m_missed.clear();
    return m_apps;
}

} // namespace tw
