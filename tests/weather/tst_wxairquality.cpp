#include "TestRows.h"
#include "WeatherAnswers.h"
#include "weather/WxAirQuality.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

using Band = WxAirQuality::Band;

namespace {

const QByteArray answer = R"({"latitude":52.52,"longitude":13.42,"current_units":{"pm10":"μg/m³"},
    "current":{"time":"2026-11-24T12:00","interval":3600,"european_aqi":37,"pm2_5":9.4,"pm10":14.1}})";

} // namespace

class TestWxAirQuality : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bands_data() {
        QTest::addColumn<QList<int>>("indices");
        QTest::addColumn<Band>("band");
        row("good", QList<int>{-3, 0, 19}, Band::good);
        row("fair", QList<int>{20, 39}, Band::fair);
        row("moderate", QList<int>{40, 59}, Band::moderate);
        row("poor", QList<int>{60, 79}, Band::poor);
        row("very poor", QList<int>{80, 99}, Band::veryPoor);
        row("extreme", QList<int>{100, 500}, Band::extreme);
    }
    void bands() {
        QFETCH(QList<int>, indices);
        QFETCH(Band, band);
        for (int index : indices) {
            QVERIFY2((WxAirQuality{index, 0, 0}.band() == band),
                     qPrintable(QString::number(index)));
        }
    }

    void decodesTheAnswer_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<std::optional<WxAirQuality>>("air");
        row("as sent", u""_s, QByteArray(), std::optional(WxAirQuality{37, 9.4, 14.1}));
        row("no particles", u"current.pm2_5"_s, QByteArray(),
            std::optional(WxAirQuality{37, 0, 14.1}));
        row("particles as text", u"current.pm10"_s, QByteArray("\"14\""),
            std::optional(WxAirQuality{37, 9.4, 0}));
        row("no index", u"current.european_aqi"_s, QByteArray(), std::optional<WxAirQuality>());
        row("index with a fraction", u"current.european_aqi"_s, QByteArray("37.5"),
            std::optional<WxAirQuality>());
        row("index below zero", u"current.european_aqi"_s, QByteArray("-1"),
            std::optional<WxAirQuality>());
        row("current not an object", u"current"_s, QByteArray("[37]"),
            std::optional<WxAirQuality>());
    }
    void decodesTheAnswer() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(std::optional<WxAirQuality>, air);
        QVERIFY(WxAirQuality::fromAnswer(answerWith(answer, path, value)) == air);
    }
};

QTEST_GUILESS_MAIN(TestWxAirQuality)
#include "tst_wxairquality.moc"
