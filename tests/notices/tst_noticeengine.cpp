#include "TestRows.h"
#include "notices/NoticeEngine.h"
#include "notices/NoticePolicy.h"
#include "notices/NoticeVersion.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using tw::test::row;

namespace {

const QDateTime now(QDate(2026, 5, 10), QTime(12, 0), Qt::UTC);

Notice notice(const char* json) {
    auto decoded = Notice::fromJson(QJsonDocument::fromJson(json).object());
    if (auto* error = std::get_if<QString>(&decoded)) {
        qFatal("test notice does not decode: %s", qUtf8Printable(*error));
    }
    return std::get<Notice>(decoded);
}

QString ids(const QList<Notice>& notices) {
    QStringList out;
    for (const Notice& n : notices) {
        out.append(n.id);
    }
    return out.join(QLatin1Char(','));
}

NoticeContext baseContext() {
    return NoticeContext{.channel = QStringLiteral("direct"),
                         .version = QStringLiteral("1.4.0"),
                         .language = QStringLiteral("de-AT"),
                         .daysInstalled = 10,
                         .widgetKinds = {QStringLiteral("clock"), QStringLiteral("weather")},
                         .widgetCount = 3,
                         .now = now,
                         .userAllows = true,
                         .testing = false};
}

// One eligibility question: a notice, what differs from the base context, the memory of it.
struct Eligibility {
    const char* json = "{\"id\":\"n\"}";
    std::function<void(NoticeContext&)> context = {};
    NoticeState::Record record = {};
    bool inSession = false;
    bool expected = true;
};

} // namespace

Q_DECLARE_METATYPE(Eligibility)

