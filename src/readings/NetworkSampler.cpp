#include "readings/NetworkSampler.h"

#include "readings/CounterDelta.h"

#include <algorithm>

namespace tw {

namespace {

double rate(quint64 before, quint64 after, double seconds) {
    const std::optional<quint64> delta = counterDelta(before, after);
    return delta ? double(*delta) / seconds : 0;
}

} // namespace

NetworkSampler::NetworkSampler(SystemSource& source)
    : m_source(source) {}

NetworkSnapshot NetworkSampler::sample(const QDateTime& now) {
    const QList<NetworkCounters> counters = m_source.networkCounters();
    const double seconds = m_previousAt ? double(m_previousAt->msecsTo(now)) / 1000.0 : 0;
    NetworkSnapshot snapshot;
    snapshot.sampledAt = now;
    QHash<QString, NetworkCounters> current;
    for (const NetworkCounters& counter : counters) {
        InterfaceRate interface {
            counter.interface, counter.wireless, counter.up, 0, 0, counter.received, counter.sent
        };
        const auto previous = m_previous.constFind(counter.interface);
        if (seconds > 0 && previous != m_previous.cend()) {
            interface.receivedPerSecond = rate(previous->received, counter.received, seconds);
            interface.sentPerSecond = rate(previous->sent, counter.sent, seconds);
        }
        snapshot.interfaces.append(interface);
        current.insert(counter.interface, counter);
    }
    m_previous = std::move(current);
    m_previousAt = now;
    std::stable_sort(snapshot.interfaces.begin(), snapshot.interfaces.end(),
                     [](const InterfaceRate& a, const InterfaceRate& b) {
                         if (a.up != b.up) {
                             return a.up;
                         }
                         return a.receivedPerSecond + a.sentPerSecond >
                                b.receivedPerSecond + b.sentPerSecond;
                     });
    return snapshot;
}

} // namespace tw
