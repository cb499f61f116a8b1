// The speed test tiles' own schedule ("every" in a tile's settings: an hour, six hours, a day;
// none by default). While a tile with one is on the desktop, a test starts when the last result
// is that old. After a failed test the schedule waits 5 minutes, then twice as long after each
// further failure up to the interval: a line not up yet at login is measured soon, a broken one
// not over and over.
#pragma once

#include "model/TileBehaviour.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>

#include <chrono>

namespace tw {

class Clock;
class Scheduler;
class SpeedTestService;

class SpeedTestSchedule final : public TileBehaviour {
    Q_OBJECT
public:
    // How often the schedule looks whether a test is due, and the first wait after a failure.
    static constexpr std::chrono::minutes checkInterval{5};

    SpeedTestSchedule(SpeedTestService& service, const Clock& clock, Scheduler& scheduler,
                      QObject* parent = nullptr);

    // A tile's interval; zero for none.
    static std::chrono::seconds everyOf(const WidgetSettings& settings);
    // The shortest interval of the tiles on the desktop; zero for none.
    std::chrono::seconds every() const { return m_every; }

    void setTiles(const QList<BehaviourTile>& tiles) override;

private:
    void check();
    void follow();

    SpeedTestService& m_service;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    std::chrono::seconds m_every{0};
    ScheduledTask m_checks;
    // When the schedule last started a test, whether that one is still on, and how many of its
    // tests in a row failed.
    QDateTime m_started;
    bool m_running = false;
    int m_failures = 0;
};

} // namespace tw
