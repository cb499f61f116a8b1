#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedMediaPlayers.h"
#include "ScriptedReadings.h"
#include "net/QtHttpClient.h"
#include "readings/MediaNowPlayingService.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace tw {

using test::LoopbackHttpServer;

namespace {

using namespace std::chrono_literals;

const QDateTime t0(QDate(2026, 3, 14), QTime(9, 0));

// A player heard and changed `ago` seconds before t0.
MediaPlayerState player(const char* id, const char* title, bool playing, int changedAgo,
                        int heardAgo = -1, double duration = 200, double position = 180) {
    MediaPlayerState p;
    p.source = {.id = QLatin1String(id), .name = QLatin1String(id), .desktopEntry = {}};
    p.info = {.title = QLatin1String(title),
              .artist = QStringLiteral("Artist"),
              .album = {},
              .isPlaying = playing,
              .duration = duration,
              .position = position,
              .positionDate = t0.addSecs(-(heardAgo < 0 ? changedAgo : heardAgo))};
    p.changedAt = t0.addSecs(-changedAgo);
    p.heardAt = t0.addSecs(-(heardAgo < 0 ? changedAgo : heardAgo));
    p.canPlay = p.canPause = true;
    return p;
}

} // namespace

class TestMediaNowPlayingService : public QObject {
    Q_OBJECT
private:
    LoopbackHttpServer m_server;
    test::ManualClock m_clock{t0};
    test::ManualScheduler m_scheduler;
    test::InlineRunner m_runner;
    test::ScriptedMediaPlayers m_players;
    std::unique_ptr<QtHttpClient> m_http;
    std::unique_ptr<MediaNowPlayingService> m_service;

    qsizetype requestsFor(const QByteArray& path) const {
        return std::count_if(m_server.requests().cbegin(), m_server.requests().cend(),
                             [&](const auto& request) { return request.target == path; });
    }
    // One playing track per id, with its cover at `url`.
    void play(const QString& title, const QUrl& url) {
        MediaPlayerState p = player("a", "", true, 0);
        p.info.title = title;
        p.artUrl = url;
        m_players.set({p});
    }

private Q_SLOTS:
    void init() {
        m_clock.setNow(t0);
        m_players.list.clear();
        m_players.sent.clear();
        m_players.refreshes = 0;
        m_http = std::make_unique<QtHttpClient>(m_scheduler);
        m_service = std::make_unique<MediaNowPlayingService>(m_players, *m_http, m_runner, m_clock);
        m_service->setActive(true);
    }
    void cleanup() {
        m_service.reset();
        m_http.reset();
    }

