// Occurrences of iCalendar events in a span: repeats, exceptions, zones and their daylight
// saving changes, all-day dates wherever the reader is, and rules that never end.
#include "platform/linux/ICalReader.h"

#include <QtTest>

using namespace tw;

namespace {

QByteArray calendar(const QByteArray& body) {
    QByteArray text =
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\n" + body + "END:VCALENDAR\r\n";
    return text.replace("\n", "\r\n").replace("\r\r\n", "\r\n");
}

QByteArray vevent(const QByteArray& lines) {
    return "BEGIN:VEVENT\nUID:e1\nSUMMARY:Standup\n" + lines + "END:VEVENT\n";
}

// A zone described by the file itself, named so that no system zone could stand in for it.
const QByteArray ownZone = "BEGIN:VTIMEZONE\nTZID:Office Time\n"
                           "BEGIN:STANDARD\nDTSTART:19701101T020000\n"
                           "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\nTZOFFSETFROM:-0400\n"
                           "TZOFFSETTO:-0500\nEND:STANDARD\n"
                           "BEGIN:DAYLIGHT\nDTSTART:19700308T020000\n"
                           "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\nTZOFFSETFROM:-0500\n"
                           "TZOFFSETTO:-0400\nEND:DAYLIGHT\nEND:VTIMEZONE\n";

// "start>end" in UTC, or "day:yyyy-MM-dd+days" for an all-day occurrence.
QString shown(const ICalReader::Event& e) {
    if (e.allDay) {
        return QStringLiteral("day:%1+%2")
            .arg(e.start.date().toString(Qt::ISODate),
                 QString::number(e.start.date().daysTo(e.end.date())));
    }
    const auto utc = [](const QDateTime& t) {
        return t.toUTC().toString(QStringLiteral("MM-ddTHH:mm"));
    };
    return utc(e.start) + QLatin1Char('>') + utc(e.end);
}

QStringList strings(std::initializer_list<const char*> items) {
    QStringList out;
    for (const char* item : items) {
        out << QString::fromLatin1(item);
    }
    return out;
}

QDateTime utc(const char* text) {
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toUTC();
}

} // namespace

