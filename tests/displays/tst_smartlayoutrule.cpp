#include "DisplayFixtures.h"
#include "TestRows.h"
#include "displays/SmartLayoutRuleResolver.h"

#include <QJsonDocument>
#include <QTest>

namespace tw {

using namespace test;

namespace {

// "schedule 1320..420", "application org.Editor", "display id/Name", then "off" for a disabled
// rule and "->n" for its profile (1 unless given); rules separated by ";".
QList<SmartLayoutRule> rulesOf(const QString& text) {
    QList<SmartLayoutRule> rules;
    int n = 0;
    for (const QString& one : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList words = one.simplified().split(QLatin1Char(' '));
        SmartLayoutRule rule;
        rule.id = widgetId(++n);
        rule.name = QStringLiteral("rule %1").arg(n);
        rule.profileID = widgetId(100 + 1);
        rule.trigger = *SmartLayoutRule::triggerFromRawValue(words.at(0));
        const QString what = words.value(1);
        rule.startMinute = what.section(QStringLiteral(".."), 0, 0).toInt();
        rule.endMinute = what.section(QStringLiteral(".."), 1, 1).toInt();
        if (rule.trigger == SmartLayoutRule::Trigger::application) {
            rule.applicationBundleID = what;
        }
        if (rule.trigger == SmartLayoutRule::Trigger::display) {
            rule.displayID = what.section(QLatin1Char('/'), 0, 0);
            rule.displayName = what.section(QLatin1Char('/'), 1);
        }
        for (const QString& word : words.mid(2)) {
            if (word == QLatin1String("off")) {
                rule.isEnabled = false;
            } else if (word.startsWith(QLatin1String("->"))) {
                rule.profileID = widgetId(100 + word.mid(2).toInt());
            }
        }
        rules << rule;
    }
    return rules;
}

} // namespace

class TestSmartLayoutRule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The number of the rule that decides, 0 for none. Profile 9 no longer exists.
    void matchingRule_data() {
        QTest::addColumn<QString>("rules");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("application");
        QTest::addColumn<int>("expected");
        row("window, inside", "schedule 540..1020", "09:00", "", 1);
        row("window, end excluded", "schedule 540..1020", "17:00", "", 0);
        row("window, before", "schedule 540..1020", "08:59", "", 0);
        row("across midnight, late", "schedule 1320..420", "23:59", "", 1);
        row("across midnight, early", "schedule 1320..420", "06:59", "", 1);
        row("across midnight, end", "schedule 1320..420", "07:00", "", 0);
        row("across midnight, midday", "schedule 1320..420", "12:00", "", 0);
        row("equal: all day", "schedule 600..600", "03:00", "", 1);
        row("out of range clamps", "schedule -50..5000", "23:58", "", 1);
        row("out of range, last minute", "schedule -50..5000", "23:59", "", 0);
        row("application, other case", "application org.Editor", "12:00", "ORG.editor", 1);
        row("application, other app", "application org.Editor", "12:00", "org.Mail", 0);
        row("application, none in front", "application org.Editor", "12:00", "-", 0);
        row("application, blank rule", "application  ", "12:00", "", 0);
        row("display by id", "display HDMI-1/", "12:00", "", 1);
        row("display by name, folded", "display other/ECRAN", "12:00", "", 1);
        row("display absent", "display other/Projector", "12:00", "", 0);
        row("disabled", "schedule 0..0 off; display HDMI-1/", "12:00", "", 2);
        row("first wins, whatever kind", "display HDMI-1/; schedule 0..0", "12:00", "", 1);
        row("profile gone", "schedule 0..0 ->9; application a", "12:00", "a", 2);
    }
    void matchingRule() {
        QFETCH(QString, rules);
        QFETCH(QString, time);
        QFETCH(QString, application);
        QFETCH(int, expected);
        SmartLayoutContext context{
            .date = QDateTime(QDate(2026, 5, 1), QTime::fromString(time, QStringLiteral("HH:mm")),
                              Qt::UTC),
            .activeApplicationBundleID =
                application == QLatin1String("-") ? std::nullopt : std::optional(application),
            .displays = displaysOf(QStringLiteral("HDMI-1@0,0,1920x1080*=Écran")),
        };
        const auto match =
            SmartLayoutRuleResolver::matchingRule(rulesOf(rules), {widgetId(101)}, context);
        QCOMPARE(match ? match->id : QUuid(), expected == 0 ? QUuid() : widgetId(expected));
    }

    void noDisplaysNoMatch() {
        const SmartLayoutContext context{
            .date = QDateTime::currentDateTime(), .activeApplicationBundleID = {}, .displays = {}};
        QVERIFY(!rulesOf(QStringLiteral("display HDMI-1/Écran")).at(0).matches(context));
    }

    // A rule missing any key is dropped alone; the rest of the file stays.
    void decode_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("rules");
        const QByteArray good = QJsonDocument(rulesOf(QStringLiteral("display a/b"))[0].toJson())
                                    .toJson(QJsonDocument::Compact);
        QByteArray noName = good;
        noName.replace("\"name\"", "\"nom\"");
        QByteArray badTrigger = good;
        badTrigger.replace("\"display\"", "\"weekday\"");
        row("two good", "{\"rules\":[" + good + "," + good + "]}", 2);
        row("one without a name", "{\"rules\":[" + noName + "," + good + "]}", 1);
        row("unknown trigger", "{\"rules\":[" + badTrigger + "]}", 0);
        row("no rules key", QByteArray("{}"), 0);
        row("not an object", QByteArray("[]"), -1);
    }
    void decode() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, rules);
        const auto document = SmartLayoutRulesDocument::fromJson(bytes);
        QCOMPARE(document ? document->rules.size() : -1, rules);
        if (document && rules > 0) {
            QCOMPARE(SmartLayoutRulesDocument::fromJson(QJsonDocument(document->toJson()).toJson()),
                     document);
        }
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestSmartLayoutRule)
#include "tst_smartlayoutrule.moc"
