// Runs the real executable as a user would, with preferences in a home of its own.
#pragma once

#include <QProcess>
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
inline ProcessRun runTarnwick(const QString& program, const QStringList& arguments,
                              const QString& home, const QString& twkTime = {},
                              const QString& display = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QLatin1String("/.config"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    for (const char* name : {"TWK_TIME", "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(QString::fromLatin1(name));
    }
    if (!twkTime.isNull()) {
        environment.insert(QStringLiteral("TWK_TIME"), twkTime);
    }
    if (display == QLatin1String("offscreen")) {
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), display);
    } else if (!display.isEmpty()) {
        environment.insert(QStringLiteral("DISPLAY"), display);
    }
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

// True when `text` is `pattern`, each "…" in the pattern standing for any text.
inline bool matches(const QString& text, const QString& pattern) {
    const QStringList parts = pattern.split(QChar(0x2026));
    const qsizetype tail = text.size() - parts.last().size();
    if (parts.size() == 1 || tail < 0 || text.left(parts.first().size()) != parts.first() ||
        text.mid(tail) != parts.last()) {
        return text == pattern;
    }
    qsizetype at = parts.first().size();
    for (qsizetype i = 1; i < parts.size() - 1 && at >= 0; ++i) {
        at = text.indexOf(parts.at(i), at);
        at = at < 0 ? at : at + parts.at(i).size();
    }
    return at >= 0 && at <= tail;
}

// Arguments written as one line, split at spaces.
inline QStringList words(const QString& line) {
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace tw::test
