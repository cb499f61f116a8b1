#include "desk/AlarmLength.h"

#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<AlarmLength, 4> raws({"once", "tenSeconds", "thirtySeconds", "untilStopped"});

} // namespace

QString rawValue(AlarmLength length) {
    return raws.of(length);
}

AlarmLength resolveAlarmLength(QStringView raw, AlarmLength fallback) {
    return raws.parse(raw.trimmed()).value_or(fallback);
}

QString label(AlarmLength length) {
    switch (length) {
    case AlarmLength::once:
        return L("alarm.once", QStringLiteral("Once"));
    case AlarmLength::tenSeconds:
        return L("alarm.10s", QStringLiteral("10 seconds"));
    case AlarmLength::thirtySeconds:
        return L("alarm.30s", QStringLiteral("30 seconds"));
    case AlarmLength::untilStopped:
        return L("alarm.until", QStringLiteral("Until I stop it"));
    }
    return {};
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
