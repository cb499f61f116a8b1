#include "ScriptedReadings.h"
#include "readings/NetworkSampler.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

class TestNetworkSampler : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Rates over the time between reads; 0 on the first read, for a new interface and for a
    // counter that went back. Interfaces that are up come first, the busiest first.
    void ratesBetweenReads() {
        ScriptedSystemSource source;
        source.network = {
            {{u"eth0"_s, 1000, 0, true, false},
             {u"wlan0"_s, 0, 0, true, true},
             {u"usb0"_s, 5000, 5000, false, false}},
            {{u"eth0"_s, 3000, 500, true, false},
             {u"wlan0"_s, 100000, 0, true, true},
             {u"usb0"_s, 10, 10, false, false},
             {u"tun0"_s, 9000, 9000, true, false}},
        };
        NetworkSampler sampler(source);
        const QDateTime start(QDate(2026, 3, 14), QTime(9, 0));
        const NetworkSnapshot first = sampler.sample(start);
        QVERIFY(std::all_of(first.interfaces.begin(), first.interfaces.end(),
                            [](const InterfaceRate& r) { return r.receivedPerSecond == 0; }));
        const NetworkSnapshot second = sampler.sample(start.addSecs(2));
        QStringList order;
        for (const InterfaceRate& rate : second.interfaces) {
            order << rate.interface;
        }
        QCOMPARE(order, QStringList({u"wlan0"_s, u"eth0"_s, u"tun0"_s, u"usb0"_s}));
        QCOMPARE(second.interfaces.at(1).receivedPerSecond, 1000.0);
        QCOMPARE(second.interfaces.at(1).sentPerSecond, 250.0);
        QCOMPARE(second.interfaces.at(1).received, quint64(3000));
        QCOMPARE(second.interfaces.at(2).receivedPerSecond, 0.0);
        QCOMPARE(second.interfaces.at(3).receivedPerSecond, 0.0);
        QCOMPARE(second.primary()->interface, u"wlan0"_s);
    }
};

QTEST_GUILESS_MAIN(TestNetworkSampler)
#include "tst_networksampler.moc"
