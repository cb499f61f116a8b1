#include "ManualClock.h"
#include "SessionBusMock.h"
#include "platform/linux/MprisMediaPlayers.h"
#include "platform/linux/MprisProperties.h"

#include <QDBusConnection>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace tw {

namespace {

// tests/support/fake_mpris_player.py on the private bus, driven through its stdin.
class FakePlayer {
public:
    FakePlayer(const QString& name, const QByteArray& state) {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        {QStringLiteral(QT_TESTCASE_SOURCEDIR "/../support/fake_mpris_player.py"),
                         name, QStringLiteral("--json"), QString::fromUtf8(state)});
        m_ready = awaitLine("ready");
    }
    ~FakePlayer() { end(); }
    FakePlayer(const FakePlayer&) = delete;
    FakePlayer& operator=(const FakePlayer&) = delete;

    bool isReady() const { return m_ready; }
    // A command line; true once the player has carried it out.
    bool command(const QByteArray& line) {
        m_process.write(line + '\n');
        return awaitLine("done " + line.left(line.indexOf(' ')));
    }
    bool awaitLine(const QByteArray& line) {
        return QTest::qWaitFor(
            [&] {
                m_output += m_process.readAllStandardOutput();
                return m_output.split('\n').contains(line);
            },
            10000);
    }
    void end() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(3000);
        }
    }

private:
    QProcess m_process;
    QByteArray m_output;
    bool m_ready = false;
};

// Not a raw string: moc takes the "//" of a URL in one for a comment.
const QByteArray song = "{\"PlaybackStatus\": \"Playing\", \"Position\": 83000000, \"Metadata\": {"
                        "\"xesam:title\": \"Midnight\", \"xesam:artist\": [\"Owls\", \"Moon\"], "
                        "\"xesam:album\": \"Dreams\", \"mpris:length\": 243000000, "
                        "\"mpris:artUrl\": \"file:///tmp/cover.png\", "
                        "\"mpris:trackid\": {\"sig\": \"o\", \"value\": \"/t/1\"}}}";
const QByteArray paused = R"({"PlaybackStatus": "Paused", "Metadata": {
    "xesam:title": "Quiet", "xesam:artist": ["Calm"], "mpris:length": 100000000}})";

const QString alpha = QStringLiteral("org.mpris.MediaPlayer2.alpha");
const QString beta = QStringLiteral("org.mpris.MediaPlayer2.beta");

} // namespace

// The real reader against small players of our own on a private session bus.
class TestMprisMediaPlayers : public QObject {
    Q_OBJECT
private:
    SessionBusMock m_bus;
    test::ManualClock m_clock;
    std::unique_ptr<MprisMediaPlayers> m_players;

