#include "TestRows.h"
#include "updates/ReleaseFeed.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

QString versions(const ReleaseFeed& feed) {
    QStringList list;
    for (const Release& release : feed.releases) {
        list << release.version.toString();
    }
    return list.join(QLatin1Char(' '));
}

QByteArray manyReleases(int count) {
    QJsonArray releases;
    for (int i = 0; i < count; ++i) {
        releases.append(QJsonObject{{QStringLiteral("version"), QStringLiteral("0.%1.0").arg(i)}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("releases"), releases}}).toJson();
}

} // namespace

class TestReleaseFeed : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decode_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("versions"); // "refused" when nothing is decoded
        QTest::addColumn<QString>("notes");    // of the newest, joined by "|"
        QTest::addColumn<QString>("page");     // of the newest
        row("whole",
            QByteArray("{\"format\":1,\"releases\":[{\"version\":\"0.2.0\",\"date\":\"2026-12-01\","
                       "\"url\":\"https://tarnwick.com/releases/0.2.0\","
                       "\"notes\":[\"Faster tiles\",\"Fewer bugs\"]}]}"),
            "en", "0.2.0", "Faster tiles|Fewer bugs", "https://tarnwick.com/releases/0.2.0");
        row("a future form adds members",
            QByteArray(R"({"format":7,"channels":{},"releases":[)"
                       R"({"version":"1.0.0","notes":["One"],"signature":"x","assets":[1,2]}]})"),
            "en", "1.0.0", "One", "");
        row("sorted newest first, unreadable dropped",
            QByteArray(
                R"({"releases":[)"
                R"({"version":"0.2.0"},{"version":"1.0"},{"version":7},{"version":"banana"},)"
                R"({"notes":["no version"]},"text",null,{"version":"0.10.0"}]})"),
            "en", "1.0.0 0.10.0 0.2.0", "", "");
        row("a version twice: the first stands",
            QByteArray(
                R"({"releases":[)"
                R"({"version":"1.0.0","notes":["first"]},{"version":"v1.0.0","notes":["second"]}]})"),
            "en", "1.0.0", "first", "");
        row("notes as text with bullets and blank lines",
            QByteArray(R"({"releases":[)"
                       R"({"version":"1.0.0","notes":"- One\n\n* Two\n  Three  "}]})"),
            "en", "1.0.0", "One|Two|Three", "");
        row("notes by language, regional falls back",
            QByteArray(R"({"releases":[)"
                       R"({"version":"1.0.0","notes":{"en":["Hello"],"de":["Hallo"]}}]})"),
            "de-CH", "1.0.0", "Hallo", "");
        row("notes by language, unknown falls back to English",
            QByteArray(R"({"releases":[)"
                       R"({"version":"1.0.0","notes":{"fr":["Salut"],"en":["Hello"]}}]})"),
            "ja", "1.0.0", "Hello", "");
        row("wrong types are absent",
            QByteArray(R"({"url":5,"releases":[)"
                       R"({"version":"1.0.0","notes":5,"date":false,"url":["x"],"title":{}}]})"),
            "en", "1.0.0", "", "");
        row("only web pages are links",
            QByteArray(R"({"releases":[)"
                       R"({"version":"1.0.0","url":"javascript:void"}]})"),
            "en", "1.0.0", "", "");
        row("an empty list", QByteArray(R"({"releases":[]})"), "en", "", "", "");
        row("no list", QByteArray(R"({"version":"1.0.0"})"), "en", "refused", "", "");
        row("a list alone", QByteArray(R"([{"version":"1.0.0"}])"), "en", "refused", "", "");
        row("an error page", QByteArray("<html>502 Bad Gateway</html>"), "en", "refused", "", "");
        row("half written", QByteArray("{\"releases\":[{\"version\":\"1.0.0\",\"no"), "en",
            "refused", "", "");
        row("empty", QByteArray(), "en", "refused", "", "");
        row("too large", QByteArray(R"({"releases":[]})") + QByteArray(ReleaseFeed::maxBytes, ' '),
            "en", "refused", "", "");
    }
    void decode() {
        QFETCH(QByteArray, body);
        QFETCH(QString, language);
        QFETCH(QString, versions);
        QFETCH(QString, notes);
        QFETCH(QString, page);
        const std::optional<ReleaseFeed> feed = ReleaseFeed::fromAnswer(body, language);
        QCOMPARE(feed ? ::versions(*feed) : QStringLiteral("refused"), versions);
        if (feed && !feed->releases.isEmpty()) {
            QCOMPARE(feed->releases.first().notes.join(QLatin1Char('|')), notes);
            QCOMPARE(feed->releases.first().page.toString(), page);
        }
    }

    void capsHold() {
        const auto feed = ReleaseFeed::fromAnswer(manyReleases(400), QString());
        QCOMPARE(feed->releases.size(), ReleaseFeed::maxReleases);
        QCOMPARE(feed->releases.first().version.toString(), QStringLiteral("0.399.0"));

        QJsonArray notes;
        for (int i = 0; i < 100; ++i) {
            notes.append(QString(5000, QLatin1Char('x')));
        }
        const QJsonObject release{{QStringLiteral("version"), QStringLiteral("1.0.0")},
                                  {QStringLiteral("notes"), notes}};
        const Release read = Release::fromJson(release, QString()).value();
        QCOMPARE(read.notes.size(), Release::maxNotes);
        QCOMPARE(read.notes.first().size(), Release::maxNoteLength);
        // What the service keeps between runs reads back the same.
        QCOMPARE(Release::fromJson(read.toJson(), QString()), read);
    }

    // Which versions a running build is offered: pre-releases only to pre-release builds.
    void offered_data() {
        QTest::addColumn<QString>("running");
        QTest::addColumn<QString>("newest");
        QTest::addColumn<QString>("between"); // running (exclusive) to newest (inclusive)
        row("release build skips a newer pre-release", "1.0.0", "1.1.0", "1.1.0 1.0.1");
        row("pre-release build takes it", "1.0.0-beta.1", "2.0.0-rc.1",
            "2.0.0-rc.1 1.1.0 1.0.1 1.0.0 1.0.0-beta.2");
        row("up to date", "1.1.0", "1.1.0", "");
        row("ahead of the list", "3.0.0", "1.1.0", "");
    }
    void offered() {
        QFETCH(QString, running);
        QFETCH(QString, newest);
        QFETCH(QString, between);
        const auto feed = ReleaseFeed::fromAnswer(
            QByteArray(
                R"({"releases":[)"
                R"({"version":"1.0.0"},{"version":"1.0.1"},{"version":"1.1.0"},{"version":"2.0.0-rc.1"},)"
                R"({"version":"1.0.0-beta.2"}]})"),
            QString());
        const SemanticVersion version = SemanticVersion::parse(running).value();
        const std::optional<Release> found = feed->newest(version);
        QCOMPARE(found->version.toString(), newest);
        QStringList list;
        for (const Release& release : feed->between(version, found->version)) {
            list << release.version.toString();
        }
        QCOMPARE(list.join(QLatin1Char(' ')), between);
    }

    void shippedNotesNameThisVersion() {
        const ReleaseFeed shipped = ReleaseFeed::shipped(QStringLiteral("en"));
        const auto running = SemanticVersion::parse(QStringLiteral(TARNWICK_VERSION));
        QVERIFY(running);
        QVERIFY(
            std::any_of(shipped.releases.begin(), shipped.releases.end(), [&](const Release& r) {
                return r.version == *running && !r.notes.isEmpty();
            }));
    }
};

QTEST_GUILESS_MAIN(TestReleaseFeed)
#include "tst_releasefeed.moc"
