#include "model/WidgetAction.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using tw::ResolvedAction;
using tw::WidgetAction;
using tw::WidgetActionKind;
using tw::WidgetSettings;

Q_DECLARE_METATYPE(std::optional<WidgetSettings>)

namespace {

// "action=target" pairs, or "-" for no settings at all.
std::optional<WidgetSettings> settingsFrom(const QString& pairs) {
    if (pairs == QLatin1String("-")) {
        return std::nullopt;
    }
    WidgetSettings settings;
    for (const QString& pair : pairs.split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
        settings.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    }
    return settings;
}

QString describe(const std::optional<ResolvedAction>& action) {
    return action ? tw::rawValue(action->kind) + QLatin1Char(' ') + action->target
                  : QStringLiteral("no action");
}

} // namespace

class TestWidgetAction : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void resolved_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("expected");
        QTest::newRow("default of calendar") << "calendar"
                                             << "-"
                                             << "app calendar";
        QTest::newRow("explicit none beats the default") << "calendar"
                                                         << "clickAction=none|clickTarget=x"
                                                         << "no action";
        QTest::newRow("url with a blank target, not the default")
            << "calendar"
            << "clickAction=url|clickTarget=  \n"
            << "no action";
        QTest::newRow("url without a target") << "weather"
                                              << "clickAction=url"
                                              << "no action";
        QTest::newRow("target trimmed") << "moon"
                                        << "clickAction=url|clickTarget=  example.com\n"
                                        << "url example.com";
        QTest::newRow("shortcut") << "moon"
                                  << "clickAction=shortcut|clickTarget=Focus"
                                  << "shortcut Focus";
        QTest::newRow("unknown action falls back") << "clock"
                                                   << "clickAction=launch|clickTarget=x"
                                                   << "app clock";
        QTest::newRow("action is case-sensitive") << "battery"
                                                  << "clickAction=URL|clickTarget=x"
                                                  << "app settings";
        QTest::newRow("other settings only") << "system"
                                             << "style=ring"
                                             << "app system-monitor";
        QTest::newRow("silent kind") << "crypto"
                                     << "-"
                                     << "no action";
        QTest::newRow("silent kind, chosen app")
            << "crypto"
            << "clickAction=app|clickTarget=org.gnome.Calculator"
            << "app org.gnome.Calculator";
    }
    void resolved() {
        QFETCH(QString, kind);
        QFETCH(QString, settings);
        QTEST(describe(WidgetAction::resolved(kind, settingsFrom(settings))), "expected");
    }

    void defaultRole_data() {
        QTest::addColumn<QString>("kinds");
        QTest::addColumn<QString>("role");
        QTest::newRow("calendar") << "calendar"
                                  << "calendar";
        QTest::newRow("weather") << "weather"
                                 << "weather";
        QTest::newRow("clocks") << "clock worldclock countdown"
                                << "clock";
        QTest::newRow("system") << "system"
                                << "system-monitor";
        QTest::newRow("settings") << "battery network btdevices"
                                  << "settings";
        QTest::newRow("photos") << "photos"
                                << "photos";
        QTest::newRow("silent")
            << "crypto currency worldmap custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F"
            << "";
    }
    void defaultRole() {
        QFETCH(QString, kinds);
        QFETCH(QString, role);
        for (const QString& kind : kinds.split(QLatin1Char(' '))) {
            const auto found = WidgetAction::defaultRole(kind);
            QCOMPARE(found ? tw::rawValue(*found) : QString(), role);
        }
        if (!role.isEmpty()) {
            QCOMPARE(tw::rawValue(*tw::appRoleFromRawValue(role.toUpper())), role);
        }
    }

    void resolvedURL_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("url");
        QTest::newRow("empty") << "" << QString();
        QTest::newRow("blanks") << " \t\n" << QString();
        QTest::newRow("bare host") << "example.com"
                                   << "https://example.com";
        QTest::newRow("trimmed") << "  https://x.org/a \n"
                                 << "https://x.org/a";
        QTest::newRow("host with port") << "host:8080/path"
                                        << "https://host:8080/path";
        QTest::newRow("localhost with port") << "localhost:3000"
                                             << "https://localhost:3000";
        QTest::newRow("other scheme kept") << "ftp://files.example.org"
                                           << "ftp://files.example.org";
        QTest::newRow("mail link") << "mailto:someone@example.com"
                                   << "mailto:someone@example.com";
        QTest::newRow("mail link with blank") << "mailto:a b@x.de"
                                              << "mailto:a%20b@x.de";
        QTest::newRow("telephone") << "tel:+4930123"
                                   << "tel:+4930123";
        QTest::newRow("blank in path") << "example.com/a b"
                                       << "https://example.com/a%20b";
        QTest::newRow("umlauts") << "münchen.de/straße"
                                 << "https://xn--mnchen-3ya.de/stra%C3%9Fe";
        QTest::newRow("umlauts and a blank") << "münchen.de/a b"
                                             << "https://xn--mnchen-3ya.de/a%20b";
        QTest::newRow("lone percent") << "example.com/100%"
                                      << "https://example.com/100%25";
        QTest::newRow("braces") << "example.com/{x}"
                                << "https://example.com/%7Bx%7D";
        QTest::newRow("invalid host even encoded") << "exa mple.com" << QString();
    }
    void resolvedURL() {
        QFETCH(QString, text);
        const std::optional<QUrl> url = WidgetAction::resolvedURL(text);
        QTEST(url ? url->toString(QUrl::FullyEncoded) : QString(), "url");
    }

    void openAppTriesInOrder_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("request");
        QTest::newRow("identifier known") << "org.example.Editor"
                                          << "application /apps/editor";
        QTest::newRow("identifier unknown, name known") << "net.example.clock"
                                                        << "application /apps/clock";
        QTest::newRow("a role by its raw value") << "Terminal"
                                                 << "application /apps/terminal";
        QTest::newRow("a role nothing takes") << "music-player"
                                              << "by-name music-player";
        QTest::newRow("name") << "Editor"
                              << "application /apps/editor";
        QTest::newRow("a blank is no identifier") << "org.example.Editor x"
                                                  << "by-name org.example.Editor x";
        QTest::newRow("missing absolute path") << "/nonexistent/tool"
                                               << "by-name /nonexistent/tool";
        QTest::newRow("unknown name") << "Nothing"
                                      << "by-name Nothing";
    }
    void openAppTriesInOrder() {
        QFETCH(QString, target);
        QFETCH(QString, request);
        tw::NullWorkspace workspace;
        workspace.addApplication(QStringLiteral("org.example.Editor"), QStringLiteral("Editor"),
                                 QStringLiteral("/apps/editor"));
        workspace.addApplication(QStringLiteral("org.example.Clock"),
                                 QStringLiteral("net.example.clock"),
                                 QStringLiteral("/apps/clock"));
        workspace.addRoleApplication(tw::AppRole::terminal, QStringLiteral("/apps/terminal"));
        WidgetAction::openApp(workspace, target);
        QCOMPARE(workspace.requests(), QStringList{request});
    }

    void openAppOpensAnExistingFile() {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("notes.txt"));
        QFile(file).open(QIODevice::WriteOnly);
        tw::NullWorkspace workspace;
        WidgetAction::openApp(workspace, file);
        QCOMPARE(workspace.requests(),
                 QStringList{QStringLiteral("open ") + QUrl::fromLocalFile(file).toString()});
    }

    void runGoesByKind_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<bool>("used");
        QTest::addColumn<QStringList>("requests");
        QTest::addColumn<QString>("notice");
        QTest::newRow("url") << "moon"
                             << "clickAction=url|clickTarget= example.com "
                             << "" << true
                             << QStringList{QStringLiteral("open https://example.com")} << "";
        QTest::newRow("app") << "moon"
                             << "clickAction=app|clickTarget=Editor"
                             << "" << true << QStringList{QStringLiteral("by-name Editor")} << "";
        QTest::newRow("shortcut") << "moon"
                                  << "clickAction=shortcut|clickTarget= Focus  "
                                  << "" << true << QStringList{QStringLiteral("shortcut Focus")}
                                  << "";
        QTest::newRow("default role")
            << "calendar"
            << "-"
            << "" << true << QStringList{QStringLiteral("application /apps/calendar")} << "";
        QTest::newRow("no action") << "crypto"
                                   << "-"
                                   << "" << false << QStringList() << "";
        QTest::newRow("a role nothing takes")
            << "clock"
            << "-"
            << "" << true << QStringList()
            << "Nothing opens clocks | Install a clock app, or choose one as the default in "
               "your desktop's settings.";
        QTest::newRow("an address that cannot be one")
            << "moon"
            << "clickAction=url|clickTarget=exa mple.com"
            << "" << true << QStringList()
            << "Nothing opens “exa mple.com” | This address cannot be opened. Check the "
               "widget's click action in its settings.";
        QTest::newRow("a program that fails")
            << "moon"
            << "clickAction=app|clickTarget=Nothing"
            << "no application named Nothing" << true
            << QStringList{QStringLiteral("by-name Nothing")}
            << "Nothing opens “Nothing” | No application of that name is installed. Install it, "
               "or choose another in the widget's settings.";
    }
    void runGoesByKind() {
        QFETCH(QString, kind);
        QFETCH(QString, settings);
        QFETCH(QString, failure);
        QFETCH(QString, notice);
        tw::NullWorkspace workspace;
        workspace.addRoleApplication(tw::AppRole::calendar, QStringLiteral("/apps/calendar"));
        if (!failure.isEmpty()) {
            workspace.failWith(failure);
        }
        tw::NullNotifications notifications;
        const auto action = WidgetAction::resolved(kind, settingsFrom(settings));
        if (!notice.isEmpty()) {
            QTest::ignoreMessage(QtCriticalMsg,
                                 QRegularExpression(QStringLiteral("^action failed: .+")));
        }
        const bool used = action && WidgetAction::run(workspace, notifications, *action);
        QTEST(used, "used");
        QTEST(workspace.requests(), "requests");
        QStringList shown;
        for (const auto& message : notifications.shown()) {
            shown.append(message.title + QLatin1String(" | ") + message.body);
        }
        QCOMPARE(shown, notice.isEmpty() ? QStringList() : QStringList{notice});
    }

    void kindRawValues() {
        for (const auto kind : {WidgetActionKind::none, WidgetActionKind::app,
                                WidgetActionKind::url, WidgetActionKind::shortcut}) {
            QCOMPARE(tw::widgetActionKindFromRawValue(tw::rawValue(kind)), kind);
        }
        QCOMPARE(tw::widgetActionKindFromRawValue(u"App"), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestWidgetAction)
#include "tst_widgetaction.moc"
