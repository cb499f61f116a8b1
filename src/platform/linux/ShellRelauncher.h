// Relaunching through a POSIX shell that polls the old process with kill -0 until it is gone.
#pragma once

#include "platform/Relauncher.h"

namespace tw {

class ShellRelauncher final : public Relauncher {
public:
    explicit ShellRelauncher(QString shell = QStringLiteral("/bin/sh"))
        : m_shell(std::move(shell)) {}

    bool startAfterExit(qint64 pid, const QString& program, const QStringList& arguments) override;

    // The shell's arguments that wait for `pid` to be gone and then run `program` with
    // `arguments`; nothing of them is interpreted by the shell.
    static QStringList shellArguments(qint64 pid, const QString& program,
                                      const QStringList& arguments);

private:
    QString m_shell;
};

} // namespace tw
