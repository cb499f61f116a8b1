#include "desk/AlarmLength.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<AlarmLength, 4> raws({"once", "tenSeconds", "thirtySeconds", "untilStopped"});

} // namespace

AlarmLength resolveAlarmLength(QStringView raw, AlarmLength fallback) {
    return raws.parse(raw.trimmed()).value_or(fallback);
}

std::optional<std::chrono::milliseconds> budget(AlarmLength length) {
    using namespace std::chrono_literals;
    switch (length) {
    case AlarmLength::once:
        return std::nullopt;
    case AlarmLength::tenSeconds:
        return 10s;
    case AlarmLength::thirtySeconds:
        return 30s;
    case AlarmLength::untilStopped:
        return 600s;
    }
    return std::nullopt;
}

} // namespace tw
