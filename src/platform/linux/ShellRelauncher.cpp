#include "platform/linux/ShellRelauncher.h"

#include <QLoggingCategory>
#include <QProcess>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcRelaunch, "Relaunch")

} // namespace

bool ShellRelauncher::startAfterExit(qint64 pid, const QString& program,
                                     const QStringList& arguments) {
    if (!QProcess::startDetached(m_shell, shellArguments(pid, program, arguments))) {
        qCWarning(lcRelaunch).noquote() << "could not start" << m_shell;
        return false;
    }
    return true;
}

QStringList ShellRelauncher::shellArguments(qint64 pid, const QString& program,
                                            const QStringList& arguments) {
    // The pid and the command line travel as positional parameters, so no quoting can go wrong.
    const QString script =
        QStringLiteral("while kill -0 \"$1\" 2>/dev/null; do sleep 0.2; done; shift; exec \"$@\"");
    return QStringList{QStringLiteral("-c"), script, QStringLiteral("tarnwick-relaunch"),
                       QString::number(pid), program} +
           arguments;
}

} // namespace tw
