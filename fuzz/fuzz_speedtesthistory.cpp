// The speed test's history as the preferences hold it, whatever they hold: at most the limit of
// results, each with a date and figures that are finite and not negative, and what it encodes
// reads back the same.
#include "Require.h"
#include "speed/SpeedTestResult.h"

#include <cmath>
#include <cstdint>

using namespace tw;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QList<SpeedTestResult> history = SpeedTestResult::decodeHistory(input);
    require(history.size() <= SpeedTestResult::historyLimit, "a history over its limit");
    for (const SpeedTestResult& result : history) {
        require(result.date.isValid(), "a result without a date");
        for (const double figure : {result.downMbps, result.upMbps, result.pingMs}) {
            require(std::isfinite(figure) && figure >= 0, "a figure out of range");
        }
    }
    const QList<SpeedTestResult> again =
        SpeedTestResult::decodeHistory(SpeedTestResult::encodeHistory(history));
    require(again.size() == history.size(), "a round trip that loses results");
    for (qsizetype i = 0; i < history.size(); ++i) {
        require(again[i].date == history[i].date, "a round trip that moves a date");
    }
    return 0;
}
