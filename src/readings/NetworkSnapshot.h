// The traffic through each network interface, as rates between two readings.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace tw {

struct InterfaceRate {
    QString interface;
    bool wireless = false;
    bool up = false;
    // Bytes per second since the reading before; 0 on the first.
    double receivedPerSecond = 0;
    double sentPerSecond = 0;
    // Bytes since the interface came up.
    quint64 received = 0;
    quint64 sent = 0;
    bool operator==(const InterfaceRate&) const = default;
};

struct NetworkSnapshot {
    QDateTime sampledAt;
    // Interfaces that are up first, the busiest of them first.
    QList<InterfaceRate> interfaces;
    bool operator==(const NetworkSnapshot&) const = default;

    // The interface a tile shows by default: the first that is up; none without any.
    const InterfaceRate* primary() const;
};

} // namespace tw
