#include "RestoreStates.h"
#include "platform/SettingsDefaults.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

// A process that restores setups in a loop is killed at random moments; once the next start has
// finished what was committed, the directory and the preferences hold one whole setup, never a mix.
class TestRestoreCrashSafety : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void killedMidRestoreLeavesOneWholeSetup() {
        const int kills = qEnvironmentVariableIsSet("TW_RESTORE_SOAK_KILLS")
                              ? qEnvironmentVariableIntValue("TW_RESTORE_SOAK_KILLS")
                              : 200;
        QTemporaryDir dir;
        const QString data = dir.filePath(QStringLiteral("data"));
        const QString ini = dir.filePath(QStringLiteral("preferences.ini"));
        QVERIFY(QDir().mkpath(data));
        QStringList states;
        for (const char which : {'A', 'B'}) {
            QTemporaryDir reference;
            tw::SettingsDefaults defaults(reference.filePath(QStringLiteral("p.ini")));
            QVERIFY(!tw::LayoutBackup::apply(tw::test::restoreState(which),
                                             {reference.path(), defaults, {}}));
            states.append(tw::test::restoreFingerprint(reference.path(), defaults).join(u'\n'));
        }
        {
            tw::SettingsDefaults defaults(ini);
            QVERIFY(!tw::LayoutBackup::apply(tw::test::restoreState('B'), {data, defaults, {}}));
        }
        QRandomGenerator random(20261124);
        int midway = 0;
        for (int kill = 0; kill < kills; ++kill) {
            QProcess loop;
            loop.start(QStringLiteral(TW_RESTORE_LOOP), {data, ini});
            QVERIFY2(loop.waitForReadyRead(10000), "the restore loop did not start");
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(40000)));
            loop.kill();
            QVERIFY(loop.waitForFinished(10000));

            const QDir folder(data);
            midway += folder.exists(QStringLiteral("restore-pending")) ||
                              folder.exists(QStringLiteral("restore-staging"))
                          ? 1
                          : 0;
            tw::SettingsDefaults defaults(ini);
            tw::LayoutBackup::finishPendingRestore({data, defaults, {}});
            const QString found = tw::test::restoreFingerprint(data, defaults).join(u'\n');
            QVERIFY2(states.contains(found),
                     qPrintable(QStringLiteral("kill %1 left a mix:\n%2").arg(kill).arg(found)));
        }
        QVERIFY(QDir(data).entryList({QStringLiteral("*.corrupt")}, QDir::AllEntries).isEmpty());
        qInfo("%d of %d kills struck within a restore", midway, kills);
    }
};

QTEST_GUILESS_MAIN(TestRestoreCrashSafety)
#include "tst_restorecrashsafety.moc"
