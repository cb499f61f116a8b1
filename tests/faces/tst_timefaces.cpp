// Each kind finds its face, and each face asks for time no finer than it shows. What the time
// faces say: the word clock in five-minute steps, the small digital clock's lines, the day's and
// the year's progress over real calendar lengths, the world clock's offsets and round of cities,
// and the countdown's lenient moments split into whole units.
#include "TestRows.h"
#include "desk/CalendarBoard.h"
#include "desk/DeskSettings.h"
#include "faces/ClockFace.h"
#include "faces/CountdownFace.h"
#include "faces/DayProgressFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/RemindersFace.h"
#include "faces/WordClockFace.h"
#include "faces/WorldClockFace.h"
#include "faces/YearProgressFace.h"
#include "model/WidgetRegistry.h"

#include <QLocale>
#include <QTest>
#include <QTimeZone>

using namespace tw;

using tw::test::row;

namespace {

class FixedFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return TimeGrain::Minutes;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
};

} // namespace

class TestTimeFaces : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Faces of their own are for catalogue kinds that show the time or the machine's readings.
    void ownFacesAreCatalogueKinds() {
        const FaceRegistry faces;
        QVERIFY(!faces.kinds().isEmpty());
        for (const QString& kind : faces.kinds()) {
            QVERIFY2(WidgetRegistry::builtInDefinition(kind).has_value(), qPrintable(kind));
            // Woken by a clock or by readings, never both (but for the music tile, whose bar moves
            // with the clock while the player's news comes as readings); or by the weather it
            // shows; or, for app time and the speed test, by their own service's word alone.
            const WidgetFace& face = faces.face(kind);
            const bool clocked = face.grain(WidgetSize::large, {}).has_value();
            const bool read = face.feeds(WidgetSize::large, {}) != ReadingFeeds();
            QVERIFY2(!(clocked && read) || kind == QLatin1String("nowplaying"), qPrintable(kind));
            const bool byItsService =
                kind == QLatin1String("appusage") || kind == QLatin1String("speedtest");
            // The calculator, converter, password generator, web page, mirror, file tiles, the
            // launchers and the sticky note change only at their behaviour's word.
            const bool byItsBehaviour = QStringList{QStringLiteral("calculator"),
                                                    QStringLiteral("unitconverter"),
                                                    QStringLiteral("passwordgenerator"),
                                                    QStringLiteral("web"),
                                                    QStringLiteral("mirror"),
                                                    QStringLiteral("photos"),
                                                    QStringLiteral("folder"),
                                                    QStringLiteral("trash"),
                                                    QStringLiteral("apps"),
                                                    QStringLiteral("shortcut"),
                                                    QStringLiteral("toolbox"),
                                                    QStringLiteral("terminal"),
                                                    QStringLiteral("stickynote")}
                                            .contains(kind);
            // An animated scene is woken by its own frames.
            const bool animated =
                face.sceneFps(FaceContext::forKind(
                    WidgetRegistry::builtInDefinition(kind)->metadata, WidgetSize::large)) > 0;
            QVERIFY2(clocked || read || face.showsWeather({}) || byItsService || byItsBehaviour ||
                         animated,
                     qPrintable(kind));
        }
    }

    void addReplacesAFace() {
        FaceRegistry faces;
        auto face = std::make_unique<FixedFace>();
        const WidgetFace* added = face.get();
        faces.add(QStringLiteral("weather"), std::move(face));
        QVERIFY(faces.hasOwnFace(QStringLiteral("weather")));
        QCOMPARE(&faces.face(QStringLiteral("weather")), added);
    }

    // "none": the generic face, shared by every kind without one of its own.
    void grains_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<WidgetSettings>("settings");
        QTest::addColumn<QString>("grain");
        const WidgetSettings none;
        const WidgetSettings analog{{QStringLiteral("style"), QStringLiteral("analog")}};
        const WidgetSettings noSeconds{{QStringLiteral("seconds"), QStringLiteral("false")}};
        row("digital clock shows seconds", "clock", WidgetSize::wide, none, "seconds");
        row("small digital clock has no room for them", "clock", WidgetSize::small, none,
            "minutes");
        row("analog clock has a second hand", "clock", WidgetSize::small, analog, "seconds");
        row("seconds switched off", "clock", WidgetSize::large, noSeconds, "minutes");
        row("simple clock", "simpleclock", WidgetSize::banner, none, "minutes");
        row("flip clock, two cards", "flipclock", WidgetSize::wide, none, "minutes");
        row("flip clock, seconds card", "flipclock", WidgetSize::panorama, none, "seconds");
        row("word clock", "wordclock", WidgetSize::grand, none, "minutes");
        row("world clock", "worldclock", WidgetSize::huge, none, "minutes");
        row("day progress", "dayprogress", WidgetSize::wideTall, none, "minutes");
        row("year progress", "yearprogress", WidgetSize::large, none, "minutes");
        row("countdown", "countdown", WidgetSize::wide, none, "seconds");
        row("weather turns to night by the minute", "weather", WidgetSize::large, none, "minutes");
        row("the air wakes no clock, woken by its weather", "airquality", WidgetSize::large, none,
            "none");
        row("moon", "moon", WidgetSize::small, none, "minutes");
        row("an idle timer", "timer", WidgetSize::large, none, "minutes");
        row("a running timer", "timer", WidgetSize::small,
            WidgetSettings{{QStringLiteral("endsAt"), QStringLiteral("1")}}, "seconds");
        row("a running pomodoro", "pomodoro", WidgetSize::wide,
            WidgetSettings{{QStringLiteral("pomoEnds"), QStringLiteral("1")}}, "seconds");
        row("a stopped stopwatch", "stopwatch", WidgetSize::small, none, "minutes");
        row("world map", "worldmap", WidgetSize::panorama, none, "minutes");

        row("a custom widget", "custom.0000", WidgetSize::large, none, "minutes");
        row("no kind", "", WidgetSize::large, none, "none");
    }
    void grains() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(WidgetSettings, settings);
        QFETCH(QString, grain);
        const FaceRegistry faces;
        const std::optional<TimeGrain> asked = faces.face(kind).grain(size, settings);
        QCOMPARE(!asked                         ? QStringLiteral("none")
                 : *asked == TimeGrain::Seconds ? QStringLiteral("seconds")
                                                : QStringLiteral("minutes"),
                 grain);
        const WidgetFace& face = faces.face(kind);
        QCOMPARE(faces.hasOwnFace(kind) && !face.feeds(size, settings) &&
                     !face.showsWeather(settings),
                 grain != QLatin1String("none") && !face.showsWeather(settings));
    }

    // To the next hour from twenty-five to.
    void wordClock_data() {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QString>("expected");
        row("on the hour", QTime(5, 0), "IT IS FIVE OCLOCK");
        row("minutes past the step", QTime(5, 4, 59), "IT IS FIVE OCLOCK");
        row("five past", QTime(10, 9), "IT IS FIVE PAST TEN");
        row("quarter past", QTime(14, 15), "IT IS A QUARTER PAST TWO");
        row("twenty-five past", QTime(5, 25), "IT IS TWENTY FIVE PAST FIVE");
        row("half past", QTime(9, 30), "IT IS HALF PAST NINE");
        row("twenty-five to", QTime(9, 35), "IT IS TWENTY FIVE TO TEN");
        row("quarter to midnight", QTime(23, 45), "IT IS A QUARTER TO TWELVE");
        row("five to one", QTime(0, 55), "IT IS FIVE TO ONE");
        row("midnight", QTime(0, 0), "IT IS TWELVE OCLOCK");
        row("noon", QTime(12, 2), "IT IS TWELVE OCLOCK");
        row("ten to eleven", QTime(22, 50), "IT IS TEN TO ELEVEN");
    }
    void wordClock() {
        QFETCH(QTime, time);
        QTEST(WordClockFace::words(time).join(QLatin1Char(' ')), "expected");
    }

    // The small digital clock names the weekday once, whatever stands on its top line; under a
    // city the date carries the weekday, since nothing else does.
    void smallClockLines_data() {
        QTest::addColumn<bool>("h24");
        QTest::addColumn<QString>("city");
        QTest::addColumn<QString>("lines");
        row("24 hours", true, QString(), "Monday|14:05|23 November");
        row("12 hours", false, QString(), "Monday|2:05|PM 23 November");
        row("a city", true, QStringLiteral("Tokyo"), "Tokyo|14:05|Mon 23 Nov");
    }
    void smallClockLines() {
        QFETCH(bool, h24);
        QFETCH(QString, city);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const ClockFace::SmallLines lines =
            ClockFace::smallLines(QDateTime(QDate(2026, 11, 23), QTime(14, 5)), h24, city);
        QTEST(QStringList({lines.top, lines.time, lines.bottom}).join(QLatin1Char('|')), "lines");
    }

    void progress_data() {
        QTest::addColumn<bool>("year");
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<double>("expected");
        const QTimeZone berlin("Europe/Berlin");
        const QTimeZone utc = QTimeZone::utc();
        const QDate june(2026, 6, 1);
        row("midnight", false, QDateTime(june, QTime(0, 0), berlin), 0.0);
        row("noon", false, QDateTime(june, QTime(12, 0), berlin), 0.5);
        row("last second", false, QDateTime(june, QTime(23, 59, 59), berlin), 86399.0 / 86400.0);
        // The spring change makes a day of 23 hours: at noon 11 of them have passed.
        row("short day", false, QDateTime(QDate(2026, 3, 29), QTime(12, 0), berlin), 11.0 / 23.0);
        row("long day", false, QDateTime(QDate(2026, 10, 25), QTime(12, 0), berlin), 13.0 / 25.0);
        row("new year", true, QDateTime(QDate(2026, 1, 1), QTime(0, 0), utc), 0.0);
        row("second day", true, QDateTime(QDate(2026, 1, 2), QTime(0, 0), utc), 1.0 / 365.0);
        row("leap year's 29 February", true, QDateTime(QDate(2028, 2, 29), QTime(0, 0), utc),
            59.0 / 366.0);
        row("last day, noon", true, QDateTime(QDate(2026, 12, 31), QTime(12, 0), utc),
            364.5 / 365.0);
    }
    void progress() {
        QFETCH(bool, year);
        QFETCH(QDateTime, now);
        QFETCH(double, expected);
        const double fraction =
            year ? YearProgressFace::fraction(now) : DayProgressFace::fraction(now);
        QVERIFY2(std::abs(fraction - expected) < 1e-9, qPrintable(QString::number(fraction)));
    }

    void worldClockOffsets_data() {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("expected");
        row("same", 0, QString());
        row("ahead", 9 * 3600, QStringLiteral("+9h"));
        row("behind", -5 * 3600, QStringLiteral("\u22125h"));
        row("half hour", 5 * 3600 + 1800, QStringLiteral("+5:30h"));
        row("behind by a quarter", -(3 * 3600 + 2700), QStringLiteral("\u22123:45h"));
    }
    void worldClockOffsets() {
        QFETCH(int, seconds);
        QTEST(WorldClockFace::offsetText(seconds), "expected");
    }

    void worldClockZonesStartHereAndGrowWithTheTile() {
        const QString here = QString::fromUtf8(QTimeZone::systemTimeZoneId());
        const QStringList small = WorldClockFace::zones(WidgetSize::small);
        const QStringList grand = WorldClockFace::zones(WidgetSize::grand);
        QCOMPARE(small.size(), 2);
        QCOMPARE(WorldClockFace::zones(WidgetSize::huge).size(), 9);
        QCOMPARE(grand.size(), 12);
        QCOMPARE(small.first(), here);
        QCOMPARE(grand.count(here), 1);
        QCOMPARE(grand.mid(0, 2), small);
        for (const QString& id : grand) {
            QVERIFY2(QTimeZone(id.toUtf8()).isValid(), qPrintable(id));
        }
    }

    void countdownMoment_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected");
        const QDateTime none;
        row("empty", QString(), none);
        row("blank", QStringLiteral("   "), none);
        row("words", QStringLiteral("next friday"), none);
        row("not a number", QStringLiteral("nan"), none);
        row("far beyond any calendar", QStringLiteral("1e300"), none);
        row("ISO with zone", QStringLiteral("2026-12-24T18:00:00Z"),
            QDateTime(QDate(2026, 12, 24), QTime(18, 0), QTimeZone::utc()));
        row("date alone is its midnight here", QStringLiteral("2026-12-24"),
            QDate(2026, 12, 24).startOfDay(QTimeZone::systemTimeZone()));
        row("seconds since 2001", QStringLiteral("86400"),
            QDateTime(QDate(2001, 1, 2), QTime(0, 0), QTimeZone::utc()));
        row("fractional seconds", QStringLiteral(" 0.5 "),
            QDateTime(QDate(2001, 1, 1), QTime(0, 0, 0, 500), QTimeZone::utc()));
    }
    void countdownMoment() {
        QFETCH(QString, text);
        QFETCH(QDateTime, expected);
        const std::optional<QDateTime> parsed = CountdownFace::moment(text);
        QCOMPARE(parsed.has_value(), expected.isValid());
        QCOMPARE(parsed.value_or(QDateTime()).toUTC(), expected.toUTC());
    }

    // Days, hours, minutes, seconds, and "ago" once passed.
    void countdownSplit_data() {
        QTest::addColumn<qint64>("secondsLeft");
        QTest::addColumn<QString>("parts");
        row("now", qint64(0), "0 0 0 0");
        row("one of each", qint64(86400 + 3600 + 60 + 1), "1 1 1 1");
        row("just under a day", qint64(86399), "0 23 59 59");
        row("a second ago", qint64(-1), "0 0 0 1 ago");
        row("two days ago", qint64(-2 * 86400), "2 0 0 0 ago");
    }
    void countdownSplit() {
        QFETCH(qint64, secondsLeft);
        const QDateTime now(QDate(2026, 6, 1), QTime(12, 0), QTimeZone::utc());
        const CountdownFace::Parts p = CountdownFace::split(now, now.addSecs(secondsLeft));
        QTEST(QStringLiteral("%1 %2 %3 %4%5")
                  .arg(p.days)
                  .arg(p.hours)
                  .arg(p.minutes)
                  .arg(p.seconds)
                  .arg(p.passed ? QStringLiteral(" ago") : QString()),
              "parts");
    }

    // Which control a press at a point of the face (as fractions of it) works; "none" beside them.
    void timerControls_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QString>("control");
        row("a small timer is one button", "timer", WidgetSize::small, "", QPointF(0.5, 0.5),
            "toggle");
        row("a paused small timer resets in its corner", "timer", WidgetSize::small, "paused=90",
            QPointF(0.95, 0.95), "reset");
        row("an idle large timer offers presets", "timer", WidgetSize::large, "",
            QPointF(0.1, 0.97), "minutes 3");
        row("the person's own lengths", "timer", WidgetSize::large, "presets=15,30,45,60",
            QPointF(0.1, 0.97), "minutes 15");
        row("lengths beyond two hours are not offered", "timer", WidgetSize::large,
            "presets=15,30,45,600", QPointF(0.1, 0.97), "minutes 3");
        row("a running large timer resets left", "timer", WidgetSize::large, "endsAt",
            QPointF(0.3, 0.97), "reset");
        row("a running large timer's dial pauses", "timer", WidgetSize::large, "endsAt",
            QPointF(0.5, 0.4), "toggle");
        row("a wide timer's digits are no button", "timer", WidgetSize::wide, "endsAt",
            QPointF(0.2, 0.5), "none");
        row("a wide pomodoro skips at the right", "pomodoro", WidgetSize::wide, "",
            QPointF(0.97, 0.81), "skip");
        row("a running stopwatch takes laps", "stopwatch", WidgetSize::large, "swAnchor",
            QPointF(0.3, 0.97), "lap");
        row("a stopped stopwatch resets there", "stopwatch", WidgetSize::large, "swAcc=12",
            QPointF(0.3, 0.97), "reset");
        row("without laps a running stopwatch only stops", "stopwatch", WidgetSize::large,
            "swAnchor laps=false", QPointF(0.3, 0.97), "none");
    }
    void timerControls() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        QFETCH(QPointF, at);
        QFETCH(QString, control);
        const FaceRegistry faces;
        WidgetMetadata metadata;
        metadata.kind = kind;
        FaceContext context = FaceContext::forKind(metadata, size);
        context.now = QDateTime(QDate(2026, 3, 9), QTime(9, 41), QTimeZone::utc());
        // A bare key is a moment a minute away from now.
        for (const QString& pair : state.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            context.settings.insert(pair.section(QLatin1Char('='), 0, 0),
                                    pair.contains(QLatin1Char('='))
                                        ? pair.section(QLatin1Char('='), 1)
                                        : DeskSettings::fromMoment(context.now.addSecs(
                                              pair == QLatin1String("endsAt") ? 60 : -60)));
        }
        const QRectF rect(QPointF(0, 0), context.points);
        const auto found =
            faces.face(kind)
                .spotAt(rect, QPointF(at.x() * rect.width(), at.y() * rect.height()), context)
                .control;
        QString shown = QStringLiteral("none");
        if (found) {
            const std::array<const char*, 5> words{"toggle", "reset", "skip", "lap", "minutes"};
            shown = QLatin1String(words.at(static_cast<std::size_t>(found->kind)));
            if (found->kind == DeskAction::Kind::minutes) {
                shown += QLatin1Char(' ') + QString::number(found->minutes);
            }
        }
        QCOMPARE(shown, control);
    }

    // What a press at a point of a large reminders tile (in points) marks: the first row, open,
    // and the second, done, each by its check mark.
    void reminderMarks_data() {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QString>("marks");
        row("an open reminder's check mark", "all", QPointF(8, 40), "done a");
        row("beside the mark is still the mark", "all", QPointF(18, 58), "done a");
        row("a done reminder's mark reopens it", "all", QPointF(8, 74), "open b");
        row("its title is no button", "all", QPointF(120, 40), "none");
        row("the header is no button", "all", QPointF(8, 10), "none");
        row("below the last row", "all", QPointF(8, 140), "none");
        row("no list chosen yet", "", QPointF(8, 40), "none");
    }
    void reminderMarks() {
        QFETCH(QString, list);
        QFETCH(QPointF, at);
        QFETCH(QString, marks);
        WidgetMetadata metadata;
        metadata.kind = QStringLiteral("reminders");
        FaceContext context = FaceContext::forKind(metadata, WidgetSize::large);
        context.now = QDateTime(QDate(2026, 3, 9), QTime(9, 41), QTimeZone::utc());
        context.settings.insert(QStringLiteral("list"), list);
        const WidgetSettings chosen{{QStringLiteral("list"), QStringLiteral("all")}};
        CalendarBoard board;
        board.reminders.insert(
            *RemindersFilter::of(chosen),
            {CalendarState::ready,
             {},
             QList<ReminderItem>{
                 {QStringLiteral("a"), QStringLiteral("Ferns"), std::nullopt, false, {}, {}, 0},
                 {QStringLiteral("b"), QStringLiteral("Bins"), std::nullopt, true, {}, {}, 0}}});
        context.calendar = &board;
        const auto spot =
            RemindersFace().spotAt(QRectF(QPointF(0, 0), context.points), at, context);
        const QString shown =
            spot.reminder
                ? (spot.reminder->isCompleted ? QStringLiteral("open ") : QStringLiteral("done ")) +
                      spot.reminder->id
                : QStringLiteral("none");
        QCOMPARE(shown, marks);
    }
};

QTEST_GUILESS_MAIN(TestTimeFaces)
#include "tst_timefaces.moc"
