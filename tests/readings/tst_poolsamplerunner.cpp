#include "readings/PoolSampleRunner.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace tw;

class TestPoolSampleRunner : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The work runs off the caller's thread, the result comes back on it; a receiver gone by
    // then hears nothing, and a runner that goes waits for the work in progress.
    void runsAwayAndAnswersAtHome() {
        QThread* worker = nullptr;
        QThread* answered = nullptr;
        int gone = 0;
        bool finished = false;
        {
            PoolSampleRunner runner;
            runSample(
                runner, this, [&worker] { return (worker = QThread::currentThread()) != nullptr; },
                [&answered](bool) { answered = QThread::currentThread(); });
            auto leaving = std::make_unique<QObject>();
            runner.run([] {}, leaving.get(), [&gone] { ++gone; });
            leaving.reset();
            QTRY_VERIFY(answered != nullptr);
            QVERIFY(worker != QThread::currentThread());
            QCOMPARE(answered, QThread::currentThread());

            QSemaphore started;
            QSemaphore release;
            runner.run(
                [&] {
                    started.release();
                    release.acquire();
                    finished = true;
                },
                this, [] {});
            started.acquire();
            release.release();
            // Leaving the scope destroys the runner while the work may still run.
        }
        QVERIFY(finished);
        QCoreApplication::processEvents();
        QCOMPARE(gone, 0);
    }
};

QTEST_GUILESS_MAIN(TestPoolSampleRunner)
#include "tst_poolsamplerunner.moc"
