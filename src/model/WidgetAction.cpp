#include "model/WidgetAction.h"

#include "platform/Notifications.h"
#include "platform/Workspace.h"
#include "text/L.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <iterator>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcWidgetAction, "WidgetAction")

// Percent-encodes every ASCII character outside the union of the characters a URL query and a
// URL fragment allow. Letters beyond ASCII stay as they are: QUrl encodes them itself, and an
// encoded international host name would no longer be one.
QString encodedForURL(const QString& text) {
    static const QString allowed = QStringLiteral("-._~!$&'()*+,/:;=?@");
    QString encoded;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool asciiAlphanumeric =
            (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9');
        if (u >= 0x80 || asciiAlphanumeric || allowed.contains(c)) {
            encoded.append(c);
        } else {
            encoded.append(QLatin1Char('%') +
                           QString::number(u, 16).rightJustified(2, QLatin1Char('0')).toUpper());
        }
    }
    return encoded;
}

bool holdsBlank(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

} // namespace

std::optional<ResolvedAction>
WidgetAction::resolved(const QString& kind, const std::optional<WidgetSettings>& settings) {
    const QString raw = settings ? settings->value(actionKey()) : QString();
    if (const auto chosen = widgetActionKindFromRawValue(raw)) {
        if (*chosen == WidgetActionKind::none) {
            return std::nullopt;
        }
        const QString target = settings->value(targetKey()).trimmed();
        if (target.isEmpty()) {
            return std::nullopt;
        }
        return ResolvedAction{*chosen, target, std::nullopt};
    }
    if (const auto role = defaultRole(kind)) {
        return ResolvedAction{WidgetActionKind::app, rawValue(*role), role};
    }
    return std::nullopt;
}

std::optional<AppRole> WidgetAction::defaultRole(const QString& kind) {
    // crypto, currency and worldmap stay silent on purpose.
    static const std::array<std::pair<const char*, AppRole>, 10> defaults{{
        {"calendar", AppRole::calendar},
        {"weather", AppRole::weather},
        {"clock", AppRole::clock},
        {"worldclock", AppRole::clock},
        {"countdown", AppRole::clock},
        {"system", AppRole::systemMonitor},
        {"battery", AppRole::settings},
        {"network", AppRole::settings},
        {"btdevices", AppRole::settings},
        {"photos", AppRole::photos},
    }};
    for (const auto& [name, role] : defaults) {
        if (kind == QLatin1String(name)) {
            return role;
        }
    }
    return std::nullopt;
}

std::optional<QUrl> WidgetAction::resolvedURL(const QString& text) {
    // A scheme, but not "host:8080": a digit after the colon means a port.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.\\-]*:(?!\\d)"));
    QString address = text.trimmed();
    if (address.isEmpty()) {
        return std::nullopt;
    }
    if (!scheme.match(address).hasMatch()) {
        address.prepend(QStringLiteral("https://"));
    }
    if (const QUrl url(address, QUrl::StrictMode); url.isValid()) {
        return url;
    }
    // Blanks, umlauts and stray signs: encode them and try once more.
    if (const QUrl url(encodedForURL(address), QUrl::StrictMode); url.isValid()) {
        return url;
    }
    return std::nullopt;
}

bool WidgetAction::run(Workspace& workspace, Notifications& notifications,
                       const ResolvedAction& action) {
    const QString target = action.target.trimmed();
    if (target.isEmpty() && !action.role) {
        return false;
    }
    LaunchResult result = LaunchResult::success();
    switch (action.kind) {
    case WidgetActionKind::none:
        return false;
    case WidgetActionKind::app:
        result = action.role ? openRole(workspace, *action.role) : openApp(workspace, target);
        break;
    case WidgetActionKind::url:
        result = openURL(workspace, target);
        break;
    case WidgetActionKind::shortcut:
        result = workspace.runShortcut(target);
        break;
    }
    if (!result.isSuccess()) {
        qCCritical(lcWidgetAction, "action failed: %s", qUtf8Printable(result.error()));
        const Notice notice = failureNotice(action);
        notifications.notify(notice.title, notice.body);
    }
    return true;
}

