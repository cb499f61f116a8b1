#include "TestRows.h"
#include "model/WidgetAction.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using tw::ResolvedAction;
using tw::WidgetAction;
using tw::WidgetSettings;
using tw::test::row;

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
    // A kind and its settings ("-" for none; "fail" makes the workspace refuse), what they
    // resolve to, and what running it does: the requests made ("-" when nothing is to run) and
    // "!" before a notice shown.
    void resolvedAndRun_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("resolved");
        QTest::addColumn<QString>("outcome");
        const char* none = "clickAction=none|clickTarget=x";
        row("default of calendar", "calendar", "-", "app calendar", "application /apps/calendar");
        row("explicit none beats the default", "calendar", none, "no action", "-");
        row("url with a blank target, not the default", "calendar",
            "clickAction=url|clickTarget=  \n", "no action", "-");
        row("target trimmed", "moon", "clickAction=url|clickTarget=  example.com\n",
            "url example.com", "open https://example.com");
        row("shortcut", "moon", "clickAction=shortcut|clickTarget= Focus  ", "shortcut Focus",
            "shortcut Focus");
        row("unknown action falls back to a role nothing takes", "clock",
            "clickAction=launch|clickTarget=x", "app clock",
            "! Nothing opens clocks | Install a clock app, or choose one as the default in your "
            "desktop's settings.");
        row("silent kind", "crypto", "-", "no action", "-");
        row("silent kind, chosen app", "crypto", "clickAction=app|clickTarget=org.gnome.Calculator",
            "app org.gnome.Calculator", "by-name org.gnome.Calculator");
        row("an address that cannot be one", "moon", "clickAction=url|clickTarget=exa mple.com",
            "url exa mple.com",
            "! Nothing opens “exa mple.com” | This address cannot be opened. Check the widget's "
            "click action in its settings.");
        row("a program that fails", "moon",
            "clickAction=app|clickTarget=Nothing|fail=no application named Nothing", "app Nothing",
            "by-name Nothing ! Nothing opens “Nothing” | No application of that name is installed. "
            "Install it, or choose another in the widget's settings.");
    }
    void resolvedAndRun() {
        QFETCH(QString, kind);
        QFETCH(QString, settings);
        QFETCH(QString, outcome);
        std::optional<WidgetSettings> given = settingsFrom(settings);
        tw::NullWorkspace workspace;
        if (given && given->contains(QStringLiteral("fail"))) {
            workspace.failWith(given->take(QStringLiteral("fail")));
        }
        workspace.addRoleApplication(tw::AppRole::calendar, QStringLiteral("/apps/calendar"));
        workspace.addRoleApplication(tw::AppRole::settings, QStringLiteral("/apps/settings"));
        workspace.addRoleApplication(tw::AppRole::systemMonitor,
                                     QStringLiteral("/apps/system-monitor"));
        tw::NullNotifications notifications;
        const auto action = WidgetAction::resolved(kind, given);
        QTEST(describe(action), "resolved");
        if (outcome.contains(QLatin1Char('!'))) {
            QTest::ignoreMessage(QtCriticalMsg,
                                 QRegularExpression(QStringLiteral("^action failed: .+")));
        }
        QStringList done = action && WidgetAction::run(workspace, notifications, *action)
                               ? workspace.requests()
                               : QStringList{QStringLiteral("-")};
        for (const auto& message : notifications.shown()) {
            done << QStringLiteral("! ") + message.title + QLatin1String(" | ") + message.body;
        }
        QCOMPARE(done.join(QLatin1Char(' ')), outcome);
    }

    void resolvedURL_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("url");
        row("blanks", " \t\n", "");
        row("bare host", "example.com", "https://example.com");
        row("trimmed", "  https://x.org/a \n", "https://x.org/a");
        row("host with port", "host:8080/path", "https://host:8080/path");
        row("other scheme kept", "ftp://files.example.org", "ftp://files.example.org");
        row("mail link with blank", "mailto:a b@x.de", "mailto:a%20b@x.de");
        row("blank in path", "example.com/a b", "https://example.com/a%20b");
        row("umlauts", "münchen.de/straße", "https://xn--mnchen-3ya.de/stra%C3%9Fe");
        row("lone percent", "example.com/100%", "https://example.com/100%25");
        row("invalid host even encoded", "exa mple.com", "");
    }
    void resolvedURL() {
        QFETCH(QString, text);
        const std::optional<QUrl> url = WidgetAction::resolvedURL(text);
        QTEST(url ? url->toString(QUrl::FullyEncoded) : QString(), "url");
    }

    void openAppTriesInOrder_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("request");
        row("identifier known", "org.example.Editor", "application /apps/editor");
        row("identifier unknown, name known", "net.example.clock", "application /apps/clock");
        row("a role by its raw value", "Terminal", "application /apps/terminal");
        row("a role nothing takes", "music-player", "by-name music-player");
        row("name", "Editor", "application /apps/editor");
        row("a blank is no identifier", "org.example.Editor x", "by-name org.example.Editor x");
        row("missing absolute path", "/nonexistent/tool", "by-name /nonexistent/tool");
        row("an existing file is opened", "<file>", "open <file>");
    }
    void openAppTriesInOrder() {
        QFETCH(QString, target);
        QFETCH(QString, request);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("notes.txt"));
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        target.replace(QStringLiteral("<file>"), file);
        request.replace(QStringLiteral("<file>"), QUrl::fromLocalFile(file).toString());
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
};

QTEST_GUILESS_MAIN(TestWidgetAction)
#include "tst_widgetaction.moc"
