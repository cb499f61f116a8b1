#include "CrashLayouts.h"
#include "Files.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

// A process that saves in a loop is killed at random moments; whatever the moment, "grid.json"
// holds one whole layout that was written, never nothing and never a mix. Real processes and
// real kills: the pauses are what makes the moments random, not a wait for something.
class TestGridCrashSafety : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void killedMidSaveLeavesOneWholeLayout() {
        const int kills = qEnvironmentVariableIsSet("TW_GRID_SOAK_KILLS")
                              ? qEnvironmentVariableIntValue("TW_GRID_SOAK_KILLS")
                              : 200;
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.json"));
        QRandomGenerator random(20261122);
        qint64 start = 1;
        int mid = 0;
        for (int kill = 0; kill < kills; ++kill) {
            QProcess loop;
            loop.start(QStringLiteral(TW_GRID_SAVE_LOOP), {path, QString::number(start)});
            QVERIFY2(loop.waitForReadyRead(10000), "the save loop did not start saving");
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(20000)));
            loop.kill();
            QVERIFY(loop.waitForFinished(10000));
            QCOMPARE(loop.exitStatus(), QProcess::CrashExit);

            const std::optional<tw::GridLayout> layout =
                tw::GridLayout::fromJsonText(tw::test::readFile(path));
            QVERIFY2(layout && !layout->instances.isEmpty(),
                     qPrintable(QStringLiteral("kill %1 left an unreadable file").arg(kill)));
            const qint64 k = static_cast<qint64>(layout->instances.first().posX.value_or(-1));
            QVERIFY2(k >= 1 && layout->instances == tw::test::crashLayout(k).instances,
                     qPrintable(QStringLiteral("kill %1 left a mixed layout").arg(kill)));
            if (k > start) {
                ++mid;
            }
            start = k + 1000000;
        }
        // The loop loads the file each time it starts; a torn file would have been set aside.
        QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.corrupt")}), QStringList());
        // Every kill comes after the first save, while the loop saves on; that many kills found
        // later layouts shows the loop really was writing when they struck (the share depends
        // on the machine's speed, so the bound is loose).
        QVERIFY2(mid > kills / 10,
                 qPrintable(QStringLiteral("only %1 kills after a second save").arg(mid)));
    }
};

QTEST_GUILESS_MAIN(TestGridCrashSafety)
#include "tst_gridcrashsafety.moc"