    // Which player the tile believes; "" for none, a trailing "-" for a playing not believed.
    void decides_data() {
        QTest::addColumn<QList<MediaPlayerState>>("players");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("preferred");
        QTest::newRow("nobody") << QList<MediaPlayerState>() << ""
                                << "";
        QTest::newRow("20 s left, heard 319 s ago: still plays")
            << QList{player("a", "A", true, 319)} << "a"
            << "";
        QTest::newRow("20 s left, heard 321 s ago: stale")
            << QList{player("a", "A", true, 321)} << "a-"
            << "";
        QTest::newRow("unknown length: stale after five minutes")
            << QList{player("a", "A", true, 301, -1, -1, 10)} << "a-"
            << "";
        QTest::newRow("position past the length: stale after five minutes")
            << QList{player("a", "A", true, 301, -1, 100, 150)} << "a-"
            << "";
        QTest::newRow("confirmed lately though long unchanged")
            << QList{player("a", "A", true, 4000, 10)} << "a"
            << "";
        QTest::newRow("a player that plays beats a later paused one")
            << QList{player("a", "A", true, 60), player("b", "B", false, 5)} << "a"
            << "";
        QTest::newRow("two paused: the last changed")
            << QList{player("a", "A", false, 60), player("b", "B", false, 5)} << "b"
            << "";
        QTest::newRow("equal dates: the first")
            << QList{player("a", "A", false, 5), player("b", "B", false, 5)} << "a"
            << "";
        QTest::newRow("a stale playing counts as paused")
            << QList{player("a", "A", true, 400), player("b", "B", false, 350)} << "b"
            << "";
        QTest::newRow("a stopped player has nothing; the paused one shows")
            << QList{player("a", "", false, 1), player("b", "B", false, 90)} << "b"
            << "";
        QTest::newRow("silent for an hour and a half: forgotten")
            << QList{player("a", "A", false, 5401)} << ""
            << "";
        QTest::newRow("the preferred one shows though another plays")
            << QList{player("a", "A", true, 60), player("b", "B", false, 5)} << "b"
            << "b";
        QTest::newRow("a preferred one that is not there changes nothing")
            << QList{player("a", "A", true, 60), player("b", "B", false, 5)} << "a"
            << "c";
        QTest::newRow("a preferred one with nothing to show is passed over")
            << QList{player("a", "", false, 1), player("b", "B", false, 90)} << "b"
            << "a";
    }
    void decides() {
        QFETCH(QList<MediaPlayerState>, players);
        QFETCH(QString, shown);
        QFETCH(QString, preferred);
        const std::optional<MediaPlayerState> winner =
            MediaNowPlayingService::decide(players, t0, preferred);
        const QString got =
            !winner ? QString()
                    : winner->source.id + (players.first().info.isPlaying &&
                                                   winner->source.id == players.first().source.id &&
                                                   !winner->info.isPlaying
                                               ? QStringLiteral("-")
                                               : QString());
        QCOMPARE(got, shown);
    }

    void countsOnBetweenWords_data() {
        QTest::addColumn<bool>("playing");
        QTest::addColumn<double>("duration");
        QTest::addColumn<double>("position");
        QTest::addColumn<int>("later");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<double>("progress");
        QTest::newRow("playing") << true << 200.0 << 50.0 << 10 << 60.0 << 0.3;
        QTest::newRow("paused stands") << false << 200.0 << 50.0 << 10 << 50.0 << 0.25;
        QTest::newRow("never past the end") << true << 200.0 << 190.0 << 60 << 200.0 << 1.0;
        QTest::newRow("a date ahead counts nothing")
            << true << 200.0 << 50.0 << -30 << 50.0 << 0.25;
        QTest::newRow("unknown length") << true << -1.0 << 50.0 << 10 << 60.0 << 0.0;
        QTest::newRow("unknown position") << true << 200.0 << -1.0 << 10 << 0.0 << 0.0;
    }
    void countsOnBetweenWords() {
        QFETCH(bool, playing);
        QFETCH(double, duration);
        QFETCH(double, position);
        QFETCH(int, later);
        QFETCH(double, elapsed);
        QFETCH(double, progress);
        const MediaNowPlayingInfo info{.title = QStringLiteral("T"),
                                       .artist = {},
                                       .album = {},
                                       .isPlaying = playing,
                                       .duration = duration,
                                       .position = position,
                                       .positionDate = t0};
        QCOMPARE(info.elapsed(t0.addSecs(later)), elapsed);
        QCOMPARE(info.progress(t0.addSecs(later)), progress);
    }

    // The covers of nine tracks, then the first again: one request each, the first evicted.
    void coversFromTheWebOncePerTrackEightKept() {
        for (int i = 0; i < 9; ++i) {
            m_server.route(QStringLiteral("/art%1.png").arg(i).toUtf8(),
                           LoopbackHttpServer::ok(QByteArray("png") + QByteArray::number(i)));
        }
        for (int i = 0; i < 9; ++i) {
            play(QStringLiteral("Song %1").arg(i),
                 m_server.url(QStringLiteral("/art%1.png").arg(i)));
            QTRY_COMPARE(m_service->nowPlaying().artwork,
                         QByteArray("png") + QByteArray::number(i));
        }
        play(QStringLiteral("Song 1"), m_server.url(QStringLiteral("/art1.png")));
        QCOMPARE(m_service->nowPlaying().artwork, QByteArray("png1"));
        play(QStringLiteral("Song 0"), m_server.url(QStringLiteral("/art0.png")));
        QTest::qWait(50);
        QVERIFY(m_service->nowPlaying().artwork.isEmpty());
        QCOMPARE(requestsFor("/art0.png"), 1);
        QCOMPARE(requestsFor("/art1.png"), 1);
    }

