// Runs the real executable as a user would, with preferences in a home of its own.
#pragma once

#include <QString>
#include <QStringList>

namespace tw::test {

struct ProcessRun {
    int exitCode = -1; // -1 when the process crashed or did not finish in time
    QString out;
    QString err;
};

// Runs `program` with `arguments`, HOME, XDG_CONFIG_HOME and XDG_RUNTIME_DIR under `home`,
// `twkTime` as TWK_TIME (none when null), waiting at most 30 s. `display` is "offscreen" for Qt's
// off-screen platform, another value for DISPLAY, or empty for no display at all.
ProcessRun runTarnwick(const QString& program, const QStringList& arguments, const QString& home,
                       const QString& twkTime = {}, const QString& display = {});

// True when `text` is `pattern`, each "…" in the pattern standing for any text.
bool matches(const QString& text, const QString& pattern);

// Arguments written as one line, split at spaces.
QStringList words(const QString& line);

} // namespace tw::test
