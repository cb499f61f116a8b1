#include "TarnwickProcess.h"

#include <QProcess>

namespace tw::test {

QProcessEnvironment isolatedEnvironment(const QString& home, const QString& twkTime) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QLatin1String("/.config"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    environment.remove(QStringLiteral("TWK_TIME"));
    if (!twkTime.isNull()) {
        environment.insert(QStringLiteral("TWK_TIME"), twkTime);
    }
    return environment;
}

ProcessRun runProcess(const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ProcessRun run;
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished(5000);
        return run;
    }
    run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace tw::test
