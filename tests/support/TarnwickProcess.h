// Runs the real executable as a user would, with preferences in a home of its own.
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace tw::test {

struct ProcessRun {
    int exitCode = -1; // -1 when the process crashed or did not finish in time
    QString out;
    QString err;
};

// Environment for one run: HOME, XDG_CONFIG_HOME and XDG_RUNTIME_DIR under `home`, no inherited
// TWK_TIME, and the pin given as `twkTime` when it is not null.
QProcessEnvironment isolatedEnvironment(const QString& home, const QString& twkTime = QString());

// Runs `program` with `arguments` in `environment`, waiting at most 30 s.
ProcessRun runProcess(const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment);

} // namespace tw::test
