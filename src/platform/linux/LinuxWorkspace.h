// Opening things on a freedesktop.org desktop: xdg-open, desktop entries, detached processes.
#pragma once

#include "platform/Workspace.h"

namespace tw {

class LinuxWorkspace final : public Workspace {
public:
    LaunchResult open(const QUrl& url) override;
    // "<identifier>.desktop" in the XDG applications directories, as a file path.
    std::optional<QString> applicationForIdentifier(const QString& identifier) const override;
    // The first desktop entry whose Name or file name equals `name`, ignoring case.
    std::optional<QString> applicationNamed(const QString& name) const override;
    // The default handler of the role's MIME types and URL schemes along the mimeapps.list
    // chain, else an entry by the role's Categories, else by its Keywords.
    std::optional<QString> applicationForRole(AppRole role) const override;
    // Runs the Exec line of the desktop entry at `location`.
    LaunchResult openApplication(const QString& location) override;
    // A program of that name (or its lower-case form) on PATH.
    LaunchResult openApplicationByName(const QString& name) override;
    // Fails: a freedesktop.org desktop has no named automations to run.
    LaunchResult runShortcut(const QString& name) override;

private:
    static LaunchResult startDetached(const QString& program, const QStringList& arguments);
};

} // namespace tw
