#include "TestRows.h"
#include "weather/IPLocation.h"

#include <QTest>

using namespace tw;
using tw::test::row;

class TestIPLocation : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Expected "lat,lon|city|country|organisation", or "" for no location.
    void parse_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("expected");
        row("ipapi", QByteArray(R"({"city":"Munich","country":"DE","country_code":"DE",
            "latitude":48.1374,"longitude":11.5755,"org":"Deutsche Telekom AG"})"),
            "48.1374,11.5755|Munich|DE|Deutsche Telekom AG");
        row("ipwho", QByteArray(R"({"success":true,"city":"Lyon","country":"France",
            "country_code":"FR","latitude":"45.76","longitude":"4.84",
            "connection":{"isp":"Orange S.A."}})"),
            "45.76,4.84|Lyon|FR|Orange S.A.");
        row("ipinfo loc", QByteArray(R"({"city":"Munich","country":"DE","loc":"48.13,11.58",
            "org":"AS3320 Deutsche Telekom AG"})"),
            "48.13,11.58|Munich|DE|AS3320 Deutsche Telekom AG");
        row("countryCode key, isp last", QByteArray(R"({"lat":1,"latitude":10,"longitude":20,
            "countryCode":"NL","country":"Netherlands","isp":"KPN","city":""})"),
            "10,20||NL|KPN");
        row("country of three letters", QByteArray(R"({"latitude":10,"longitude":20,
            "country":"DEU"})"),
            "10,20|||");
        row("success false", QByteArray(R"({"success":false,"latitude":10,"longitude":20})"), "");
        row("zero zero", QByteArray(R"({"latitude":0,"longitude":0,"city":"Null Island"})"), "");
        row("latitude off the globe", QByteArray(R"({"latitude":90.5,"longitude":20})"), "");
        row("longitude off the globe", QByteArray(R"({"loc":"10,-180.1"})"), "");
        row("words for numbers", QByteArray(R"({"latitude":"north","longitude":"east"})"), "");
        row("no object", QByteArray("[48.13,11.58]"), "");
    }
    void parse() {
        QFETCH(QByteArray, answer);
        QFETCH(QString, expected);
        const std::optional<IPLocation> place = parseIPLocation(answer);
        const QString got = place
                                ? QStringLiteral("%1,%2|%3|%4|%5")
                                      .arg(place->latitude)
                                      .arg(place->longitude)
                                      .arg(place->city.value_or(QString()),
                                           place->country.value_or(QString()), place->organisation)
                                : QString();
        QCOMPARE(got, expected);
    }

    void proxy_data() {
        QTest::addColumn<QString>("organisation");
        QTest::addColumn<bool>("proxy");
        row("a VPN by its word", "Acme VPN Ltd", true);
        row("upper case relay", "iCloud Private Relay", true);
        row("hosting", "Some Hosting GmbH", true);
        row("tor with its space", "Tor Exit Relays", true);
        row("tor inside a word", "Motorola Mobility", false);
        row("a home provider", "Deutsche Telekom AG", false);
        row("none", "", false);
    }
    void proxy() {
        QFETCH(QString, organisation);
        QFETCH(bool, proxy);
        QCOMPARE(looksLikeProxy(organisation), proxy);
    }

    void distance() {
        // Munich to Berlin is about 504 km; a degree of latitude about 111 km.
        QVERIFY(qAbs(distanceKm(48.137, 11.575, 52.520, 13.405) - 504) < 5);
        QVERIFY(qAbs(distanceKm(10, 20, 11, 20) - 111.2) < 0.5);
        QCOMPARE(distanceKm(10, 20, 10, 20), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestIPLocation)
#include "tst_iplocation.moc"
