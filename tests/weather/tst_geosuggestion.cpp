#include "TestRows.h"
#include "WeatherAnswers.h"
#include "weather/GeoSuggestion.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray answer = R"({"results":[
    {"id":2950159,"name":"Berlin","latitude":52.52437,"longitude":13.41053,"country_code":"DE",
     "admin1":"Land Berlin","country":"Deutschland","population":3426354},
    {"id":5083330,"name":"Berlin","latitude":44.46867,"longitude":-71.18508,"country_code":"US",
     "admin1":"New Hampshire","country":"United States"}],"generationtime_ms":0.9})";

QString summary(const QList<GeoSuggestion>& suggestions) {
    QStringList lines;
    for (const GeoSuggestion& s : suggestions) {
        lines.append(u"%1 %2 (%3) %4 %5,%6"_s.arg(s.id)
                         .arg(s.name, s.detail(), s.countryCode.value_or(u"-"_s))
                         .arg(s.latitude)
                         .arg(s.longitude));
    }
    return lines.join(u'|');
}

} // namespace

class TestGeoSuggestion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decodesTheResults_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("summary");
        const QString second =
            u"5083330 Berlin (New Hampshire, United States) US 44.4687,-71.1851"_s;
        row("as sent", u""_s, QByteArray(),
            u"2950159 Berlin (Land Berlin, Deutschland) DE 52.5244,13.4105|"_s + second);
        row("no id, no region, code as a number", u"results"_s,
            QByteArray(R"([{"name":"Oslo","latitude":59.9,"longitude":10.7,"country":"Norge",)"
                       R"("country_code":47}])"),
            u"0 Oslo (Norge) - 59.9,10.7"_s);
        row("left out: no name, coordinates as text or off the globe", u"results"_s,
            QByteArray(R"([{"latitude":1,"longitude":1},{"name":"A","latitude":"1","longitude":1},)"
                       R"({"name":"B","latitude":90.5,"longitude":1},"Berlin",)"
                       R"({"id":7,"name":"C","latitude":-90,"longitude":180}])"),
            u"7 C () - -90,180"_s);
        row("no results", u"results"_s, QByteArray(), u""_s);
        row("results not a list", u"results"_s, QByteArray(R"({"name":"Berlin"})"), u""_s);
    }
    void decodesTheResults() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(QString, summary);
        QCOMPARE(::summary(GeoSuggestion::fromAnswer(answerWith(answer, path, value))), summary);
    }

    void keepsAtMostSixResults() {
        QByteArray many = R"({"results":[)";
        for (int i = 0; i < 50; ++i) {
            many += (i > 0 ? "," : "") + QByteArray(R"({"name":"P","latitude":1,"longitude":2})");
        }
        const QList<GeoSuggestion> suggestions = GeoSuggestion::fromAnswer(many + "]}");
        QCOMPARE(suggestions.size(), GeoSuggestion::maxResults);
        QCOMPARE(suggestions.last().id, 5);
    }
};

QTEST_GUILESS_MAIN(TestGeoSuggestion)
#include "tst_geosuggestion.moc"
