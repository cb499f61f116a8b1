// The load of each core, the split of the memory and the programs that use most.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace tw {

// A program's processes added up under one name.
struct ActivityProcess {
    qint32 pid = 0;
    QString name;
    // A fraction of one core: above 1 for a program busy on several.
    double cpu = 0;
    quint64 memory = 0;
    bool operator==(const ActivityProcess&) const = default;
};

struct ActivitySnapshot {
    enum class Pressure { normal, warning, critical };

    // One fraction from 0 to 1 per logical core.
    QList<double> cores;
    // Bytes.
    double memTotal = 0;
    double memApp = 0;
    double memWired = 0;
    double memCompressed = 0;
    double memCached = 0;
    double swapUsed = 0;
    Pressure pressure = Pressure::normal;
    // The first six by processor and by memory.
    QList<ActivityProcess> byCPU;
    QList<ActivityProcess> byMemory;
    QDateTime sampledAt;
    bool operator==(const ActivitySnapshot&) const = default;

    // The mean of the cores; 0 without any.
    double total() const;
};

} // namespace tw
