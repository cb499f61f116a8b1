#include "model/WidgetAction.h"

#include "platform/Workspace.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <array>

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

void report(const LaunchResult& result) {
    if (!result.isSuccess()) {
        qCCritical(lcWidgetAction, "action failed: %s", qUtf8Printable(result.error()));
    }
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
        return ResolvedAction{*chosen, target};
    }
    if (const auto target = defaultTarget(kind)) {
        return ResolvedAction{WidgetActionKind::app, *target};
    }
    return std::nullopt;
}

std::optional<QString> WidgetAction::defaultTarget(const QString& kind) {
    struct Default {
        const char* kind;
        const char* target;
    };
    // crypto, currency and worldmap stay silent on purpose.
    static constexpr std::array<Default, 10> defaults{{
        {"calendar", "com.apple.iCal"},
        {"weather", "com.apple.weather"},
        {"clock", "com.apple.clock"},
        {"worldclock", "com.apple.clock"},
        {"countdown", "com.apple.clock"},
        {"system", "com.apple.ActivityMonitor"},
        {"battery", "com.apple.systempreferences"},
        {"network", "com.apple.systempreferences"},
        {"btdevices", "com.apple.systempreferences"},
        {"photos", "com.apple.Photos"},
    }};
    for (const Default& entry : defaults) {
        if (kind == QLatin1String(entry.kind)) {
            return QLatin1String(entry.target);
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

void WidgetAction::run(Workspace& workspace, WidgetActionKind kind, const QString& target) {
    const QString trimmed = target.trimmed();
    if (trimmed.isEmpty()) {
        return;
    }
    switch (kind) {
    case WidgetActionKind::none:
        return;
    case WidgetActionKind::app:
        openApp(workspace, trimmed);
        return;
    case WidgetActionKind::url:
        openURL(workspace, trimmed);
        return;
    case WidgetActionKind::shortcut:
        exec(workspace, QStringLiteral("/usr/bin/shortcuts"), {QStringLiteral("run"), trimmed});
        return;
    }
}

void WidgetAction::openApp(Workspace& workspace, const QString& target) {
    if (target.startsWith(QLatin1Char('/')) && QFileInfo::exists(target)) {
        report(workspace.open(QUrl::fromLocalFile(target)));
        return;
    }
    if (target.contains(QLatin1Char('.')) && !holdsBlank(target)) {
        if (const auto location = workspace.applicationForIdentifier(target)) {
            report(workspace.openApplication(*location));
            return;
        }
    }
    if (const auto location = workspace.applicationNamed(target)) {
        report(workspace.openApplication(*location));
        return;
    }
    report(workspace.openApplicationByName(target));
}

void WidgetAction::openURL(Workspace& workspace, const QString& text) {
    if (const auto url = resolvedURL(text)) {
        report(workspace.open(*url));
    }
}

void WidgetAction::exec(Workspace& workspace, const QString& program,
                        const QStringList& arguments) {
    report(workspace.startDetached(program, arguments));
}

} // namespace tw
