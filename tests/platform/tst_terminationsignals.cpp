#include "platform/linux/TerminationSignals.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

using namespace tw;

namespace {

bool isDefault(int signal) {
    struct sigaction now = {};
    ::sigaction(signal, nullptr, &now);
    return now.sa_handler == SIG_DFL;
}

} // namespace

class TestTerminationSignals : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Each signal arrives once on the event loop; the next one of its kind would end the
    // program, and nothing is caught once the watcher is gone.
    void arrivesOnceOnTheEventLoop_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM, a logout") << SIGTERM;
        QTest::newRow("SIGINT, Ctrl+C") << SIGINT;
        QTest::newRow("SIGHUP, a closed terminal") << SIGHUP;
    }
    void arrivesOnceOnTheEventLoop() {
        QFETCH(int, signal);
        {
            TerminationSignals termination;
            QSignalSpy received(&termination, &TerminationSignals::received);
            QVERIFY(!isDefault(signal));
            ::raise(signal);
            QVERIFY(received.isEmpty());
            QTRY_COMPARE(received.size(), 1);
            QCOMPARE(received.first().first().toInt(), signal);
            QVERIFY(isDefault(signal));
        }
        QVERIFY(isDefault(SIGTERM) && isDefault(SIGINT) && isDefault(SIGHUP));
    }
};

QTEST_GUILESS_MAIN(TestTerminationSignals)
#include "tst_terminationsignals.moc"
