// Measures ping, download and upload against the speed test host when asked: its phases, live
// figures and history, published as one board. Nothing runs until `start()`.
#pragma once

#include "net/Endpoints.h"
#include "platform/ScheduledTask.h"
#include "speed/SpeedMeter.h"
#include "speed/SpeedTestBoard.h"
#include "speed/SpeedTestPlan.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace tw {

class Clock;
class Defaults;
class Scheduler;
class SpeedTransfers;

class SpeedTestService final : public QObject {
    Q_OBJECT
public:
    using Phase = SpeedTestPhase;
    using Result = SpeedTestResult;

    struct Services {
        const Clock& clock;
        Scheduler& scheduler;
        // Keeps the history under `historyKey`.
        Defaults& defaults;
        Endpoints endpoints;
        SpeedTestPlan plan;
    };

    static QString historyKey() { return QStringLiteral("tarnwick.speedtest.history"); }
    // The share of the bar each part ends at.
    static constexpr double pingShare = 0.08;
    static constexpr double downloadShare = 0.47;

    explicit SpeedTestService(const Services& services, QObject* parent = nullptr);
    ~SpeedTestService() override;

    const SpeedTestBoard& board() const { return m_board; }
    const Phase& phase() const { return m_board.phase; }
    std::optional<Result> last() const { return m_board.last(); }

    // Begins a run unless one is running.
    void start();
    // Ends a run, which leaves the history as it was; idle afterwards.
    void cancel();
    // Starts unless a run is on or the last result is younger than `every` at `now`.
    void runIfDue(std::chrono::seconds every, const QDateTime& now);

Q_SIGNALS:
    void boardChanged();

private:
    struct Run;

    void ping();
    void pingAnswered(QNetworkReply* reply, std::chrono::nanoseconds sent);
    void measure(Phase::Kind direction);
    void poll();
    void finish();
    void fail();
    // Ends the run's requests; the figures fall back to the last result's.
    void endRun();
    double seconds() const;
    void publish();

    Services m_services;
    SpeedTestBoard m_board;
    std::unique_ptr<Run> m_run;
};

} // namespace tw
