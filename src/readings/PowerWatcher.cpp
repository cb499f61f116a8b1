#include "readings/PowerWatcher.h"

#include "platform/PowerSource.h"

#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcPowerWatcher, "PowerWatcher")

PowerWatcher::PowerWatcher(PowerSource& source, QObject* parent)
    : QObject(parent)
    , m_source(source) {}

void PowerWatcher::start() {
    if (m_started) {
        return;
    }
    m_started = true;
    // Right before the first announcement, which may be a long way off.
    refresh();
    connect(&m_source, &PowerSource::changed, this, &PowerWatcher::refresh);
}

void PowerWatcher::refresh() {
    const BatterySnapshot battery = m_source.battery();
    std::optional<Reason> reason;
    if (m_source.lowPowerMode()) {
        reason = Reason::lowPowerMode();
    } else if (battery.hasBattery && !battery.isPluggedIn && battery.percent >= 0 &&
               battery.percent <= constrainedPercent) {
        reason = Reason::battery(battery.percent);
    }
    if (reason != m_reason) {
        m_reason = reason;
        Q_EMIT reasonChanged();
    }
    const bool constrained = reason.has_value();
    if (constrained == m_isConstrained) {
        return;
    }
    m_isConstrained = constrained;
    qCInfo(lcPowerWatcher, "power constrained: %d", int(constrained));
    if (onChange) {
        onChange(constrained);
    }
}

} // namespace tw
