// The desktop's way of opening things: URLs and files with their handler, applications, shortcuts.
#pragma once

#include "platform/AppRole.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tw {

// What came of asking the desktop to open or start something.
class LaunchResult {
public:
    static LaunchResult success() { return LaunchResult(QString()); }
    static LaunchResult failure(const QString& message) { return LaunchResult(message); }

    bool isSuccess() const { return m_error.isEmpty(); }
    // Why it failed, in English, for the log; empty on success.
    QString error() const { return m_error; }

private:
    explicit LaunchResult(QString error)
        : m_error(std::move(error)) {}

    QString m_error;
};

class Workspace {
public:
    Workspace() = default;
    virtual ~Workspace() = default;
    Q_DISABLE_COPY_MOVE(Workspace)

    // Opens a web address, a mail link or a local file with the desktop's handler for it.
    virtual LaunchResult open(const QUrl& url) = 0;
    // The installed application known by a reverse-domain identifier (a desktop-entry id on
    // Linux, a bundle identifier on macOS), as a location openApplication() accepts.
    virtual std::optional<QString> applicationForIdentifier(const QString& identifier) const = 0;
    // The installed application whose name is `name`, searched where applications live.
    virtual std::optional<QString> applicationNamed(const QString& name) const = 0;
    // The person's own application for a role (their default calendar, terminal, …), as a
    // location openApplication() accepts; nullopt when nothing installed can take the role.
    virtual std::optional<QString> applicationForRole(AppRole role) const = 0;
    // Starts an application found by one of the look-ups above.
    virtual LaunchResult openApplication(const QString& location) = 0;
    // The last resort for a bare name: let the desktop find something called so and start it.
    virtual LaunchResult openApplicationByName(const QString& name) = 0;
    // Runs the person's automation called `name` without waiting for it; a desktop without
    // such automations says so in the result.
    virtual LaunchResult runShortcut(const QString& name) = 0;
};

} // namespace tw
