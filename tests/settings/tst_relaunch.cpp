#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

// AppSettings::relaunch with real processes: the helper relaunches itself once; the new
// generation must start only after the old one is gone, with the same arguments.
class TestRelaunch : public QObject {
    Q_OBJECT
private:
    static QStringList lines(const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            return {};
        }
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private Q_SLOTS:
    void relaunchReplacesTheProcess() {
        QTemporaryDir dir;
        const QString marker = dir.filePath(QStringLiteral("generations with spaces.txt"));
        QProcess first;
        first.start(QStringLiteral(TW_RELAUNCH_HELPER), {marker});
        QVERIFY(first.waitForStarted(10000));
        const qint64 firstPid = first.processId();
        QVERIFY(first.waitForFinished(10000));
        QCOMPARE(first.exitStatus(), QProcess::NormalExit);
        QCOMPARE(first.exitCode(), 0);

        QTRY_VERIFY_WITH_TIMEOUT(lines(marker).size() >= 2, 20000);
        const QStringList seen = lines(marker);
        const QStringList firstLine = seen.at(0).split(QLatin1Char(' '));
        const QStringList secondLine = seen.at(1).split(QLatin1Char(' '));
        const qint64 secondPid = secondLine.value(1).toLongLong();
        auto cleanup = qScopeGuard([secondPid] {
            if (secondPid > 0) {
                ::kill(static_cast<pid_t>(secondPid), SIGKILL);
            }
        });
        QCOMPARE(firstLine.value(0), QStringLiteral("first"));
        QCOMPARE(firstLine.value(1).toLongLong(), firstPid);
        QCOMPARE(secondLine.value(0), QStringLiteral("second"));
        QVERIFY(secondPid > 0);
        QVERIFY(secondPid != firstPid);
        QCOMPARE(secondLine.value(2), QStringLiteral("gone"));
        QCOMPARE(seen.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestRelaunch)
#include "tst_relaunch.moc"
