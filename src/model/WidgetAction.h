// A widget's click action: resolving it from the settings and carrying it out on the desktop.
#pragma once

#include "model/WidgetActionKind.h"
#include "model/WidgetInstance.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tw {

class Workspace;

struct ResolvedAction {
    WidgetActionKind kind = WidgetActionKind::none;
    QString target;

    bool operator==(const ResolvedAction&) const = default;
};

class WidgetAction {
public:
    WidgetAction() = delete;

    // The settings keys that hold the action; the action survives whatever settings survive.
    static QString actionKey() { return QStringLiteral("clickAction"); }
    static QString targetKey() { return QStringLiteral("clickTarget"); }

    // An explicit "none" silences even a default; an explicit kind needs a non-blank
    // "clickTarget"; an absent or unknown "clickAction" falls back to the kind's default.
    static std::optional<ResolvedAction> resolved(const QString& kind,
                                                  const std::optional<WidgetSettings>& settings);
    // The application a kind opens when nobody chose otherwise, by its identifier.
    static std::optional<QString> defaultTarget(const QString& kind);
    // Free text as an address: "https://" unless it starts with a scheme (a host with a port
    // is not one), percent-encoded once more when the first attempt is not a valid URL.
    static std::optional<QUrl> resolvedURL(const QString& text);

    static void run(Workspace& workspace, WidgetActionKind kind, const QString& target);
    // An existing absolute file, else an identifier, else an application of that name, else
    // whatever the desktop finds by that name.
    static void openApp(Workspace& workspace, const QString& target);
    static void openURL(Workspace& workspace, const QString& text);
    // Starts a program without waiting; a failure is only logged.
    static void exec(Workspace& workspace, const QString& program, const QStringList& arguments);
};

} // namespace tw