class TestNoticeEngine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decodesFeeds_data() {
        QTest::addColumn<QByteArray>("feed");
        // The ids that survive in order, or "!" when the document as a whole is refused.
        QTest::addColumn<QString>("expected");
        row("one good among the broken",
            QByteArray("{\"notices\":[{\"id\":\"good\"},{\"kind\":\"news\"},{\"id\":\"p\",\"kind\":"
                       "\"party\"},"
                       "{\"id\":\"q\",\"placements\":[\"popup\"]},{\"id\":\"r\",\"startsAt\":"
                       "\"tomorrow\"}]}"),
            "good");
        row("first of an id wins",
            QByteArray("{\"notices\":[{\"id\":\"a\"},{\"id\":\"b\"},{\"id\":\"a\"}]}"), "a,b");
        row("off switch", QByteArray("{\"noticesDisabled\":true,\"notices\":[{\"id\":\"a\"}]}"),
            "");
        row("off switch false",
            QByteArray("{\"noticesDisabled\":false,\"notices\":[{\"id\":\"a\"}]}"), "a");
        row("empty object", QByteArray("{}"), "");
        row("unknown keys of a future format",
            QByteArray("{\"format\":9,\"notices\":[{\"id\":\"a\",\"shape\":\"hexagon\",\"kind\":"
                       "\"tip\"}]}"),
            "a");
        row("members that are no objects",
            QByteArray("{\"notices\":[3,\"x\",null,{\"id\":\"a\"}]}"), "a");
        row("wrong type in a field loses the notice",
            QByteArray(
                "{\"notices\":[{\"id\":\"a\",\"priority\":\"high\"},{\"id\":\"b\",\"title\":\"x\"},"
                "{\"id\":\"c\",\"audience\":{\"minWidgets\":1.5}},{\"id\":\"d\",\"dismissible\":1}]"
                "}"),
            "");
        row("null reads as absent",
            QByteArray(
                "{\"notices\":[{\"id\":\"a\",\"code\":null,\"startsAt\":null,\"kind\":null}]}"),
            "a");
        row("dates with and without fractions",
            QByteArray("{\"notices\":[{\"id\":\"a\",\"startsAt\":\"2026-05-01T10:00:00Z\"},"
                       "{\"id\":\"b\",\"endsAt\":\"2026-05-01T10:00:00.250Z\"},"
                       "{\"id\":\"c\",\"startsAt\":\"2026-05-01\"},"
                       "{\"id\":\"d\",\"startsAt\":\"2026-05-01T10:00:00+02:00\"}]}"),
            "a,b,d");
        row("top-level list", QByteArray("[{\"id\":\"a\"}]"), "!");
        row("notices of the wrong type", QByteArray("{\"notices\":{\"id\":\"a\"}}"), "!");
        row("switch of the wrong type", QByteArray("{\"noticesDisabled\":\"yes\"}"), "!");
        row("half-written", QByteArray("{\"notices\":[{\"id\":\"a\"},{\"id\":\"b"), "!");
        row("empty answer", QByteArray(), "!");
        row("nested beyond the parser", QByteArray(2000, '[') + QByteArray(2000, ']'), "!");
    }
    void decodesFeeds() {
        QFETCH(QByteArray, feed);
        QFETCH(QString, expected);
        QString why;
        const std::optional<QList<Notice>> decoded = NoticeEngine::decode(feed, &why);
        QCOMPARE(decoded ? ids(*decoded) : QStringLiteral("!"), expected);
        QCOMPARE(why.isEmpty(), decoded.has_value());
    }

    void tellsWhyANoticeIsLost_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("why");
        row("empty id", QByteArray("{\"id\":\"\"}"), "empty id");
        row("unknown kind", QByteArray("{\"id\":\"a\",\"kind\":\"party\"}"), "unknown kind party");
        row("no known placement", QByteArray("{\"id\":\"a\",\"placements\":[\"popup\"]}"),
            "no known placement");
        row("bad date", QByteArray("{\"id\":\"a\",\"startsAt\":\"tomorrow\"}"),
            "bad date tomorrow");
        row("unknown action", QByteArray("{\"kind\":\"teleport\"}"), "unknown action teleport");
    }
    void tellsWhyANoticeIsLost() {
        QFETCH(QByteArray, json);
        QFETCH(QString, why);
        const QJsonObject object = QJsonDocument::fromJson(json).object();
        const auto decoded = object.contains(QStringLiteral("id"))
                                 ? std::get<QString>(Notice::fromJson(object))
                                 : std::get<QString>(Notice::Action::fromJson(object));
        QCOMPARE(decoded, why);
    }

    void decodesFieldsLeniently() {
        const Notice n = notice(
            "{\"id\":\"n\",\"placements\":[\"banner\",\"popup\",\"menu\"],\n            "
            "\"frequency\":{\"mode\":\"sometimes\",\"days\":0,\"maxImpressions\":3},\n            "
            "\"actions\":[{\"kind\":\"teleport\"},{\"kind\":\"url\",\"value\":\"https://"
            "x.org\"},\n                       "
            "{\"label\":{\"en\":\"Go\"}},{\"kind\":\"dismiss\",\"label\":{\"en\":\"Later\"}}]}");
        QCOMPARE(n.placements, (QList{Notice::Placement::banner, Notice::Placement::menu}));
        QCOMPARE(n.frequency.mode, Notice::Mode::once);
        QCOMPARE(n.frequency.days, 1);
        QCOMPARE(n.frequency.maxImpressions, 3);
        QCOMPARE(n.actions.size(), 2);
        QCOMPARE(n.actions[0].kind, Notice::Action::Kind::url);
        QCOMPARE(n.actions[1].label.value(QStringLiteral("en")), QStringLiteral("Later"));
        const Notice plain = notice("{\"id\":\"p\"}");
        QCOMPARE(plain.placements, QList{Notice::Placement::banner});
        QCOMPARE(plain.frequency.days, 7);
        QVERIFY(plain.dismissible);
    }

    void localizes_data() {
        QTest::addColumn<QString>("language");
        // "language=text" pairs split by "|".
        QTest::addColumn<QString>("map");
        QTest::addColumn<QString>("expected");
        row("region to base", "pt-BR", "pt=Olá|en=Hi", "Olá");
        row("whole code first", "pt-BR", "pt=Olá|pt-BR=Oi", "Oi");
        row("English next", "de", "fr=Salut|en=Hi", "Hi");
        row("any left", "pt-BR", "fr=Salut", "Salut");
        row("empty entries skipped", "de", "de=|fr=Salut", "Salut");
        row("nothing", "de", "", "");
    }
    void localizes() {
        QFETCH(QString, language);
        QFETCH(QString, map);
        QFETCH(QString, expected);
        Notice::Texts texts;
        for (const QString& pair : map.split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
            texts.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
        }
        QCOMPARE(Notice::localized(texts, language), expected);
    }

    void comparesVersions_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("order");
        row("trailing zero", "1.2", "1.2.0", 0);
        row("numbers not text", "1.10", "1.9", 1);
        row("suffix ignored", "2.10.1-beta", "2.10.1", 0);
        row("digits joined", "1.2b3", "1.23", 0);
        row("empty pieces dropped", "1..2", "1.2", 0);
        row("no digits is 0", "beta", "0", 0);
        row("lower", "0.9.9", "1", -1);
        row("absurdly long saturates", "99999999999999999999999", "1", 1);
    }
    void comparesVersions() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, order);
        const auto result = NoticeVersion::compare(a, b);
        QCOMPARE(result < 0 ? -1 : result > 0 ? 1 : 0, order);
    }

    void policyGatesChannels_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("channel");
        // The action kinds left, or "refused".
        QTest::addColumn<QString>("expected");
        const QByteArray acts = "\"actions\":[{\"kind\":\"url\",\"value\":\"https://x.org\"},"
                                "{\"kind\":\"pane\",\"value\":\"updates\"},{\"kind\":\"copy\"},"
                                "{\"kind\":\"pane\",\"value\":\"about\"},{\"kind\":\"dismiss\"}]";
        row("direct keeps everything", "{\"id\":\"a\"," + acts + "}", "direct",
            "url,pane,copy,pane,dismiss");
        row("elsewhere strips the way out", "{\"id\":\"a\"," + acts + "}", "store", "pane,dismiss");
        row("lock screen pane stripped",
            QByteArray("{\"id\":\"a\",\"actions\":[{\"kind\":\"pane\",\"value\":\"lockScreen\"}]}"),
            "store", "");
        row("offer refused", QByteArray("{\"id\":\"a\",\"kind\":\"offer\"}"), "store", "refused");
        row("code refused", QByteArray("{\"id\":\"a\",\"code\":\"X\"}"), "store", "refused");
        row("percent in one language",
            QByteArray("{\"id\":\"a\",\"body\":{\"de\":\"Spare 20 %\"}}"), "store", "refused");
        row("percent stays direct", QByteArray("{\"id\":\"a\",\"body\":{\"de\":\"Save 20 %\"}}"),
            "direct", "");
        row("code as a word",
            QByteArray("{\"id\":\"a\",\"title\":{\"en\":\"Our new code editor\"}}"), "store",
            "refused");
        row("codec is no code", QByteArray("{\"id\":\"a\",\"title\":{\"en\":\"A faster Codec\"}}"),
            "store", "");
        row("price word in a label",
            QByteArray("{\"id\":\"a\",\"actions\":[{\"kind\":\"dismiss\",\"label\":{\"de\":\"Zum "
                       "Angebot\"}}]}"),
            "store", "refused");
        row("currency sign", QByteArray("{\"id\":\"a\",\"title\":{\"en\":\"Only 5€\"}}"), "store",
            "refused");
    }
    void policyGatesChannels() {
        QFETCH(QByteArray, json);
        QFETCH(QString, channel);
        QFETCH(QString, expected);
        const std::optional<Notice> allowed = NoticePolicy::allowed(notice(json), channel);
        QStringList kinds;
        for (const Notice::Action& a : allowed ? allowed->actions : QList<Notice::Action>()) {
            kinds.append(rawValue(a.kind));
        }
        QCOMPARE(allowed ? kinds.join(QLatin1Char(',')) : QStringLiteral("refused"), expected);
    }

    void decidesEligibility_data() {
        QTest::addColumn<Eligibility>("c");
        const auto context = [](auto f) { return std::function<void(NoticeContext&)>(f); };
        const auto ago = [](qint64 seconds) { return now.addSecs(-seconds); };
        row("plain notice", Eligibility{});
        row("switched off",
            Eligibility{.context = context([](NoticeContext& c) { c.userAllows = false; }),
                        .expected = false});
        row("switched off while testing", Eligibility{.context = context([](NoticeContext& c) {
                                                          c.userAllows = false;
                                                          c.testing = true;
                                                      }),
                                                      .expected = false});
        row("not started",
            Eligibility{.json = "{\"id\":\"n\",\"startsAt\":\"2026-05-10T12:00:01Z\"}",
                        .expected = false});
        row("starts now",
            Eligibility{.json = "{\"id\":\"n\",\"startsAt\":\"2026-05-10T12:00:00Z\"}"});
        row("ends now", Eligibility{.json = "{\"id\":\"n\",\"endsAt\":\"2026-05-10T12:00:00Z\"}",
                                    .expected = false});
        row("other channel",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"channels\":[\"store\"]}}",
                        .expected = false});
        row("min version equal",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"minVersion\":\"1.4\"}}"});
        row("max version equal",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"maxVersion\":\"1.4.0.0\"}}"});
        row("below min version",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"minVersion\":\"1.10\"}}",
                        .expected = false});
        row("above max version",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"maxVersion\":\"1.3.9\"}}",
                        .expected = false});
        row("language base",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"languages\":[\"de\"]}}"});
        row("language whole",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"languages\":[\"de-AT\"]}}"});
        row("region asked, base given",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"languages\":[\"de-AT\"]}}",
                        .context =
                            context([](NoticeContext& c) { c.language = QStringLiteral("de"); }),
                        .expected = false});
        row("too new an installation",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"minDaysInstalled\":11}}",
                        .expected = false});
        row("days at the bounds",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"minDaysInstalled\":10,"
                                "\"maxDaysInstalled\":10}}"});
        row("has one of two widgets",
            Eligibility{.json =
                            "{\"id\":\"n\",\"audience\":{\"hasWidgets\":[\"clock\",\"stocks\"]}}",
                        .expected = false});
        row("has both",
            Eligibility{
                .json = "{\"id\":\"n\",\"audience\":{\"hasWidgets\":[\"clock\",\"weather\"]}}"});
        row("lacks fails",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"lacksWidgets\":[\"clock\"]}}",
                        .expected = false});
        row("too many widgets",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"maxWidgets\":2}}",
                        .expected = false});
        row("once, shown before",
            Eligibility{.record = {.count = 1, .last = ago(60)}, .expected = false});
        row("once, shown this session",
            Eligibility{.record = {.count = 1, .last = ago(60)}, .inSession = true});
        row("dismissed goes at once",
            Eligibility{.record = {.count = 1, .last = ago(60), .dismissed = true},
                        .inSession = true,
                        .expected = false});
        row("testing ignores dismissal",
            Eligibility{.context = context([](NoticeContext& c) { c.testing = true; }),
                        .record = {.count = 9, .last = ago(60), .dismissed = true}});
        row("testing keeps dates",
            Eligibility{.json = "{\"id\":\"n\",\"endsAt\":\"2026-05-01T00:00:00Z\"}",
                        .context = context([](NoticeContext& c) { c.testing = true; }),
                        .expected = false});
        row("testing keeps widgets",
            Eligibility{.json = "{\"id\":\"n\",\"audience\":{\"minWidgets\":4}}",
                        .context = context([](NoticeContext& c) { c.testing = true; }),
                        .expected = false});
        const char* always3 =
            "{\"id\":\"n\",\"frequency\":{\"mode\":\"always\",\"maxImpressions\":3}}";
        row("third session", Eligibility{.json = always3, .record = {.count = 2, .last = ago(9)}});
        row("fourth session", Eligibility{.json = always3,
                                          .record = {.count = 3, .last = ago(9)},
                                          .expected = false});
        const char* weekly = "{\"id\":\"n\",\"frequency\":{\"mode\":\"everyDays\",\"days\":7}}";
        row("six days 23 hours", Eligibility{.json = weekly,
                                             .record = {.count = 1, .last = ago(7 * 86400 - 3600)},
                                             .expected = false});
        row("exactly seven days",
            Eligibility{.json = weekly, .record = {.count = 1, .last = ago(7 * 86400)}});
        row("every launch",
            Eligibility{.json = "{\"id\":\"n\",\"frequency\":{\"mode\":\"everyLaunch\"}}",
                        .record = {.count = 40, .last = ago(1)}});
    }
    void decidesEligibility() {
        QFETCH(Eligibility, c);
        NoticeContext context = baseContext();
        if (c.context) {
            c.context(context);
        }
        NoticeState state;
        state.records.insert(QStringLiteral("n"), c.record);
        const QSet<QString> session =
            c.inSession ? QSet<QString>{QStringLiteral("n")} : QSet<QString>{};
        QCOMPARE(NoticeEngine::isEligible(notice(c.json), context, state, session), c.expected);
    }

    void ordersAndFiltersByPlacement() {
        const auto decoded = NoticeEngine::decode(
            "{\"notices\":[\n            {\"id\":\"none\"},\n            "
            "{\"id\":\"z-yesterday\",\"startsAt\":\"2026-05-09T08:00:00Z\"},\n            "
            "{\"id\":\"today\",\"startsAt\":\"2026-05-10T08:00:00Z\"},\n            "
            "{\"id\":\"a-yesterday\",\"startsAt\":\"2026-05-09T08:00:00Z\"},\n            "
            "{\"id\":\"urgent\",\"priority\":5},\n            "
            "{\"id\":\"menu-only\",\"placements\":[\"menu\"]},\n            "
            "{\"id\":\"offer\",\"kind\":\"offer\"}]}");
        QVERIFY(decoded);
        const NoticeContext direct = baseContext();
        QCOMPARE(ids(NoticeEngine::notices(*decoded, Notice::Placement::banner, direct, {}, {})),
                 QStringLiteral("urgent,today,a-yesterday,z-yesterday,none,offer"));
        NoticeContext store = direct;
        store.channel = QStringLiteral("store");
        QCOMPARE(ids(NoticeEngine::notices(*decoded, Notice::Placement::banner, store, {}, {})),
                 QStringLiteral("urgent,today,a-yesterday,z-yesterday,none"));
        QCOMPARE(ids(NoticeEngine::notices(*decoded, Notice::Placement::menu, direct, {}, {})),
                 QStringLiteral("menu-only"));
    }

    void stateRemembersAndForgets() {
        NoticeState state;
        state.noteShown(QStringLiteral("kept"), now.addDays(-400));
        state.noteShown(QStringLiteral("recent"), now.addDays(-119));
        state.noteShown(QStringLiteral("old"), now.addDays(-120));
        state.noteDismissed(QStringLiteral("never-shown"));
        state.noteShown(QStringLiteral("recent"), now.addDays(-119));
        const auto back = NoticeState::fromJson(state.toJson());
        QVERIFY(back);
        QCOMPARE(*back, state);
        QCOMPARE(back->record(QStringLiteral("recent")).count, 2);
        state.prune({QStringLiteral("kept")}, now, 120);
        QCOMPARE(state.records.keys(),
                 QStringList({QStringLiteral("kept"), QStringLiteral("recent")}));
        QVERIFY(!NoticeState::fromJson("[1]"));
        const auto lenient =
            NoticeState::fromJson("{\"records\":{\"a\":3,\"b\":{\"count\":\"x\"}}}");
        QCOMPARE(lenient->records.keys(), QStringList{QStringLiteral("b")});
    }
};

QTEST_GUILESS_MAIN(TestNoticeEngine)
#include "tst_noticeengine.moc"
