#include "platform/null/NullWorkspace.h"

namespace tw {

LaunchResult NullWorkspace::open(const QUrl& url) {
    return record(QStringLiteral("open ") + url.toString(QUrl::FullyEncoded));
}

std::optional<QString> NullWorkspace::applicationForIdentifier(const QString& identifier) const {
    for (const Application& application : m_applications) {
        if (application.identifier == identifier) {
            return application.location;
        }
    }
    return std::nullopt;
}

std::optional<QString> NullWorkspace::applicationNamed(const QString& name) const {
    for (const Application& application : m_applications) {
        if (application.name == name) {
            return application.location;
        }
    }
    return std::nullopt;
}

std::optional<QString> NullWorkspace::applicationForRole(AppRole role) const {
    if (const auto it = m_roles.constFind(role); it != m_roles.cend()) {
        return *it;
    }
    return std::nullopt;
}

LaunchResult NullWorkspace::openApplication(const QString& location) {
    return record(QStringLiteral("application ") + location);
}

LaunchResult NullWorkspace::openApplicationByName(const QString& name) {
    return record(QStringLiteral("by-name ") + name);
}

LaunchResult NullWorkspace::runShortcut(const QString& name) {
    return record(QStringLiteral("shortcut ") + name);
}

void NullWorkspace::addApplication(const QString& identifier, const QString& name,
                                   const QString& location) {
    m_applications.append({identifier, name, location});
}

LaunchResult NullWorkspace::record(const QString& request) {
    m_requests.append(request);
    return m_failure.isEmpty() ? LaunchResult::success() : LaunchResult::failure(m_failure);
}

} // namespace tw
