// A ticker wired as the application wires it, on virtual time: ticks stamped by the system clock,
// starts and views seeded by the pinnable one.
#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "tick/MinuteCoordinator.h"
#include "tick/SnapshotClock.h"
#include "tick/TickCoordinator.h"

namespace tw::test {

struct TickRig {
    explicit TickRig(QDateTime start = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250)))
        : clock(start)
        , scheduler(&clock) {}
    ManualClock clock;
    SnapshotClock snapshot{clock};
    ManualScheduler scheduler;
    TickCoordinator ticker{scheduler, clock, snapshot};
    MinuteCoordinator minutes{ticker};
};

} // namespace tw::test
