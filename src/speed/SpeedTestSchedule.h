// The speed test tiles' own schedule ("every" in a tile's settings: an hour, six hours, a day;
// none by default). While a tile with one is on the desktop, a test starts when the last result
// is that old; a test that failed is not tried again before as long has passed, so a broken line
// is not measured over and over.
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
    // How often the schedule looks whether a test is due.
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

    SpeedTestService& m_service;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    std::chrono::seconds m_every{0};
    ScheduledTask m_checks;
    // When the schedule last started a test, whatever became of it.
    QDateTime m_started;
};

} // namespace tw
