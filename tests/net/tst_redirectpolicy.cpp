#include "TestRows.h"
#include "net/RedirectPolicy.h"

#include <QTest>
#include <QUrl>

using namespace tw;
using tw::test::row;

class TestRedirectPolicy : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void classifyHost_data() {
        QTest::addColumn<QString>("host");
        QTest::addColumn<AddressClass>("expected");
        row("public v4", "93.184.216.34", AddressClass::Public);
        row("public v6", "2001:4860::8888", AddressClass::Public);
        row("public name", "api.example.org", AddressClass::Public);
        row("127/8 edge", "127.255.255.254", AddressClass::Loopback);
        row("0/8 reaches this machine", "0.0.0.0", AddressClass::Loopback);
        row("::1 bracketed", "[::1]", AddressClass::Loopback);
        row("::", "::", AddressClass::Loopback);
        row("localhost any case, trailing dot", "LocalHost.", AddressClass::Loopback);
        row("a name under localhost", "api.localhost", AddressClass::Loopback);
        row("10/8", "10.1.2.3", AddressClass::Private);
        row("172.16/12 low edge", "172.16.0.1", AddressClass::Private);
        row("172.16/12 high edge", "172.31.255.255", AddressClass::Private);
        row("just past 172.16/12", "172.32.0.1", AddressClass::Public);
        row("192.168/16", "192.168.1.1", AddressClass::Private);
        row("fc00::/7 (fd..)", "fd12:3456::1", AddressClass::Private);
        row("169.254/16", "169.254.169.254", AddressClass::LinkLocal);
        row("fe80::/10", "fe80::1", AddressClass::LinkLocal);
        row("fe80::/10 high edge", "febf::1", AddressClass::LinkLocal);
        row("v4-mapped loopback", "::ffff:127.0.0.1", AddressClass::Loopback);
        row("v4-mapped private", "::ffff:10.0.0.1", AddressClass::Private);
    }
    void classifyHost() {
        QFETCH(QString, host);
        QFETCH(AddressClass, expected);
        QCOMPARE(tw::classifyHost(host), expected);
    }

    void redirectRefusal_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<AddressClass>("first");
        QTest::addColumn<bool>("refused");
        const auto pub = AddressClass::Public;
        const auto loop = AddressClass::Loopback;
        row("public to public", "https://a.org/", "https://b.org/x", pub, false);
        row("http to https", "http://a.org/", "https://a.org/", pub, false);
        row("https to http", "https://a.org/", "http://a.org/", pub, true);
        row("public to loopback", "https://a.org/", "https://127.0.0.1/", pub, true);
        row("public to private", "https://a.org/", "https://192.168.0.1/", pub, true);
        row("public to link-local", "https://a.org/", "https://[fe80::1]/", pub, true);
        row("loopback start to loopback", "http://127.0.0.1/", "http://localhost/", loop, false);
        row("local start still no downgrade", "https://127.0.0.1/", "http://127.0.0.1/", loop,
            true);
    }
    void redirectRefusal() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(AddressClass, first);
        QFETCH(bool, refused);
        const QUrl target(to);
        QCOMPARE(!tw::redirectRefusal(QUrl(from), target, first, tw::classifyHost(target.host()))
                      .isEmpty(),
                 refused);
    }
};

QTEST_GUILESS_MAIN(TestRedirectPolicy)
#include "tst_redirectpolicy.moc"
