#include "TestRows.h"
#include "speed/SpeedMeter.h"

#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::row;

class TestSpeedMeter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A line of 10 Mbit/s polled every 0.1 s: bytes flow from `from` to `until` seconds, with
    // `burst` bytes at the first poll.
    void figures_data() {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("until");
        QTest::addColumn<qint64>("burst");
        QTest::addColumn<double>("end");
        QTest::addColumn<double>("result"); // -1: none
        QTest::addColumn<double>("liveLow");
        QTest::addColumn<double>("liveHigh");
        row("steady", 0.0, 99.0, qint64(0), 3.0, 10.0, 9.9, 10.1);
        row("the first second never counts", 0.0, 99.0, qint64(5'000'000), 3.0, 10.0, 9.9, 10.1);
        row("a slow first answer is measured from its first bytes", 1.5, 99.0, qint64(0), 3.0, 10.0,
            9.9, 10.1);
        row("nothing before it settles", 0.0, 99.0, qint64(0), 1.1, -1.0, 5.0, 10.1);
        row("a silent line", 99.0, 99.0, qint64(0), 3.0, -1.0, 0.0, 0.0);
        row("gone quiet: the needle falls without jumping", 0.0, 2.5, qint64(0), 2.7,
            10.0 * 1.5 / 1.7, 0.5, 9.5);
    }
    void figures() {
        QFETCH(double, from);
        QFETCH(double, until);
        QFETCH(qint64, burst);
        QFETCH(double, end);
        QFETCH(double, result);
        QFETCH(double, liveLow);
        QFETCH(double, liveHigh);
        SpeedMeter meter;
        const int polls = static_cast<int>(std::lround(end / 0.1));
        for (int k = 1; k <= polls; ++k) {
            const double t = k / 10.0;
            const double flowing = std::max(0.0, std::min(t, until) - from);
            meter.poll(t, burst + static_cast<qint64>(std::llround(flowing * 1'250'000)));
        }
        if (result < 0) {
            QVERIFY(!meter.result());
        } else {
            QVERIFY(meter.result());
            QVERIFY2(std::abs(*meter.result() - result) < 1e-6,
                     qPrintable(QString::number(*meter.result())));
        }
        QVERIFY2(meter.liveMbps() >= liveLow && meter.liveMbps() <= liveHigh,
                 qPrintable(QString::number(meter.liveMbps())));
    }
};

QTEST_GUILESS_MAIN(TestSpeedMeter)
#include "tst_speedmeter.moc"
