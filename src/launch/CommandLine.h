// A command as a person types it, split into a program and its arguments with a shell's
// quoting, but never handed to a shell: no variables, globs, pipes or redirections.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

struct ParsedCommand;

struct CommandLine {
    QString program;
    QStringList arguments;

    bool operator==(const CommandLine&) const = default;
    bool isEmpty() const { return program.isEmpty(); }
    // The words again, each quoted where a shell would need it, for showing.
    QString text() const;

    // Words split at unquoted white space; '…' is literal, "…" takes backslash escapes of
    // " \ $ ` only, a backslash elsewhere keeps the next character; an unquoted "~" or "~/"
    // starting a word is `home`. Unquoted | ; & < > ` $ are refused: they need a shell, which
    // the person can name themselves (sh -c '…').
    static ParsedCommand parse(const QString& text, const QString& home);

    static constexpr qsizetype maxLength = 4096;
};

struct ParsedCommand {
    CommandLine command;
    // Why the text is no command, for the person; empty when it is one.
    QString error;
};

} // namespace tw
