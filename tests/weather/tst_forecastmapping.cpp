#include "TestRows.h"
#include "WeatherAnswers.h"
#include "weather/ForecastMapping.h"

#include <QTest>

#include <ctime>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

QDateTime utc(const char* text) {
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toUTC();
}

std::optional<WxLive> mapped(const QString& path, const QByteArray& value, const QDateTime& now) {
    const std::optional<OMResponse> response =
        OMResponse::fromAnswer(answerWith(forecastAnswer(), path, value));
    return response ? mapResponse(*response, now) : std::nullopt;
}

QString labels(const WxLive& live) {
    QStringList all;
    for (const WxLiveHour& hour : live.hourly) {
        all.append(hour.label);
    }
    return all.join(u',');
}

} // namespace

class TestForecastMapping : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // The machine nine hours ahead, so that its hour is never the place's by accident.
        qputenv("TZ", "Asia/Tokyo");
        tzset();
    }

    void mapsTheWholeAnswer() {
        const std::optional<WxLive> live = mapped({}, {}, utc("2026-11-24T12:10:00Z"));
        QVERIFY(live);
        QCOMPARE(live->city, u"Current Location"_s);
        QCOMPARE(live->temp, 0);
        QCOMPARE(live->feels, -4);
        QCOMPARE(live->hi, 6);
        QCOMPARE(live->lo, -1);
        QCOMPARE(live->condition, WxCondition::snow);
        QCOMPARE(live->code, std::optional<int>(71));
        QCOMPARE(live->isDay, false);
        QCOMPARE(live->sunrise.value_or(QDateTime()), utc("2026-11-24T06:45:00Z"));
        QCOMPARE(live->sunset.value_or(QDateTime()), utc("2026-11-24T15:30:00Z"));
        QCOMPARE(live->hourly.first(), (WxLiveHour{u"Now"_s, WxCondition::rain, 7}));
        QCOMPARE(live->daily.size(), 7);
        QCOMPARE(live->daily.first(), (WxLiveDay{QDate(2026, 11, 25), WxCondition::clear, -2, 7}));
        QCOMPARE(live->daily.last().date, QDate(2026, 12, 1));
        QVERIFY(!live->air);
        QCOMPARE(live->approximate, false);
    }

    // The hours start at the place's current hour, go at most 12 and never past the shortest list.
    void picksTheHours_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("labels");
        QTest::addColumn<int>("firstTemp");
        const QDateTime lateEvening = utc("2026-11-24T22:40:00Z");
        row("23:40 goes on into the next day", u""_s, QByteArray(), lateEvening,
            u"Now,00,01,02,03,04,05,06,07,08,09,10"_s, 12);
        row("the place's hour, not the machine's", u"utc_offset_seconds"_s, QByteArray("-18000"),
            utc("2026-11-24T15:10:00Z"), u"Now,11,12,13,14,15,16,17,18,19,20,21"_s, 5);
        const QDateTime morning = utc("2026-11-24T00:30:00Z");
        const QString fromNine = u"Now,10,11,12,13,14,15,16,17,18,19,20"_s;
        row("no offset: the machine's", u"utc_offset_seconds"_s, QByteArray(), morning, fromNine,
            5);
        row("an offset as text is none", u"utc_offset_seconds"_s, QByteArray("\"3600\""), morning,
            fromNine, 5);
        row("an offset no zone has", u"utc_offset_seconds"_s, QByteArray("999999"), morning,
            fromNine, 5);
        row("an hour not in the list starts at the first", u""_s, QByteArray(),
            utc("2026-12-30T10:00:00Z"), u"Now,01,02,03,04,05,06,07,08,09,10,11"_s, 0);
        row("near the end of the list", u""_s, QByteArray(), utc("2026-11-25T15:05:00Z"),
            u"Now,17,18,19,20,21,22,23"_s, 20);
        const QDateTime firstHour = utc("2026-11-23T23:10:00Z");
        row("the shortest list decides, half away from zero", u"hourly.temperature_2m"_s,
            QByteArray("[-2.5,2.5,1]"), firstHour, u"Now,01,02"_s, -3);
        row("a null ends the list", u"hourly.temperature_2m"_s, QByteArray("[1,2,null,4]"),
            firstHour, u"Now,01"_s, 1);
        row("a code with a fraction ends the list", u"hourly.weather_code"_s,
            QByteArray("[0,61.5]"), firstHour, u"Now"_s, 0);
        row("a short time text", u"hourly.time"_s, QByteArray(R"(["2026","2026-11-24T1"])"),
            firstHour, u"Now,1"_s, 0);
    }
    void picksTheHours() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(QDateTime, now);
        QFETCH(QString, labels);
        QFETCH(int, firstTemp);
        const std::optional<WxLive> live = mapped(path, value, now);
        QVERIFY(live);
        QCOMPARE(::labels(*live), labels);
        QCOMPARE(live->hourly.first().temp, firstTemp);
    }

    void picksTheDays_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("count");
        QTest::addColumn<QDate>("first");
        row("an unparsable date is skipped", u"daily.time"_s,
            QByteArray(R"(["2026-11-24","25.11.2026","2026-11-26"])"), 1, QDate(2026, 11, 26));
        row("fewer than two codes: none", u"daily.weather_code"_s, QByteArray("[1]"), 0, QDate());
        row("a minimum as text ends its list", u"daily.temperature_2m_min"_s,
            QByteArray(R"([1,2,"3",4])"), 1, QDate(2026, 11, 25));
        row("more than the service sends", u"daily.time"_s,
            QByteArray(R"(["2026-11-24","2026-11-25","2026-11-26","2026-11-27","2026-11-28",)"
                       R"("2026-11-29","2026-11-30","2026-12-01","2026-12-02","2026-12-03"])"),
            7, QDate(2026, 11, 25));
    }
    void picksTheDays() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(int, count);
        QFETCH(QDate, first);
        const std::optional<WxLive> live = mapped(path, value, utc("2026-11-24T12:00:00Z"));
        QVERIFY(live);
        QCOMPARE(live->daily.size(), count);
        QCOMPARE(live->daily.value(0).date, first);
    }

    void readsMissingAndOddFieldsLeniently_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("feels");
        QTest::addColumn<bool>("isDay");
        QTest::addColumn<bool>("hasSunrise");
        row("no apparent temperature: the temperature", u"current.apparent_temperature"_s,
            QByteArray(), 0, false, true);
        row("is_day as text: day", u"current.is_day"_s, QByteArray("\"no\""), -4, true, true);
        row("sunrise without a date", u"daily.sunrise"_s, QByteArray(R"(["07:45"])"), -4, false,
            false);
        row("sunrise not a list", u"daily.sunrise"_s, QByteArray("\"2026-11-24T07:45\""), -4, false,
            false);
        row("sunrise a minute too many", u"daily.sunrise"_s, QByteArray(R"(["2026-11-24T07:61"])"),
            -4, false, false);
    }
    void readsMissingAndOddFieldsLeniently() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(int, feels);
        QFETCH(bool, isDay);
        QFETCH(bool, hasSunrise);
        const std::optional<WxLive> live = mapped(path, value, utc("2026-11-24T12:00:00Z"));
        QVERIFY(live);
        QCOMPARE(live->feels, feels);
        QCOMPARE(live->isDay, isDay);
        QCOMPARE(live->sunrise.has_value(), hasSunrise);
    }

    void refusesMalformedAnswers_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        row("no daily maxima", u"daily.temperature_2m_max"_s, QByteArray("[]"));
        row("no daily minima", u"daily.temperature_2m_min"_s, QByteArray());
        row("no current block", u"current"_s, QByteArray());
        row("a current temperature as text", u"current.temperature_2m"_s, QByteArray("\"3\""));
        row("no hours", u"hourly.time"_s, QByteArray("[]"));
        row("hourly codes as text", u"hourly.weather_code"_s, QByteArray(R"(["0"])"));
    }
    void refusesMalformedAnswers() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QVERIFY(!mapped(path, value, utc("2026-11-24T12:00:00Z")));
    }

    void refusesWhatIsNoObject_data() {
        QTest::addColumn<QByteArray>("body");
        row("an array", QByteArray("[{}]"));
        row("cut short", forecastAnswer().left(200));
    }
    void refusesWhatIsNoObject() {
        QFETCH(QByteArray, body);
        QVERIFY(!OMResponse::fromAnswer(body));
    }
};

QTEST_GUILESS_MAIN(TestForecastMapping)
#include "tst_forecastmapping.moc"
