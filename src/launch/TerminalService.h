// Runs the commands of the terminal tiles: each while its tile is in view, again at its pace
// (counted from the end of the last run, so a slow command never overlaps itself), and at once
// on a click; keeps each tile's last output for its face.
#pragma once

#include "launch/CommandLine.h"
#include "launch/CommandRun.h"
#include "launch/TerminalSettings.h"
#include "launch/TerminalText.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QUuid>

#include <map>
#include <memory>
#include <optional>

namespace tw {

class Clock;
class Scheduler;

struct TerminalState {
    CommandLine command;
    // Why nothing runs (no command, a quote left open); empty when the command is good.
    QString problem;
    bool running = false;
    // The last run that ended, and when; no outcome before the first.
    std::optional<RunResult::Outcome> outcome;
    int exitCode = 0;
    TerminalText text;
    QDateTime finishedAt;
};

class TerminalService final : public QObject {
    Q_OBJECT
public:
    struct Tile {
        QUuid id;
        TerminalSettings settings;
        bool inView = false;
    };

    // `home`: where a command without a directory of its own runs, and what "~" is.
    TerminalService(Scheduler& scheduler, const Clock& clock, QString home,
                    QObject* parent = nullptr);
    ~TerminalService() override;
    Q_DISABLE_COPY_MOVE(TerminalService)

    // Every terminal tile now; a tile left out stops and is forgotten, a changed command starts
    // afresh, a tile out of view stops its run and keeps what it showed.
    void setTiles(const QList<Tile>& tiles);
    // Runs the tile's command now (a click), unless it runs already or is out of view.
    void runNow(const QUuid& id);
    // Null for a tile not known.
    const TerminalState* state(const QUuid& id) const;

    static constexpr qint64 outputCap = 256 * 1024;

Q_SIGNALS:
    void changed(const QUuid& id);

private:
    struct Session {
        bool known = false;
        TerminalSettings settings;
        bool inView = false;
        TerminalState state;
        std::unique_ptr<CommandRun> run;
        ScheduledTask next;
        std::optional<std::chrono::nanoseconds> lastEnd;
    };

    void consider(const QUuid& id, Session& session);
    void start(const QUuid& id, Session& session);
    void stop(Session& session);

    Scheduler& m_scheduler;
    const Clock& m_clock;
    QString m_home;
    std::map<QUuid, Session> m_sessions;
};

} // namespace tw
