#include "TestRows.h"
#include "ambient/CompanionMind.h"

#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::row;
using Mood = CompanionMind::Mood;

Q_DECLARE_METATYPE(tw::CompanionMind::Mood)

namespace {

// A day told as steps a second apart: "p x,y" the pointer there, "k" a poke, "w N" N seconds
// pass, "t HH" the clock reads that hour. The mind is updated after every step.
Mood live(const QString& script, const CompanionMind::Hours& hours, QPointF* gaze = nullptr) {
    CompanionMind mind;
    std::chrono::nanoseconds now = 0s;
    QTime clock(12, 0);
    for (const QString& step : script.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList words = step.trimmed().split(QLatin1Char(' '));
        const QString& verb = words.front();
        if (verb == QLatin1String("p")) {
            const QStringList xy = words.at(1).split(QLatin1Char(','));
            mind.seePointer(QPointF(xy.at(0).toDouble(), xy.at(1).toDouble()), now);
        } else if (verb == QLatin1String("k")) {
            mind.poke(now);
        } else if (verb == QLatin1String("t")) {
            clock = QTime(words.at(1).toInt(), 0);
        }
        const int seconds = verb == QLatin1String("w") ? words.at(1).toInt() : 1;
        for (int s = 0; s < seconds; ++s) {
            now += 1s;
            mind.update(now, clock, hours);
        }
    }
    if (gaze != nullptr) {
        *gaze = mind.gaze();
    }
    return mind.mood();
}

} // namespace

class TestCompanionMind : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void moods_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<Mood>("mood");
        row("left alone by day it idles", "w 60", Mood::idle);
        row("a pointer moving near is watched", "p 100,-40", Mood::watching);
        row("one far away is not", "p 2000,0", Mood::idle);
        row("a pointer that stops is soon forgotten", "p 100,0; w 6", Mood::idle);
        row("a poke makes it happy", "p 10,0; k", Mood::happy);
        row("happiness passes", "k; w 4", Mood::idle);
        row("nobody near for twenty minutes: a nap", "w 1200", Mood::sleeping);
        row("a pointer near ends the nap", "w 1200; p 50,50", Mood::waking);
        row("bedtime: asleep", "t 23", Mood::sleeping);
        row("at night a pointer does not wake it", "t 23; w 5; p 50,50; p 60,50", Mood::sleeping);
        row("a poke does", "t 23; w 5; k", Mood::waking);
        row("woken at night, up for a while", "t 2; w 5; k; w 30", Mood::idle);
        row("then it dozes off again", "t 2; w 5; k; w 61", Mood::sleeping);
        row("morning wakes it", "t 6; w 600; t 7", Mood::waking);
        row("and it stays up", "t 6; w 600; t 7; w 10", Mood::idle);
    }
    void moods() {
        QFETCH(QString, script);
        QFETCH(Mood, mood);
        QCOMPARE(live(script, CompanionMind::Hours{}), mood);
    }

    void hours_data() {
        QTest::addColumn<QString>("bedtime");
        QTest::addColumn<QString>("wakes");
        QTest::addColumn<int>("hour");
        QTest::addColumn<bool>("night");
        row("before bedtime", "23", "7", 22, false);
        row("at bedtime", "23", "7", 23, true);
        row("past midnight", "23", "7", 3, true);
        row("the waking hour is day", "23", "7", 7, false);
        row("a bedtime after midnight", "0", "6", 23, false);
        row("a bedtime after midnight, in the night", "0", "6", 1, true);
        row("never sleeps", "never", "7", 3, false);
        row("nonsense: the defaults", "late", "soon", 3, true);
        row("an hour out of range: the default", "25", "7", 3, true);
    }
    void hours() {
        QFETCH(QString, bedtime);
        QFETCH(QString, wakes);
        QFETCH(int, hour);
        QFETCH(bool, night);
        const auto hours = CompanionMind::Hours::from(
            {{QStringLiteral("bedtime"), bedtime}, {QStringLiteral("wakes"), wakes}});
        QCOMPARE(hours.isNight(QTime(hour, 30)), night);
    }

    // Eyes turn towards the pointer, never past their corners, and look ahead otherwise.
    void gaze() {
        QPointF gaze;
        live(QStringLiteral("p 300,-100"), {}, &gaze);
        QVERIFY(gaze.x() > 0.6 && gaze.x() < 1 && gaze.y() < 0 && gaze.y() > -0.5);
        live(QStringLiteral("p 300,-100; w 10"), {}, &gaze);
        QCOMPARE(gaze, QPointF());
    }
};

QTEST_GUILESS_MAIN(TestCompanionMind)
#include "tst_companionmind.moc"
