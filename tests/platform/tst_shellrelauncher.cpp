#include "platform/linux/ShellRelauncher.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using tw::ShellRelauncher;

class TestShellRelauncher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The waiting shell takes the command line as data: spaces, quotes and "$(…)" arrive as
    // written, and it runs the program at once when the process it waits for is gone.
    void passesArgumentsUntouched() {
        QProcess finished;
        finished.start(QStringLiteral("/bin/true"));
        QVERIFY(finished.waitForFinished(5000));
        const qint64 gonePid = finished.processId() > 0 ? finished.processId() : 999999;
        QTemporaryDir dir;
        const QStringList words{QStringLiteral("a b"), QStringLiteral("$(touch pwned)"),
                                QStringLiteral("'q\""), QStringLiteral("*")};
        QProcess shell;
        shell.setWorkingDirectory(dir.path());
        shell.start(QStringLiteral("/bin/sh"),
                    ShellRelauncher::shellArguments(gonePid, QStringLiteral("/usr/bin/printf"),
                                                    QStringList{QStringLiteral("[%s]")} + words));
        QVERIFY(shell.waitForFinished(10000));
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()),
                 QStringLiteral("[a b][$(touch pwned)]['q\"][*]"));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("pwned"))));
    }

    void aMissingShellFails() {
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("could not start /nonexistent/sh")));
        ShellRelauncher relauncher(QStringLiteral("/nonexistent/sh"));
        QVERIFY(!relauncher.startAfterExit(QCoreApplication::applicationPid(),
                                           QStringLiteral("/bin/true"), {}));
    }
};

QTEST_GUILESS_MAIN(TestShellRelauncher)
#include "tst_shellrelauncher.moc"
