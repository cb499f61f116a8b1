#include "TestRows.h"
#include "net/Endpoints.h"

#include <QTest>

using namespace tw;
using tw::test::row;
using Service = Endpoints::Service;

class TestEndpoints : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void url_data() {
        QTest::addColumn<QString>("base");
        QTest::addColumn<Service>("service");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        row("public forecast", "", Service::Forecast, "/v1/forecast",
            "https://api.open-meteo.com/v1/forecast");
        row("public ipwho root", "", Service::IpWho, "/", "https://ipwho.is/");
        row("currency under a local base", "http://127.0.0.1:8080", Service::Currency, "/v1/latest",
            "http://127.0.0.1:8080/currency/v1/latest");
        row("under a local base", "http://127.0.0.1:8080", Service::Forecast, "/v1/forecast",
            "http://127.0.0.1:8080/forecast/v1/forecast");
        row("base with a path and a slash", "http://127.0.0.1:8080/stub/", Service::IpApi, "/json/",
            "http://127.0.0.1:8080/stub/ipapi/json/");
        row("speed test under a local base", "http://h", Service::SpeedTest, "/__down",
            "http://h/speedtest/__down");
        row("air quality name", "http://h", Service::AirQuality, "v1/air-quality",
            "http://h/air-quality/v1/air-quality");
        row("not a URL keeps the public base", "not a url", Service::Geocoding, "/v1/search",
            "https://geocoding-api.open-meteo.com/v1/search");
        row("other scheme keeps the public base", "ftp://127.0.0.1", Service::IpInfo, "/json",
            "https://ipinfo.io/json");
    }
    void url() {
        QFETCH(QString, base);
        QFETCH(Service, service);
        QFETCH(QString, path);
        QFETCH(QString, expected);
        const Endpoints endpoints = base.isEmpty() ? Endpoints() : Endpoints::under(base);
        QCOMPARE(endpoints.url(service, path).toString(), expected);
    }

    void web_data() {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("expected");
        row("public stays", "", "https://api.example.com/v1/x?a=1",
            "https://api.example.com/v1/x?a=1");
        row("host, path and query under the base", "http://127.0.0.1:8080/stub/",
            "https://api.example.com/v1/x?ids=a,b&c=d",
            "http://127.0.0.1:8080/stub/web/api.example.com/v1/x?ids=a,b&c=d");
        row("port and escapes kept", "http://h", "https://h.example:8443/a%20b?q=%26",
            "http://h/web/h.example:8443/a%20b?q=%26");
        row("no path", "http://h", "https://h.example", "http://h/web/h.example");
    }
    void web() {
        QFETCH(QString, base);
        QFETCH(QString, address);
        QFETCH(QString, expected);
        const Endpoints endpoints = base.isEmpty() ? Endpoints() : Endpoints::under(base);
        QCOMPARE(endpoints.web(QUrl(address)).toString(QUrl::FullyEncoded), expected);
    }

    void everyServiceHasItsOwnName() {
        QSet<QString> names;
        const Endpoints local = Endpoints::under(QStringLiteral("http://127.0.0.1:1"));
        for (Service service : Endpoints::allServices) {
            names.insert(Endpoints::name(service));
            QCOMPARE(Endpoints().base(service).scheme(), QStringLiteral("https"));
            QCOMPARE(local.base(service).host(), QStringLiteral("127.0.0.1"));
        }
        QCOMPARE(names.size(), qsizetype(Endpoints::allServices.size()));
    }

    void environmentReplacesEveryBase() {
        qputenv("TKW_ENDPOINT_BASE", "http://127.0.0.1:9/e2e");
        const Endpoints endpoints = Endpoints::fromEnvironment();
        qunsetenv("TKW_ENDPOINT_BASE");
        QCOMPARE(endpoints, Endpoints::under(QStringLiteral("http://127.0.0.1:9/e2e")));
        QCOMPARE(endpoints.base(Service::IpInfo).toString(),
                 QStringLiteral("http://127.0.0.1:9/e2e/ipinfo"));
        QCOMPARE(Endpoints::fromEnvironment(), Endpoints());
    }
};

QTEST_GUILESS_MAIN(TestEndpoints)
#include "tst_endpoints.moc"