    std::optional<MediaPlayerState> find(const QString& id) const {
        for (const MediaPlayerState& p : m_players->players()) {
            if (p.source.id == id) {
                return p;
            }
        }
        return std::nullopt;
    }
    QString title(const QString& id) const {
        const auto p = find(id);
        return p ? p->info.title : QStringLiteral("<gone>");
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void init() {
        m_players = std::make_unique<MprisMediaPlayers>(QDBusConnection::sessionBus(), m_clock);
        m_players->setWatching(true);
    }
    void cleanup() { m_players.reset(); }

    // Players found at the start and appearing later; one stops, one leaves the bus.
    void twoPlayersOneStopsOneLeaves() {
        FakePlayer a(QStringLiteral("alpha"), song);
        QVERIFY(a.isReady());
        QTRY_COMPARE(title(alpha), QStringLiteral("Midnight"));
        FakePlayer b(QStringLiteral("beta"), paused);
        QVERIFY(b.isReady());
        QTRY_COMPARE(title(beta), QStringLiteral("Quiet"));
        const MediaPlayerState first = *find(alpha);
        QCOMPARE(first.source.name, QStringLiteral("Alpha"));
        QCOMPARE(first.info.artist, QStringLiteral("Owls, Moon"));
        QCOMPARE(first.info.duration, 243.0);
        QVERIFY(first.info.isPlaying && first.info.position >= 83 && first.info.position < 90);
        QCOMPARE(first.artUrl, QUrl(QStringLiteral("file:///tmp/cover.png")));
        QVERIFY(first.canPause && first.canGoNext);
        QCOMPARE(m_players->players().first().source.id, alpha);

        QVERIFY(a.command(R"(set {"PlaybackStatus": "Stopped"})"));
        QTRY_COMPARE(title(alpha), QString());
        b.end();
        QTRY_COMPARE(title(beta), QStringLiteral("<gone>"));
        QVERIFY(find(alpha).has_value());
    }

    // A new track starts at nought; a seek moves the position; a pause freezes it.
    void followsTracksSeeksAndPauses() {
        FakePlayer a(QStringLiteral("alpha"), song);
        QVERIFY(a.isReady());
        QTRY_COMPARE(title(alpha), QStringLiteral("Midnight"));
        m_clock.advance(std::chrono::seconds(30));
        QVERIFY(a.command(R"(set {"Metadata": {"xesam:title": "Dawn", "mpris:length": 5000000}})"));
        QTRY_COMPARE(title(alpha), QStringLiteral("Dawn"));
        QCOMPARE(find(alpha)->changedAt, m_clock.now());
        QVERIFY(find(alpha)->info.position < 1);
        QVERIFY(a.command("seeked 42000000"));
        QTRY_VERIFY(qAbs(find(alpha)->info.position - 42) < 1);
        QVERIFY(a.command(R"(set {"PlaybackStatus": "Paused"})"));
        QTRY_VERIFY(!find(alpha)->info.isPlaying);
    }

    // Whatever a player puts in its metadata, the reading is blank where it makes no sense.
    void garbageMetadata_data() {
        QTest::addColumn<QByteArray>("metadata");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("artist");
        QTest::addColumn<double>("duration");
        QTest::addColumn<QString>("artUrl");
        QTest::newRow("wrong types")
            << QByteArray(
                   R"({"xesam:title": 42, "xesam:artist": [1, 2], "mpris:length": "long",
                "mpris:artUrl": true})")
            << ""
            << "" << -1.0 << "";
        QTest::newRow("artist as one string, length as a double")
            << QByteArray(R"({"xesam:title": "T", "xesam:artist": "Solo", "mpris:length": 2.5e6})")
            << "T"
            << "Solo" << 2.5 << "";
        QTest::newRow("length below nought, beyond a week, as an int32")
            << QByteArray(R"({"xesam:title": "T", "mpris:length": -5})") << "T"
            << "" << -1.0 << "";
        QTest::newRow("length beyond a week")
            << QByteArray(R"({"xesam:title": "T", "mpris:length": 900000000000000})") << "T"
            << "" << -1.0 << "";
        QTest::newRow("length as uint32")
            << QByteArray(R"({"xesam:title": "T", "mpris:length": {"sig": "u", "value": 3000000}})")
            << "T"
            << "" << 3.0 << "";
        QTest::newRow("only web and file covers")
            << QByteArray(R"js({"xesam:title": "T", "mpris:artUrl": "javascript:alert(1)"})js")
            << "T"
            << "" << -1.0 << "";
        QTest::newRow("a web cover")
            << QByteArray("{\"xesam:title\": \"T\", \"mpris:artUrl\": \"https://img.test/a.jpg\"}")
            << "T"
            << "" << -1.0 << "https://img.test/a.jpg";
        QTest::newRow("lines and blanks folded, nested variants read")
            << QByteArray(R"({"xesam:title": "  two\nlines ", "xesam:artist": ["", " A "],
                          "xesam:album": {"sig": "v", "value": "x"}})")
            << "two lines"
            << "A" << -1.0 << "";
        QTest::newRow("a huge title is cut")
            << QByteArray(R"({"xesam:title": ")" + QByteArray(100000, 'x') + R"("})")
            << QString(MprisProperties::maxTextLength, QLatin1Char('x')) << "" << -1.0 << "";
    }
    void garbageMetadata() {
        QFETCH(QByteArray, metadata);
        QFETCH(QString, title);
        QFETCH(QString, artist);
        QFETCH(double, duration);
        QFETCH(QString, artUrl);
        FakePlayer a(QStringLiteral("alpha"), R"({"PlaybackStatus": "Paused"})");
        QVERIFY(a.isReady());
        QTRY_VERIFY(find(alpha).has_value());
        QSignalSpy changed(m_players.get(), &MediaPlayers::changed);
        QVERIFY(a.command(R"(set {"Metadata": )" + metadata.replace('\n', ' ') + "}"));
        QTRY_VERIFY(changed.count() > 0);
        const MediaPlayerState p = *find(alpha);
        QCOMPARE(p.info.title, title);
        QCOMPARE(p.info.artist, artist);
        QCOMPARE(p.info.duration, duration);
        QCOMPARE(p.artUrl.toString(), artUrl);
    }

    // Commands travel without waiting: a player that hangs on one does not stop the others being
    // followed, and when it vanishes mid-call it is simply gone.
    void aPlayerVanishesMidCall() {
        FakePlayer a(QStringLiteral("alpha"), song);
        FakePlayer b(QStringLiteral("beta"), paused);
        QVERIFY(a.isReady() && b.isReady());
        QTRY_VERIFY(find(alpha) && find(beta) && find(beta)->info.hasInfo());
        m_players->send(beta, MediaCommand::playPause);
        QVERIFY(b.awaitLine("called PlayPause"));
        QTRY_VERIFY(find(beta)->info.isPlaying);

        QVERIFY(a.command("hang 30"));
        m_players->send(alpha, MediaCommand::nextTrack);
        QVERIFY(a.awaitLine("called Next"));
        m_players->refresh();
        QVERIFY(b.command(R"(set {"Metadata": {"xesam:title": "Later"}})"));
        QTRY_COMPARE(title(beta), QStringLiteral("Later"));
        a.end();
        QTRY_COMPARE(title(alpha), QStringLiteral("<gone>"));
        m_players->send(alpha, MediaCommand::playPause);
    }

    // Not watched: nothing kept, nothing followed.
    void stopsWhenNotWatched() {
        FakePlayer a(QStringLiteral("alpha"), song);
        QVERIFY(a.isReady());
        QTRY_VERIFY(find(alpha).has_value());
        m_players->setWatching(false);
        QVERIFY(m_players->players().isEmpty());
        QSignalSpy changed(m_players.get(), &MediaPlayers::changed);
        QVERIFY(a.command(R"(set {"Metadata": {"xesam:title": "Unseen"}})"));
        QTest::qWait(200);
        QCOMPARE(changed.count(), 0);
        m_players->setWatching(true);
        QTRY_COMPARE(title(alpha), QStringLiteral("Unseen"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestMprisMediaPlayers)
#include "tst_mprismediaplayers.moc"
