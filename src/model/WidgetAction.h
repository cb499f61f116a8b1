// A widget's click action: resolving it from the settings and carrying it out on the desktop.
#pragma once

#include "model/WidgetActionKind.h"
#include "model/WidgetInstance.h"
#include "platform/AppRole.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace tw {

class LaunchResult;
class Notifications;
class Workspace;

struct ResolvedAction {
    WidgetActionKind kind = WidgetActionKind::none;
    QString target;
    // Set for a kind's default: the person's own application for the role, whatever it is.
    std::optional<AppRole> role;

    bool operator==(const ResolvedAction&) const = default;
};

class WidgetAction {
public:
    WidgetAction() = delete;

    // The settings keys that hold the action; the action survives whatever settings survive.
    static QString actionKey() { return QStringLiteral("clickAction"); }
    static QString targetKey() { return QStringLiteral("clickTarget"); }

    // An explicit "none" silences even a default; an explicit kind needs a non-blank
    // "clickTarget"; an absent or unknown "clickAction" falls back to the kind's default role,
    // with the role's raw value as the target.
    static std::optional<ResolvedAction> resolved(const QString& kind,
                                                  const std::optional<WidgetSettings>& settings);
    // The kind of application a kind opens when nobody chose otherwise.
    static std::optional<AppRole> defaultRole(const QString& kind);
    // Free text as an address: "https://" unless it starts with a scheme (a host with a port
    // is not one), percent-encoded once more when the first attempt is not a valid URL.
    static std::optional<QUrl> resolvedURL(const QString& text);

    // Carries the action out; when nothing can, says so in the log and in a notification that
    // tells the person what to install or choose. False when there was nothing to run.
    static bool run(Workspace& workspace, Notifications& notifications,
                    const ResolvedAction& action);
    // An existing absolute file, else an identifier, else an application of that name, else
    // the application for a role of that raw value, else whatever the desktop finds by name.
    static LaunchResult openApp(Workspace& workspace, const QString& target);
    static LaunchResult openRole(Workspace& workspace, AppRole role);
    static LaunchResult openURL(Workspace& workspace, const QString& text);

    struct Notice {
        QString title;
        QString body;
    };
    // What the person reads when `action` could not be carried out.
    static Notice failureNotice(const ResolvedAction& action);
};

} // namespace tw
