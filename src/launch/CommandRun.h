// One run of a person's command with limits: its merged output up to a cap, a time-out, stdin
// closed; what became of it.
#pragma once

#include "launch/CommandLine.h"
#include "platform/ScheduledTask.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>

#include <chrono>

namespace tw {

class Scheduler;

struct RunLimits {
    std::chrono::milliseconds timeout{10'000};
    qint64 outputCap = 256 * 1024;
};

struct RunResult {
    enum class Outcome { exited, timedOut, capped, failedToStart, crashed };
    Outcome outcome = Outcome::exited;
    int exitCode = 0;
    // Standard output and error as they came, at most the cap.
    QByteArray output;

    bool operator==(const RunResult&) const = default;
};

class CommandRun final : public QObject {
    Q_OBJECT
public:
    CommandRun(const RunLimits& limits, Scheduler& scheduler, QObject* parent = nullptr);
    ~CommandRun() override;
    Q_DISABLE_COPY_MOVE(CommandRun)

    // Once; `finished` then comes exactly once unless the run is destroyed first, which kills
    // the process. An empty `workingDirectory` is this process's own.
    void start(const CommandLine& command, const QString& workingDirectory);
    bool isRunning() const { return m_started && !m_done; }

Q_SIGNALS:
    void finished(const tw::RunResult& result);

private:
    void read();
    void end(RunResult::Outcome outcome);
    // Kills the process and its group.
    void kill();

    QProcess m_process;
    RunLimits m_limits;
    RunResult m_result;
    Scheduler& m_scheduler;
    ScheduledTask m_timeout;
    bool m_started = false;
    bool m_done = false;
};

} // namespace tw
