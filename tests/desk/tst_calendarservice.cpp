// The calendar services' bookkeeping (freshness, eviction, late results) and the services over
// real vdir folders, read through a runner the test holds.
#include "Files.h"
#include "LoopbackHttpServer.h"
#include "ManualScheduler.h"
#include "PrivateMount.h"
#include "ScriptedReadings.h"
#include "desk/CalendarHub.h"
#include "net/QtHttpClient.h"
#include "net/RedirectPolicy.h"
#include "platform/linux/VdirCalendarStore.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace tw;
using tw::test::writeFile;

namespace {

using Book = CalendarBook<CalendarFilter, CalendarEventItem>;

const QDateTime t0(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc());

CalendarFilter filter(const char* id) {
    return CalendarFilter{QString::fromLatin1(id)};
}

QByteArray item(const QByteArray& body) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\n" + body + "END:VCALENDAR\r\n";
}

} // namespace

class TestCalendarService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // First, while the process has one thread: a mount namespace cannot be entered later.
    // A list that may not be written to: the file stays as it was and the tiles say why, until a
    // later toggle is written.
    void aFailedToggleKeepsTheFileAndSaysSo() {
        if (!tw::test::enterPrivateMountNamespace()) {
            QSKIP("no mount namespace here");
        }
        QTemporaryDir home;
        const QString tasks = home.filePath(QStringLiteral("tasks"));
        const QString path = tasks + QStringLiteral("/plants.ics");
        const QByteArray before =
            item("BEGIN:VTODO\r\nUID:p\r\nSUMMARY:Water the plants\r\nEND:VTODO\r\n");
        QVERIFY(writeFile(path, before));
        VdirCalendarStore store({{tasks}, {}});
        tw::test::HeldRunner runner;
        CalendarHub hub(store, runner, QTimeZone::utc());
        const WidgetSettings lists{{QStringLiteral("list"), QStringLiteral("all")}};
        hub.refresh(t0, {}, {lists});
        runner.releaseAll();
        const ReminderItem plants = hub.board().remindersFor(lists)->lastGood->value(0);
        QVERIFY(tw::test::mountReadOnly(tasks));

        QSignalSpy failed(&hub.reminders(), &RemindersService::saveFailed);
        for (int logged = 0; logged < 2; ++logged) { // the store's line and the service's
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("save failed")));
        }
        hub.reminders().toggleCompletion(plants, t0);
        runner.releaseAll();
        runner.releaseAll();
        QCOMPARE(failed.size(), 1);
        QCOMPARE(tw::test::readFile(path), before);
        QCOMPARE(QDir(tasks).entryList(QDir::Files), QStringList{QStringLiteral("plants.ics")});
        QVERIFY(!hub.board().reminderProblem.isEmpty());
        QCOMPARE(hub.board().reminderProblemAt, t0);
        QVERIFY(!hub.board().remindersFor(lists)->lastGood->value(0).isCompleted);

        QVERIFY(umount(QFile::encodeName(tasks).constData()) == 0);
        hub.reminders().toggleCompletion(plants, t0.addSecs(5));
        runner.releaseAll();
        runner.releaseAll();
        QVERIFY(hub.board().reminderProblem.isEmpty());
        QVERIFY(tw::test::readFile(path).contains("STATUS:COMPLETED"));
    }

    void freshness_data() {
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("after");
        QTest::addColumn<bool>("fetches");
        QTest::newRow("ready, within the minute") << QString() << 59 << false;
        QTest::newRow("ready, a minute on") << QString() << 60 << true;
        QTest::newRow("failed, within half a minute") << QStringLiteral("no disk") << 29 << false;
        QTest::newRow("failed, half a minute on") << QStringLiteral("no disk") << 30 << true;
        QTest::newRow("the clock went back") << QString() << -3600 << true;
    }
    void freshness() {
        QFETCH(QString, error);
        QFETCH(int, after);
        QFETCH(bool, fetches);
        Book book;
        QVERIFY(book.wantsFetch(filter("a"), t0));
        const quint64 generation = book.begin(filter("a"));
        QVERIFY(!book.wantsFetch(filter("a"), t0.addSecs(600)));
        QVERIFY(book.apply(filter("a"), generation, {}, error, t0));
        QCOMPARE(book.wantsFetch(filter("a"), t0.addSecs(after)), fetches);
    }

    void failureKeepsTheLastGoodList() {
        Book book;
        const CalendarEventItem event{
            QStringLiteral("1"), QStringLiteral("Standup"), t0, t0, false, {}, {}};
        book.apply(filter("a"), book.begin(filter("a")), {event}, {}, t0);
        book.apply(filter("a"), book.begin(filter("a")), {}, QStringLiteral("no disk"), t0);
        const auto reading = book.reading(filter("a"));
        QCOMPARE(reading.state, CalendarState::error);
        QCOMPARE(reading.message, QStringLiteral("no disk"));
        QCOMPARE(reading.lastGood, QList<CalendarEventItem>{event});
    }

    void olderResultIsDropped() {
        Book book;
        const quint64 first = book.begin(filter("a"));
        const quint64 second = book.begin(filter("a"));
        QVERIFY(!book.apply(filter("a"), first, {}, QStringLiteral("late"), t0));
        QCOMPARE(book.reading(filter("a")).state, CalendarState::loading);
        QVERIFY(book.apply(filter("a"), second, {}, {}, t0));
        QCOMPARE(book.reading(filter("a")).state, CalendarState::ready);
    }

    void sixthFilterEvictsTheLeastRecentlyUsed() {
        Book book;
        const char* ids[] = {"a", "b", "c", "d", "e", "f"};
        for (int i = 0; i < 6; ++i) {
            QVERIFY(book.wantsFetch(filter(ids[i]), t0.addSecs(i)));
            book.apply(filter(ids[i]), book.begin(filter(ids[i])), {}, {}, t0);
            if (i == 4) {
                // "a" is used again before the sixth comes, so "b" is the oldest then.
                book.wantsFetch(filter("a"), t0.addSecs(i));
            }
        }
        const QList<CalendarFilter> kept = book.filters();
        QCOMPARE(kept.size(), Book::mostFilters);
        QVERIFY(!kept.contains(filter("b")));
        QVERIFY(!book.readings().contains(filter("b")));
        QVERIFY(kept.contains(filter("a")) && kept.contains(filter("f")));
    }

    // Over real folders: nothing read before a choice, the events once chosen, an empty list for
    // a calendar that went away, and a reminder completed in its file.
    void servicesOverFolders() {
        QTemporaryDir home;
        const QString work = home.filePath(QStringLiteral("calendars/work"));
        QVERIFY(writeFile(work + QStringLiteral("/displayname"), "Work"));
        QVERIFY(writeFile(
            work + QStringLiteral("/standup.ics"),
            item("BEGIN:VEVENT\r\nUID:s\r\nSUMMARY:Standup\r\nDTSTART:20261124T150000Z\r\n"
                 "DTEND:20261124T151500Z\r\nEND:VEVENT\r\n")));
        QVERIFY(
            writeFile(work + QStringLiteral("/plants.ics"),
                      item("BEGIN:VTODO\r\nUID:p\r\nSUMMARY:Water the plants\r\nEND:VTODO\r\n")));
        VdirCalendarStore store({{home.filePath(QStringLiteral("calendars"))}, {}});
        tw::test::HeldRunner runner;
        CalendarHub hub(store, runner, QTimeZone::utc());
        QSignalSpy changed(&hub, &CalendarHub::boardChanged);

        const WidgetSettings unchosen;
        hub.refresh(t0, {unchosen}, {unchosen});
        QCOMPARE(runner.held(), 0);
        QVERIFY(!hub.board().eventsFor(unchosen));

        const WidgetSettings all{{QStringLiteral("calendar"), QStringLiteral("all")}};
        const WidgetSettings gone{
            {QStringLiteral("calendar"), QStringLiteral("/no/such/calendar")}};
        const WidgetSettings lists{{QStringLiteral("list"), QStringLiteral("all")},
                                   {QStringLiteral("showCompleted"), QStringLiteral("true")}};
        hub.refresh(t0, {all, all, gone}, {lists});
        QCOMPARE(runner.held(), 3);
        QCOMPARE(hub.board().eventsFor(all)->state, CalendarState::loading);
        runner.releaseAll();
        QVERIFY(!changed.isEmpty());
        const auto events = hub.board().eventsFor(all);
        QCOMPARE(events->state, CalendarState::ready);
        QCOMPARE(events->lastGood->size(), 1);
        QCOMPARE(events->lastGood->first().title, QStringLiteral("Standup"));
        QCOMPARE(events->lastGood->first().calendarTitle, QStringLiteral("Work"));
        QCOMPARE(hub.board().eventsFor(gone)->state, CalendarState::ready);
        QVERIFY(hub.board().eventsFor(gone)->lastGood->isEmpty());
        QCOMPARE(hub.calendar().calendars().size(), 1);

        const ReminderItem plants = hub.board().remindersFor(lists)->lastGood->first();
        QVERIFY(!plants.isCompleted);
        hub.reminders().toggleCompletion(plants, t0);
        runner.releaseAll();
        runner.releaseAll();
        QVERIFY(hub.board().remindersFor(lists)->lastGood->first().isCompleted);
        QVERIFY(
            tw::test::readFile(work + QStringLiteral("/plants.ics")).contains("STATUS:COMPLETED"));
    }

    // Another program writes into a folder in use: after the burst settles, the tiles showing
    // that folder get the change, and only that folder's files are read again. A folder no tile
    // reads is not watched.
    void anotherProgramsWriteReachesTheTiles() {
        QTemporaryDir home;
        const QString root = home.filePath(QStringLiteral("calendars"));
        const auto event = [](const char* uid, const char* title) {
            return item(QByteArray("BEGIN:VEVENT\r\nUID:") + uid + "\r\nSUMMARY:" + title +
                        "\r\nDTSTART:20261124T150000Z\r\nDTEND:20261124T151500Z\r\nEND:VEVENT\r\n");
        };
        QVERIFY(writeFile(root + QStringLiteral("/work/standup.ics"), event("s", "Standup")));
        QVERIFY(writeFile(root + QStringLiteral("/home/gym.ics"), event("g", "Gym")));
        QVERIFY(writeFile(root + QStringLiteral("/spare/nap.ics"), event("n", "Nap")));
        VdirCalendarStore store({{root}, {}});
        tw::test::HeldRunner runner;
        tw::test::ManualScheduler scheduler;
        CalendarWatcher watcher(scheduler);
        CalendarHub hub(store, runner, QTimeZone::utc(), nullptr, &watcher);
        const QString work = QFileInfo(root + QStringLiteral("/work")).canonicalFilePath();
        const QString homeList = QFileInfo(root + QStringLiteral("/home")).canonicalFilePath();
        const WidgetSettings workTile{{QStringLiteral("calendar"), work}};
        const WidgetSettings homeTile{{QStringLiteral("calendar"), homeList}};
        hub.refresh(t0, {workTile, homeTile}, {});
        runner.releaseAll();
        QCOMPARE(QSet<QString>(watcher.folders().cbegin(), watcher.folders().cend()),
                 (QSet<QString>{work, homeList}));
        const WidgetSettings allTile{{QStringLiteral("calendar"), QStringLiteral("all")}};
        hub.refresh(t0, {workTile, homeTile, allTile}, {});
        runner.releaseAll();
        QCOMPARE(watcher.folders().size(), 3);
        const int parsed = store.filesParsed();

        // A sync writes three items one after another, each renamed into place.
        for (const char* uid : {"a", "b", "c"}) {
            QVERIFY(writeFile(work + QStringLiteral("/.new"), event(uid, "Review")));
            QVERIFY(QFile::rename(work + QStringLiteral("/.new"),
                                  work + QStringLiteral("/%1.ics").arg(QLatin1String(uid))));
        }
        QTRY_VERIFY(scheduler.pendingCount() > 0);
        QCOMPARE(runner.held(), 0);
        scheduler.advance(CalendarWatcher::settle);
        QCOMPARE(runner.held(), 2);
        runner.releaseAll();
        QCOMPARE(hub.board().eventsFor(workTile)->lastGood->size(), 4);
        QCOMPARE(hub.board().eventsFor(allTile)->lastGood->size(), 6);
        QCOMPARE(store.filesParsed(), parsed + 4);
        QCOMPARE(hub.board().eventsFor(homeTile)->lastGood->size(), 1);
    }

    void aChangeDuringAFetchFetchesAgain() {
        Book book;
        const quint64 generation = book.begin(filter("a"));
        book.markStale([](const CalendarFilter&) { return true; });
        QVERIFY(book.apply(filter("a"), generation, {}, {}, t0));
        QVERIFY(book.wantsFetch(filter("a"), t0));
    }

    void subscribedAddresses_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("fetched");
        QTest::newRow("webcal") << QStringLiteral("webcal://example.org/cal.ics")
                                << QStringLiteral("https://example.org/cal.ics");
        QTest::newRow("https") << QStringLiteral(" https://example.org/c ")
                               << QStringLiteral("https://example.org/c");
        QTest::newRow("file") << QStringLiteral("file:///etc/passwd") << QString();
        QTest::newRow("no host") << QStringLiteral("webcal:///cal.ics") << QString();
        QTest::newRow("nothing") << QString() << QString();
    }
    void subscribedAddresses() {
        QFETCH(QString, address);
        QFETCH(QString, fetched);
        const std::optional<QUrl> url = CalendarSubscriptions::fetchable(address);
        QCOMPARE(url ? url->toString() : QString(), fetched);
    }

    // A subscription fetched from a loopback server becomes a read-only calendar; a later answer
    // that is no calendar leaves the copy as it was.
    void subscriptionKeptBesideTheOwnCalendars() {
        tw::test::LoopbackHttpServer server;
        server.route("/holidays.ics", tw::test::LoopbackHttpServer::ok(
                                          item("X-WR-CALNAME:Holidays\r\nBEGIN:VEVENT\r\nUID:h\r\n"
                                               "SUMMARY:Day off\r\nDTSTART;VALUE=DATE:20261126\r\n"
                                               "END:VEVENT\r\n")));
        tw::test::ManualScheduler scheduler;
        QtHttpClient http(scheduler, [](QStringView) { return AddressClass::Public; });
        QTemporaryDir home;
        const QString copies = home.filePath(QStringLiteral("Subscriptions"));
        CalendarSubscriptions subscriptions(http, copies);
        subscriptions.setAddresses(
            QStringList{server.url(QStringLiteral("/holidays.ics")).toString()});
        QSignalSpy updated(&subscriptions, &CalendarSubscriptions::updated);
        subscriptions.refreshIfStale(t0);
        QVERIFY(updated.wait());

        VdirCalendarStore store({{}, {copies}});
        const QList<CalendarList> calendars = store.calendars();
        QCOMPARE(calendars.size(), 1);
        QCOMPARE(calendars[0].title, QStringLiteral("Holidays"));
        QVERIFY(calendars[0].readOnly);
        const auto events = store.events(t0, t0.addDays(7), std::nullopt, QTimeZone::utc());
        QCOMPARE(events.items.size(), 1);

        server.route("/holidays.ics", tw::test::LoopbackHttpServer::ok("<html>maintenance</html>"));
        subscriptions.refreshIfStale(t0.addSecs(60));
        QCOMPARE(server.requests().size(), 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not updated")));
        subscriptions.refreshIfStale(t0.addSecs(31 * 60));
        QVERIFY(subscriptions.isFetching());
        QTRY_VERIFY(!subscriptions.isFetching());
        QCOMPARE(server.requests().size(), 2);
        QCOMPARE(store.events(t0, t0.addDays(7), std::nullopt, QTimeZone::utc()).items,
                 events.items);
    }
};

QTEST_GUILESS_MAIN(TestCalendarService)
#include "tst_calendarservice.moc"
