#include "launch/TerminalService.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

namespace tw {

TerminalService::TerminalService(Scheduler& scheduler, const Clock& clock, QString home,
                                 QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_clock(clock)
    , m_home(std::move(home)) {}

TerminalService::~TerminalService() = default;

void TerminalService::setTiles(const QList<Tile>& tiles) {
    for (auto it = m_sessions.begin(); it != m_sessions.end();) {
        const bool kept = std::any_of(tiles.cbegin(), tiles.cend(),
                                      [&](const Tile& tile) { return tile.id == it->first; });
        it = kept ? std::next(it) : m_sessions.erase(it);
    }
    for (const Tile& tile : tiles) {
        Session& session = m_sessions[tile.id];
        if (!session.known || session.settings != tile.settings) {
            session.known = true;
            stop(session);
            session.settings = tile.settings;
            session.state = {};
            session.lastEnd.reset();
            const ParsedCommand parsed = CommandLine::parse(tile.settings.command, m_home);
            session.state.command = parsed.command;
            session.state.problem = parsed.error;
            Q_EMIT changed(tile.id);
        }
        if (session.inView != tile.inView) {
            session.inView = tile.inView;
            if (!tile.inView) {
                stop(session);
                Q_EMIT changed(tile.id);
            }
        }
        consider(tile.id, session);
    }
}

void TerminalService::runNow(const QUuid& id) {
    const auto found = m_sessions.find(id);
    if (found == m_sessions.end() || !found->second.inView || found->second.run) {
        return;
    }
    start(id, found->second);
}

const TerminalState* TerminalService::state(const QUuid& id) const {
    const auto found = m_sessions.find(id);
    return found == m_sessions.end() ? nullptr : &found->second.state;
}

void TerminalService::consider(const QUuid& id, Session& session) {
    if (!session.inView || session.run || !session.state.problem.isEmpty() ||
        session.next.isActive()) {
        return;
    }
    if (!session.lastEnd) {
        start(id, session);
        return;
    }
    if (session.settings.every.count() == 0) {
        return;
    }
    const auto due = *session.lastEnd + session.settings.every;
    const auto now = m_clock.uptime();
    if (due <= now) {
        start(id, session);
        return;
    }
    session.next =
        m_scheduler.singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(due - now),
                               std::chrono::milliseconds(500), this, [this, id] {
                                   const auto found = m_sessions.find(id);
                                   if (found != m_sessions.end()) {
                                       start(id, found->second);
                                   }
                               });
}

void TerminalService::start(const QUuid& id, Session& session) {
    session.next.cancel();
    if (session.run || !session.state.problem.isEmpty()) {
        return;
    }
    session.run = std::make_unique<CommandRun>(
        RunLimits{.timeout = session.settings.timeout, .outputCap = outputCap}, m_scheduler);
    connect(session.run.get(), &CommandRun::finished, this, [this, id](const RunResult& result) {
        const auto found = m_sessions.find(id);
        if (found == m_sessions.end()) {
            return;
        }
        Session& done = found->second;
        // The process is reaped by its own object; it goes once this signal has returned.
        done.run.release()->deleteLater();
        done.lastEnd = m_clock.uptime();
        done.state.running = false;
        done.state.outcome = result.outcome;
        done.state.exitCode = result.exitCode;
        done.state.text = TerminalText::decode(result.output);
        done.state.finishedAt = m_clock.now();
        Q_EMIT changed(id);
        consider(id, done);
    });
    session.state.running = true;
    Q_EMIT changed(id);
    QString directory = session.settings.directory;
    if (directory.isEmpty() || directory == QLatin1String("~")) {
        directory = m_home;
    } else if (directory.startsWith(QLatin1String("~/"))) {
        directory = m_home + directory.mid(1);
    }
    session.run->start(session.state.command, directory);
}

void TerminalService::stop(Session& session) {
    session.next.cancel();
    session.run.reset();
    session.state.running = false;
}

} // namespace tw
