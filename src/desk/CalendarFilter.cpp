#include "desk/CalendarFilter.h"

namespace tw {
namespace {

const QLatin1String everything("all");

std::optional<std::optional<QString>> chosen(const WidgetSettings& settings, const QString& key) {
    const QString value = settings.value(key).trimmed();
    if (value.isEmpty()) {
        return std::nullopt;
    }
    return value == everything ? std::optional<QString>() : std::optional<QString>(value);
}

} // namespace

std::optional<CalendarFilter> CalendarFilter::of(const WidgetSettings& settings) {
    const auto source = chosen(settings, QStringLiteral("calendar"));
    if (!source) {
        return std::nullopt;
    }
    return CalendarFilter{*source};
}

std::optional<RemindersFilter> RemindersFilter::of(const WidgetSettings& settings) {
    const auto source = chosen(settings, QStringLiteral("list"));
    if (!source) {
        return std::nullopt;
    }
    return RemindersFilter{*source, settings.value(QStringLiteral("showCompleted")) ==
                                        QLatin1String("true")};
}

} // namespace tw