LaunchResult WidgetAction::openApp(Workspace& workspace, const QString& target) {
    if (target.startsWith(QLatin1Char('/')) && QFileInfo::exists(target)) {
        return workspace.open(QUrl::fromLocalFile(target));
    }
    if (target.contains(QLatin1Char('.')) && !holdsBlank(target)) {
        if (const auto location = workspace.applicationForIdentifier(target)) {
            return workspace.openApplication(*location);
        }
    }
    if (const auto location = workspace.applicationNamed(target)) {
        return workspace.openApplication(*location);
    }
    if (const auto role = appRoleFromRawValue(target)) {
        if (const auto location = workspace.applicationForRole(*role)) {
            return workspace.openApplication(*location);
        }
    }
    return workspace.openApplicationByName(target);
}

LaunchResult WidgetAction::openRole(Workspace& workspace, AppRole role) {
    if (const auto location = workspace.applicationForRole(role)) {
        return workspace.openApplication(*location);
    }
    return LaunchResult::failure(QLatin1String("no application for the role ") + rawValue(role));
}

LaunchResult WidgetAction::openURL(Workspace& workspace, const QString& text) {
    if (const auto url = resolvedURL(text)) {
        return workspace.open(*url);
    }
    return LaunchResult::failure(QLatin1String("not an address: ") + text);
}

WidgetAction::Notice WidgetAction::failureNotice(const ResolvedAction& action) {
    const QString settingsHint =
        L("action.failed.chooseDefault",
          QStringLiteral("Install %1, or choose one as the default in your desktop's settings."));
    if (action.role) {
        // What nothing opens and what to install, by role in the order of AppRole.
        struct Missing {
            const char* titleKey;
            const char* title;
            const char* appKey;
            const char* app;
        };
        static constexpr Missing missing[] = {
            {"action.failed.calendar", "Nothing opens calendars", "action.app.calendar",
             "a calendar app"},
            {"action.failed.clock", "Nothing opens clocks", "action.app.clock", "a clock app"},
            {"action.failed.weather", "Nothing opens the weather", "action.app.weather",
             "a weather app"},
            {"action.failed.systemMonitor", "Nothing opens a system monitor",
             "action.app.systemMonitor", "a system monitor"},
            {"action.failed.settings", "Nothing opens the settings", "action.app.settings",
             "your desktop's settings app"},
            {"action.failed.photos", "Nothing opens photos", "action.app.photos", "a photo viewer"},
            {"action.failed.terminal", "Nothing opens a terminal", "action.app.terminal",
             "a terminal"},
            {"action.failed.fileManager", "Nothing opens folders", "action.app.fileManager",
             "a file manager"},
            {"action.failed.musicPlayer", "Nothing plays music", "action.app.musicPlayer",
             "a music player"},
        };
        static_assert(std::size(missing) == static_cast<std::size_t>(AppRole::musicPlayer) + 1);
        const Missing& entry = missing[static_cast<std::size_t>(*action.role)];
        return {L(entry.titleKey, QString::fromUtf8(entry.title)),
                settingsHint.arg(L(entry.appKey, QString::fromUtf8(entry.app)))};
    }
    const QString title = L("action.failed.target", QStringLiteral("Nothing opens “%1”"))
                              .arg(action.target.trimmed());
    switch (action.kind) {
    case WidgetActionKind::url:
        return {title, L("action.failed.url.body",
                         QStringLiteral("This address cannot be opened. Check the widget's "
                                        "click action in its settings."))};
    case WidgetActionKind::shortcut:
        return {title, L("action.failed.shortcut.body",
                         QStringLiteral("Shortcuts cannot run on this computer. Choose an "
                                        "application or an address as the click action."))};
    case WidgetActionKind::none:
    case WidgetActionKind::app:
        break;
    }
    return {title, L("action.failed.app.body",
                     QStringLiteral("No application of that name is installed. Install it, or "
                                    "choose another in the widget's settings."))};
}

} // namespace tw
