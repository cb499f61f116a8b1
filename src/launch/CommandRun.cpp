#include "launch/CommandRun.h"

#include "platform/Scheduler.h"

#include <QProcessEnvironment>

#include <csignal>
#include <unistd.h>

namespace tw {

CommandRun::CommandRun(const RunLimits& limits, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_limits(limits)
    , m_scheduler(scheduler) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    // No screen to draw on: programs that ask should keep to plain lines.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TERM"), QStringLiteral("dumb"));
    m_process.setProcessEnvironment(environment);
    // A group of its own, so that ending the run ends what the command started as well.
    m_process.setChildProcessModifier([] { ::setpgid(0, 0); });
    connect(&m_process, &QProcess::readyRead, this, &CommandRun::read);
    connect(&m_process, &QProcess::finished, this,
            [this](int exitCode, QProcess::ExitStatus status) {
                read();
                m_result.exitCode = exitCode;
                end(status == QProcess::CrashExit ? RunResult::Outcome::crashed
                                                  : RunResult::Outcome::exited);
            });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end(RunResult::Outcome::failedToStart);
        }
    });
}

void CommandRun::start(const CommandLine& command, const QString& workingDirectory) {
    if (m_started) {
        return;
    }
    m_started = true;
    if (!workingDirectory.isEmpty()) {
        m_process.setWorkingDirectory(workingDirectory);
    }
    m_timeout = m_scheduler.singleShot(m_limits.timeout, std::chrono::milliseconds(100), this,
                                       [this] { end(RunResult::Outcome::timedOut); });
    m_process.start(command.program, command.arguments, QIODevice::ReadOnly);
}

CommandRun::~CommandRun() {
    m_done = true;
    if (m_process.state() != QProcess::NotRunning) {
        kill();
        m_process.waitForFinished(1000);
    }
}

void CommandRun::read() {
    if (m_done) {
        return;
    }
    const qint64 room = m_limits.outputCap - m_result.output.size();
    const QByteArray bytes = m_process.read(std::max<qint64>(room, 0) + 1);
    if (bytes.size() > room) {
        m_result.output += bytes.left(room);
        end(RunResult::Outcome::capped);
        return;
    }
    m_result.output += bytes;
    if (m_process.bytesAvailable() > 0) {
        read();
    }
}

void CommandRun::end(RunResult::Outcome outcome) {
    if (m_done) {
        return;
    }
    m_done = true;
    m_timeout.cancel();
    m_result.outcome = outcome;
    if (m_process.state() != QProcess::NotRunning) {
        // A flood or a hang ends here; the process's finished comes later and is ignored.
        kill();
    }
    Q_EMIT finished(m_result);
}

void CommandRun::kill() {
    if (const qint64 pid = m_process.processId(); pid > 0) {
        ::kill(-static_cast<pid_t>(pid), SIGKILL);
    }
    m_process.kill();
}

} // namespace tw
