// The fakes keep their real counterparts' contracts: the production scheduler on a real event loop
// (short real waits) and the tests' manual one on virtual time, which also moves its clock as time
// passes; the defaults in memory and in a settings file.
#include "ManualScheduler.h"
#include "platform/QtScheduler.h"
#include "platform/SettingsDefaults.h"
#include "platform/null/MemoryDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace std::chrono_literals;
using tw::test::ManualClock;
using tw::test::ManualScheduler;

class TestFakes : public QObject {
    Q_OBJECT

    ManualClock m_clock;
    ManualScheduler m_manual{&m_clock};
    tw::QtScheduler m_qt;
    bool m_real = false;

    tw::Scheduler& scheduler() { return m_real ? static_cast<tw::Scheduler&>(m_qt) : m_manual; }
    void pass(std::chrono::milliseconds time) {
        m_real ? QTest::qWait(int(time.count())) : m_manual.advance(time);
    }
    // Real time on a loaded machine may run late; virtual time never does.
    bool passUntil(const std::function<bool()>& done) {
        for (int i = 0; i < 1000 && !done(); ++i) {
            pass(5ms);
        }
        return done();
    }

private Q_SLOTS:
    void init() {
        QFETCH_GLOBAL(bool, real);
        m_real = real;
    }
    void initTestCase_data() {
        QTest::addColumn<bool>("real");
        QTest::newRow("fake") << false;
        QTest::newRow("real") << true;
    }

    void singleShotFiresOnceInDueOrder() {
        QStringList fired;
        auto late =
            scheduler().singleShot(500ms, 0ms, nullptr, [&] { fired << QStringLiteral("late"); });
        auto early =
            scheduler().singleShot(5ms, 0ms, nullptr, [&] { fired << QStringLiteral("early"); });
        QVERIFY(late.isActive() && early.isActive());
        QVERIFY(passUntil([&] { return !fired.isEmpty(); }));
        QCOMPARE(fired, QStringList{QStringLiteral("early")});
        QVERIFY(!early.isActive());
        QVERIFY(late.isActive());
        pass(600ms);
        QCOMPARE(fired, (QStringList{QStringLiteral("early"), QStringLiteral("late")}));
    }

    void repeatingFiresUntilCancelled() {
        int count = 0;
        auto task = scheduler().repeating(5ms, 1ms, nullptr, [&] { ++count; });
        QVERIFY(passUntil([&] { return count >= 2; }));
        task.cancel();
        const int seen = count;
        pass(30ms);
        QCOMPARE(count, seen);
        QVERIFY(!task.isActive());
    }

    // Neither a handle that goes nor a context destroyed first lets the action run.
    void destroyedHandleOrContextCancels() {
        int count = 0;
        {
            auto gone = scheduler().singleShot(5ms, 0ms, nullptr, [&] { ++count; });
        }
        auto context = std::make_unique<QObject>();
        auto task = scheduler().repeating(5ms, 0ms, context.get(), [&] { ++count; });
        context.reset();
        pass(30ms);
        QCOMPARE(count, 0);
    }

    void actionMayRescheduleItself() {
        tw::ScheduledTask task;
        int count = 0;
        std::function<void()> again = [&] {
            if (++count < 3) {
                task = scheduler().singleShot(5ms, 0ms, nullptr, again);
            }
        };
        task = scheduler().singleShot(5ms, 0ms, nullptr, again);
        QVERIFY(passUntil([&] { return count >= 3; }));
        pass(30ms);
        QCOMPARE(count, 3);
    }

    void manualTimeMovesItsClock() {
        const QDateTime start = m_clock.now();
        QList<qint64> at;
        auto task =
            m_manual.repeating(1000ms, 200ms, nullptr, [&] { at << start.msecsTo(m_clock.now()); });
        m_manual.advance(3500ms);
        QCOMPARE(at, (QList<qint64>{1000, 2000, 3000}));
        QCOMPARE(start.msecsTo(m_clock.now()), 3500);
        QCOMPARE(m_manual.pending().front().tolerance, 200ms);
        task.cancel();
        QCOMPARE(m_manual.pendingCount(), 0);
        // A handle outliving its scheduler is harmless.
        {
            ManualScheduler gone;
            task = gone.singleShot(10ms, 0ms, nullptr, [] {});
        }
        task.cancel();
        QVERIFY(!task.isActive());
    }

    // A change signal only on a real change.
    void defaultsSignalOnlyRealChanges() {
        QTemporaryDir dir;
        std::unique_ptr<tw::Defaults> defaults;
        if (m_real) {
            defaults =
                std::make_unique<tw::SettingsDefaults>(dir.filePath(QStringLiteral("d.ini")));
        } else {
            defaults = std::make_unique<tw::MemoryDefaults>();
        }
        const QString key = QStringLiteral("tarnwick.tileScale");
        QSignalSpy spy(defaults.get(), &tw::Defaults::valueChanged);
        QVERIFY(!defaults->contains(key));
        QCOMPARE(defaults->value(key, 1.0).toDouble(), 1.0);
        defaults->setValue(key, 1.5);
        defaults->setValue(key, 1.5);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(defaults->value(key).toDouble(), 1.5);
        defaults->remove(key);
        defaults->remove(key);
        QCOMPARE(spy.count(), 2);
        QVERIFY(!defaults->contains(key));
    }
};

QTEST_GUILESS_MAIN(TestFakes)
#include "tst_fakes.moc"
