// How much one speed test does: its requests, transfers and measuring times.
#pragma once

#include <QtGlobal>

#include <chrono>

namespace tw {

struct SpeedTestPlan {
    using milliseconds = std::chrono::milliseconds;

    // Timed one after another; the middle time counts.
    int pings = 5;
    // Transfers at once, each on a connection of its own.
    int parallel = 4;
    // About fifteen seconds for the whole test.
    milliseconds downloadTime{6'500};
    milliseconds uploadTime{6'500};
    qint64 downloadBytes = 25'000'000;
    qint64 uploadBytes = 8'000'000;
    milliseconds poll{100};
    milliseconds requestTimeout{15'000};
    milliseconds uploadTimeout{60'000};
    // Failed transfers in one direction that end the test: the line is gone, not slow.
    int failureLimit = 8;

    bool operator==(const SpeedTestPlan&) const = default;
};

} // namespace tw
