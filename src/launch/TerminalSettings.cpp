#include "launch/TerminalSettings.h"

namespace tw {

namespace {

int number(const WidgetSettings& settings, const QString& key, int fallback) {
    bool ok = false;
    const int value = settings.value(key).trimmed().toInt(&ok);
    return ok ? value : fallback;
}

} // namespace

TerminalSettings TerminalSettings::fromSettings(const WidgetSettings& settings) {
    TerminalSettings out;
    out.command = settings.value(QStringLiteral("command")).trimmed();
    const int every = number(settings, QStringLiteral("interval"), 60);
    out.every = std::chrono::seconds(every <= 0 ? 0 : std::max(every, fewestSeconds));
    out.timeout =
        std::chrono::seconds(std::clamp(number(settings, QStringLiteral("timeout"), 10), 1, 300));
    out.directory = settings.value(QStringLiteral("directory")).trimmed();
    return out;
}

} // namespace tw