class TestICalReader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void occurrences_data() {
        QTest::addColumn<QByteArray>("ics");
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QStringList>("expected");
        // The span is 2026-10-20 to 2026-11-10 UTC throughout.
        QTest::newRow("utc") << calendar(
                                    vevent("DTSTART:20261021T090000Z\nDTEND:20261021T093000Z\n"))
                             << QByteArray("UTC") << strings({"10-21T09:00>10-21T09:30"});
        QTest::newRow("weekly keeps the wall clock across the change to winter time")
            << calendar(vevent("DTSTART;TZID=Europe/Berlin:20261014T090000\nDURATION:PT1H\n"
                               "RRULE:FREQ=WEEKLY\n"))
            << QByteArray("UTC")
            << strings({"10-21T07:00>10-21T08:00", "10-28T08:00>10-28T09:00",
                        "11-04T08:00>11-04T09:00"});
        QTest::newRow("zone named with a writer's prefix")
            << calendar(
                   vevent("DTSTART;TZID=/mozilla.org/20070129_1/Europe/Berlin:20261030T090000\n"))
            << QByteArray("UTC") << strings({"10-30T08:00>10-30T08:00"});
        QTest::newRow("zone the file describes")
            << calendar(ownZone + vevent("DTSTART;TZID=Office Time:20261026T090000\n"
                                         "DTEND;TZID=Office Time:20261026T100000\n"
                                         "RRULE:FREQ=WEEKLY;COUNT=2\n"))
            << QByteArray("Asia/Tokyo")
            << strings({"10-26T13:00>10-26T14:00", "11-02T14:00>11-02T15:00"});
        QTest::newRow("floating time is the reader's")
            << calendar(vevent("DTSTART:20261025T120000\n")) << QByteArray("Asia/Tokyo")
            << strings({"10-25T03:00>10-25T03:00"});
        for (const char* zone : {"Pacific/Kiritimati", "America/Los_Angeles", "Europe/Berlin"}) {
            QTest::addRow("all-day stays on its dates in %s", zone)
                << calendar(vevent("DTSTART;VALUE=DATE:20261025\nDTEND;VALUE=DATE:20261027\n"))
                << QByteArray(zone) << strings({"day:2026-10-25+2"});
        }
        QTest::newRow("all-day without end lasts a day")
            << calendar(vevent("DTSTART;VALUE=DATE:20261101\nRRULE:FREQ=YEARLY\n"))
            << QByteArray("Europe/Berlin") << strings({"day:2026-11-01+1"});
        QTest::newRow("exceptions, an extra date and a moved occurrence")
            << calendar(vevent("DTSTART:20261101T100000Z\nDTEND:20261101T110000Z\n"
                               "RRULE:FREQ=DAILY;COUNT=4\nEXDATE:20261102T100000Z\n"
                               "RDATE:20261108T100000Z\n") +
                        "BEGIN:VEVENT\nUID:e1\nSUMMARY:Moved\nRECURRENCE-ID:20261103T100000Z\n"
                        "DTSTART:20261103T150000Z\nDTEND:20261103T153000Z\nEND:VEVENT\n")
            << QByteArray("UTC")
            << strings({"11-01T10:00>11-01T11:00", "11-03T15:00>11-03T15:30",
                        "11-04T10:00>11-04T11:00", "11-08T10:00>11-08T11:00"});
        QTest::newRow("a date excludes that day of a timed series")
            << calendar(vevent("DTSTART:20261101T100000Z\nRRULE:FREQ=DAILY;COUNT=2\n"
                               "EXDATE;VALUE=DATE:20261102\n"))
            << QByteArray("UTC") << strings({"11-01T10:00>11-01T10:00"});
        QTest::newRow("began before the span and reaches into it")
            << calendar(vevent("DTSTART:20261019T220000Z\nDTEND:20261020T020000Z\n"))
            << QByteArray("UTC") << strings({"10-19T22:00>10-20T02:00"});
        QTest::newRow("a rule that ended long ago")
            << calendar(
                   vevent("DTSTART:19990101T100000Z\nRRULE:FREQ=DAILY;UNTIL=20001231T100000Z\n"))
            << QByteArray("UTC") << QStringList();
        QTest::newRow("a daily rule begun decades ago")
            << calendar(vevent("DTSTART:19800101T100000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=1\n"))
            << QByteArray("UTC") << strings({"11-01T10:00>11-01T10:00"});
        QTest::newRow("cancelled")
            << calendar(vevent("STATUS:CANCELLED\nDTSTART:20261021T090000Z\n")) << QByteArray("UTC")
            << QStringList();
        QTest::newRow("no start") << calendar(vevent("DTEND:20261021T090000Z\n"))
                                  << QByteArray("UTC") << QStringList();
    }
    void occurrences() {
        QFETCH(QByteArray, ics);
        QFETCH(QByteArray, zone);
        QFETCH(QStringList, expected);
        const ICalReader::Contents contents = ICalReader::read(
            ics, utc("2026-10-20T00:00:00Z"), utc("2026-11-10T00:00:00Z"), QTimeZone(zone));
        QVERIFY(contents.readable);
        QStringList got;
        for (const ICalReader::Event& e : contents.events) {
            got << shown(e);
        }
        QCOMPARE(got, expected);
    }

    // Rules without end that step in seconds or minutes stop at the bounds instead of running on.
    void endlessRulesAreBounded_data() {
        QTest::addColumn<QByteArray>("rule");
        QTest::newRow("secondly") << QByteArray("FREQ=SECONDLY");
        QTest::newRow("minutely from 1970") << QByteArray("FREQ=MINUTELY;BYSECOND=0,30");
    }
    void endlessRulesAreBounded() {
        QFETCH(QByteArray, rule);
        const QByteArray ics = calendar(vevent("DTSTART:19700101T000000Z\nRRULE:" + rule + "\n"));
        const ICalReader::Contents contents = ICalReader::read(
            ics, utc("2026-10-20T00:00:00Z"), utc("2026-11-10T00:00:00Z"), QTimeZone::utc());
        QVERIFY(contents.events.size() <= ICalReader::mostOccurrences + 1);
    }

    void todosAndTheirCompletion() {
        const QByteArray ics =
            calendar("BEGIN:VTODO\nUID:t1\nSUMMARY:Water the plants\nDUE;VALUE=DATE:20261125\n"
                     "PRIORITY:1\nX-OTHER:kept\nEND:VTODO\n"
                     "BEGIN:VTODO\nUID:t2\nSUMMARY:Done already\nSTATUS:COMPLETED\nEND:VTODO\n");
        const QTimeZone zone("Europe/Berlin");
        ICalReader::Contents contents = ICalReader::read(ics, {}, {}, zone);
        QCOMPARE(contents.todos.size(), 2);
        QCOMPARE(contents.todos[0].title, QStringLiteral("Water the plants"));
        QCOMPARE(contents.todos[0].due, QDate(2026, 11, 25).startOfDay(zone));
        QCOMPARE(contents.todos[0].priority, 1);
        QVERIFY(!contents.todos[0].completed);
        QVERIFY(contents.todos[1].completed);

        const QDateTime now = utc("2026-11-24T12:00:00Z");
        const std::optional<QByteArray> done =
            ICalReader::withCompletion(ics, QStringLiteral("t1"), true, now);
        QVERIFY(done);
        QVERIFY(done->contains("X-OTHER:kept"));
        contents = ICalReader::read(*done, {}, {}, zone);
        QVERIFY(contents.todos[0].completed);
        QCOMPARE(contents.todos[0].completedAt, now);
        const std::optional<QByteArray> open =
            ICalReader::withCompletion(*done, QStringLiteral("t1"), false, now);
        QVERIFY(open);
        QVERIFY(!ICalReader::read(*open, {}, {}, zone).todos[0].completed);
        QVERIFY(!ICalReader::withCompletion(ics, QStringLiteral("nobody"), true, now));
    }

    void unreadableText_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not a calendar") << QByteArray("hello, world\n");
        QTest::newRow("unclosed") << QByteArray("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:2026");
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe BEGIN:VEVENT", 14);
    }
    void unreadableText() {
        QFETCH(QByteArray, text);
        const ICalReader::Contents contents = ICalReader::read(
            text, utc("2026-10-20T00:00:00Z"), utc("2026-11-10T00:00:00Z"), QTimeZone::utc());
        QVERIFY(contents.events.isEmpty());
        QVERIFY(!ICalReader::withCompletion(text, QStringLiteral("t1"), true,
                                            QDateTime::currentDateTimeUtc()));
    }
};

QTEST_GUILESS_MAIN(TestICalReader)
#include "tst_icalreader.moc"