    // A cover that fails is not asked for again in this run; the track shows without one.
    void failedCoverNotRetried_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        QTest::newRow("404") << LoopbackHttpServer::status(404);
        QTest::newRow("too large")
            << LoopbackHttpServer::huge(MediaNowPlayingService::maxArtBytes + 1);
        QTest::newRow("garbage") << LoopbackHttpServer::garbage();
    }
    void failedCoverNotRetried() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        const QByteArray path = "/bad-" + QByteArray(QTest::currentDataTag()).toPercentEncoding();
        m_server.route(path, answer);
        play(QStringLiteral("Bad"), m_server.url(QString::fromUtf8(path)));
        // The HTTP layer may try a closed connection again; this counts attempts, not tries.
        QTRY_VERIFY(requestsFor(path) > 0);
        QTest::qWait(100);
        const qsizetype tries = requestsFor(path);
        m_players.set(m_players.list);
        m_service->refreshIfDue(t0.addSecs(120));
        QTest::qWait(100);
        QCOMPARE(requestsFor(path), tries);
        QVERIFY(m_service->nowPlaying().artwork.isEmpty());
        QCOMPARE(m_service->nowPlaying().info.title, QStringLiteral("Bad"));
    }

    // Only a regular file within the cap is read: a FIFO would block, a huge file waste memory.
    void coverFiles_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("shown");
        QTest::newRow("picture") << "file" << true;
        QTest::newRow("fifo") << "fifo" << false;
        QTest::newRow("too large") << "huge" << false;
        QTest::newRow("missing") << "none" << false;
    }
    void coverFiles() {
        QFETCH(QString, kind);
        QFETCH(bool, shown);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("cover"));
        if (kind == QLatin1String("file") || kind == QLatin1String("huge")) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(kind == QLatin1String("huge")
                           ? QByteArray(MediaNowPlayingService::maxArtBytes + 1, 'x')
                           : QByteArray("cover"));
        } else if (kind == QLatin1String("fifo")) {
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        }
        play(kind, QUrl::fromLocalFile(path));
        QCOMPARE(m_service->nowPlaying().artwork, shown ? QByteArray("cover") : QByteArray());
    }

    // The buttons go to the player shown; with nothing shown they go nowhere.
    void commandsGoToThePlayerShown() {
        m_service->send(MediaCommand::playPause);
        QVERIFY(m_players.sent.isEmpty());
        m_players.set({player("a", "A", false, 60), player("b", "B", true, 50)});
        m_service->send(MediaCommand::nextTrack);
        QCOMPARE(m_players.sent, (QList<QPair<QString, MediaCommand>>{
                                     {QStringLiteral("b"), MediaCommand::nextTrack}}));
    }

    // Watched only while active; asked again once a refresh interval; a playing that lapses
    // changes what is published without a word from the player.
    void refreshesWhileActive() {
        QVERIFY(m_players.watching);
        m_players.set({player("a", "A", true, 0, 0, 200, 195)});
        QVERIFY(m_service->nowPlaying().info.isPlaying);
        QSignalSpy changed(m_service.get(), &MediaNowPlayingService::changed);
        m_service->refreshIfDue(t0.addSecs(30));
        QCOMPARE(m_players.refreshes, 0);
        m_clock.setNow(t0.addSecs(306));
        m_service->refreshIfDue(m_clock.now());
        QCOMPARE(m_players.refreshes, 1);
        QVERIFY(!m_service->nowPlaying().info.isPlaying);
        QCOMPARE(changed.count(), 1);
        m_service->setActive(false);
        QVERIFY(!m_players.watching);
        QVERIFY(!m_service->nowPlaying().info.hasInfo());
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestMediaNowPlayingService)
#include "tst_medianowplayingservice.moc"
