#include "platform/linux/CanberraSoundPlayer.h"

#include <QLoggingCategory>

#include <algorithm>
#include <canberra.h>
#include <cmath>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcSound, "WidgetSound")

} // namespace

CanberraSoundPlayer::CanberraSoundPlayer() = default;

CanberraSoundPlayer::~CanberraSoundPlayer() {
    if (m_context != nullptr) {
        ca_context_destroy(m_context);
    }
}

QString CanberraSoundPlayer::eventId(const QString& name) {
    static const std::pair<const char*, const char*> table[] = {
        {"Glass", "complete"},
        {"Ping", "message-new-instant"},
        {"Tink", "message"},
        {"Submarine", "phone-incoming-call"},
        {"Hero", "alarm-clock-elapsed"},
        {"Purr", "bell"},
    };
    for (const auto& [ours, theirs] : table) {
        if (name == QLatin1String(ours)) {
            return QLatin1String(theirs);
        }
    }
    return QStringLiteral("complete");
}

double CanberraSoundPlayer::decibels(double volume) {
    if (!(volume > 0.001)) {
        return -60;
    }
    return 20 * std::log10(std::min(volume, 1.0));
}

void CanberraSoundPlayer::play(const QString& name, double volume) {
    if (m_failed) {
        return;
    }
    if (m_context == nullptr) {
        // Made on the first sound, so a desktop without timers never opens the sound server.
        if (const int error = ca_context_create(&m_context); error != CA_SUCCESS) {
            qCWarning(lcSound, "no sounds: %s", ca_strerror(error));
            m_context = nullptr;
            m_failed = true;
            return;
        }
        ca_context_change_props(m_context, CA_PROP_APPLICATION_NAME, "Tarnwick",
                                CA_PROP_APPLICATION_ID, "com.tarnwick.Tarnwick",
                                static_cast<const char*>(nullptr));
    }
    const QByteArray event = eventId(name).toUtf8();
    const QByteArray gain = QByteArray::number(decibels(volume), 'f', 2);
    const int error =
        ca_context_play(m_context, 0, CA_PROP_EVENT_ID, event.constData(), CA_PROP_CANBERRA_VOLUME,
                        gain.constData(), CA_PROP_CANBERRA_CACHE_CONTROL, "volatile",
                        static_cast<const char*>(nullptr));
    if (error != CA_SUCCESS) {
        qCWarning(lcSound, "sound %s not played: %s", event.constData(), ca_strerror(error));
    }
}

} // namespace tw
