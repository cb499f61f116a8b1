// A workspace that opens nothing and remembers what it was asked: tests and off-screen pictures.
#pragma once

#include "platform/Workspace.h"

#include <QList>
#include <QMap>

namespace tw {

class NullWorkspace final : public Workspace {
public:
    LaunchResult open(const QUrl& url) override;
    std::optional<QString> applicationForIdentifier(const QString& identifier) const override;
    std::optional<QString> applicationNamed(const QString& name) const override;
    std::optional<QString> applicationForRole(AppRole role) const override;
    LaunchResult openApplication(const QString& location) override;
    LaunchResult openApplicationByName(const QString& name) override;
    LaunchResult runShortcut(const QString& name) override;

    // Makes an application known to both look-ups.
    void addApplication(const QString& identifier, const QString& name, const QString& location);
    // Makes an application the one for `role`.
    void addRoleApplication(AppRole role, const QString& location) {
        m_roles.insert(role, location);
    }
    // From now on every request is recorded and then fails with `message`.
    void failWith(const QString& message) { m_failure = message; }

    // One line per request, in order: "open <url>", "application <location>",
    // "by-name <name>", "shortcut <name>".
    QStringList requests() const { return m_requests; }

private:
    struct Application {
        QString identifier;
        QString name;
        QString location;
    };

    LaunchResult record(const QString& request);

    QList<Application> m_applications;
    QMap<AppRole, QString> m_roles;
    QStringList m_requests;
    QString m_failure;
};

} // namespace tw
