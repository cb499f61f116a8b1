// Calendars kept as vdir folders in a temporary home: where collections are found, which files
// are skipped (and logged once), and completions written on top of another program's edits.
#include "Files.h"
#include "platform/linux/VdirCalendarStore.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace tw;
using tw::test::readFile;
using tw::test::writeFile;

namespace {

QByteArray calendar(const QByteArray& body) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\n" + body + "END:VCALENDAR\r\n";
}

QByteArray eventAt(const char* uid, const char* start) {
    return calendar(QByteArray("BEGIN:VEVENT\r\nUID:") + uid + "\r\nSUMMARY:" + uid +
                    "\r\nDTSTART:" + start + "\r\nEND:VEVENT\r\n");
}

QByteArray todo(const char* uid, const char* summary) {
    return calendar(QByteArray("BEGIN:VTODO\r\nUID:") + uid + "\r\nSUMMARY:" + summary +
                    "\r\nEND:VTODO\r\n");
}

const QDateTime from(QDate(2026, 11, 1), QTime(0, 0), QTimeZone::utc());
const QDateTime to(QDate(2026, 12, 1), QTime(0, 0), QTimeZone::utc());

} // namespace

class TestVdirCalendarStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void findsCollections() {
        QTemporaryDir home;
        const QString root = home.filePath(QStringLiteral("calendars"));
        QVERIFY(writeFile(root + QStringLiteral("/account/work/displayname"), "Work\n"));
        QVERIFY(writeFile(root + QStringLiteral("/account/work/color"), "#FF0000\n"));
        QVERIFY(writeFile(root + QStringLiteral("/home/a.ics"), eventAt("a", "20261110T100000Z")));
        QVERIFY(writeFile(root + QStringLiteral("/a/b/c/too-deep/x.ics"),
                          eventAt("x", "20261110T100000Z")));
        QVERIFY(writeFile(home.filePath(QStringLiteral("subs/holidays/displayname")), "Holidays"));
        VdirCalendarStore store({{root, home.filePath(QStringLiteral("missing"))},
                                 {home.filePath(QStringLiteral("subs"))}});
        QStringList shown;
        for (const CalendarList& list : store.calendars()) {
            shown << QStringLiteral("%1 %2 %3")
                         .arg(list.title, list.color,
                              list.readOnly ? QStringLiteral("ro") : QStringLiteral("rw"));
        }
        shown.sort(Qt::CaseInsensitive);
        QCOMPARE(shown.size(), 3);
        QVERIFY(shown[0].startsWith(QStringLiteral("Holidays #")) &&
                shown[0].endsWith(QStringLiteral(" ro")));
        QVERIFY(shown[1].startsWith(QStringLiteral("home #")) &&
                shown[1].endsWith(QStringLiteral(" rw")));
        QCOMPARE(shown[2], QStringLiteral("Work #ff0000 rw"));
        QCOMPARE(store.reminderLists().size(), 2);
    }

    void skipsWhatItCannotReadOnce() {
        QTemporaryDir home;
        const QString work = home.filePath(QStringLiteral("work"));
        QVERIFY(writeFile(work + QStringLiteral("/good.ics"), eventAt("good", "20261110T100000Z")));
        QVERIFY(writeFile(work + QStringLiteral("/garbage.ics"), "not a calendar at all"));
        QVERIFY(writeFile(work + QStringLiteral("/binary.ics"), QByteArray("\0\1\2\3BEGIN", 9)));
        QVERIFY(writeFile(work + QStringLiteral("/huge.ics"),
                          QByteArray(VdirCalendarStore::mostFileBytes + 1, 'A')));
        VdirCalendarStore store({{work}, {}});
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("skipped .*huge.ics: larger")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral(
                                               "skipped .*garbage.ics: not iCalendar")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral(
                                               "skipped .*binary.ics: not iCalendar")));
        const auto first = store.events(from, to, std::nullopt, QTimeZone::utc());
        QCOMPARE(first.items.size(), 1);
        QCOMPARE(first.items[0].title, QStringLiteral("good"));
        QTest::failOnWarning(QRegularExpression(QStringLiteral("skipped")));
        QCOMPARE(store.events(from, to, std::nullopt, QTimeZone::utc()).items, first.items);
    }

    void completionKeepsAnotherWritersEdit() {
        QTemporaryDir home;
        const QString list = home.filePath(QStringLiteral("tasks"));
        const QString path = list + QStringLiteral("/plants.ics");
        QVERIFY(writeFile(path, todo("p", "Water the plants")));
        VdirCalendarStore store({{list}, {}});
        const ReminderItem item =
            store.reminders(std::nullopt, std::nullopt, QTimeZone::utc()).items.value(0);
        QCOMPARE(item.title, QStringLiteral("Water the plants"));

        // Another program renames it after we read it; the completion lands on its version.
        QVERIFY(writeFile(path, todo("p", "Water the ferns")));
        const QDateTime now(QDate(2026, 11, 24), QTime(9, 0), QTimeZone::utc());
        QCOMPARE(store.setCompleted(item.id, true, now), QString());
        const QByteArray written = readFile(path);
        QVERIFY(written.contains("SUMMARY:Water the ferns"));
        QVERIFY(written.contains("STATUS:COMPLETED"));
        QVERIFY(store.reminders(std::nullopt, std::nullopt, QTimeZone::utc()).items.isEmpty());
        QCOMPARE(store.reminders(std::nullopt, now.addDays(-7), QTimeZone::utc()).items.size(), 1);
        QCOMPARE(QDir(list).entryList(QDir::Files), QStringList{QStringLiteral("plants.ics")});

        // Gone under our feet, or never ours: nothing is written.
        QVERIFY(QFile::remove(path));
        QVERIFY(!store.setCompleted(item.id, false, now).isEmpty());
        QVERIFY(!QFile::exists(path));
        QVERIFY(!store.setCompleted(home.filePath(QStringLiteral("elsewhere/x.ics#p")), true, now)
                     .isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVdirCalendarStore)
#include "tst_vdircalendarstore.moc"
