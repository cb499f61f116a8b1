// Sources that stand for hardware this machine lacks: they answer what a test set and count
// every call. And runners that run reads inline or hold them in flight.
#pragma once

#include "platform/BluetoothSource.h"
#include "platform/SensorSource.h"
#include "platform/SystemSource.h"
#include "readings/SampleRunner.h"

#include <QList>
#include <QPointer>

#include <functional>

namespace tw::test {

class ScriptedSystemSource final : public SystemSource {
public:
    // Each read of processorTicks takes the next of these; past the end it repeats the last.
    QList<std::optional<CpuTicks>> ticks;
    QList<QMap<int, CpuTicks>> cores;
    std::optional<MemoryCounters> memoryCounters;
    std::optional<double> graphics;
    QList<Volume> volumeList;
    QList<QList<NetworkCounters>> network;
    QList<QList<ProcessSample>> processTable;
    mutable int calls = 0;
    mutable int volumeCalls = 0;
    mutable int processCalls = 0;

    std::optional<CpuTicks> processorTicks() const override { return next(ticks, m_tick); }
    QMap<int, CpuTicks> coreTicks() const override { return next(cores, m_core); }
    std::optional<MemoryCounters> memory() const override {
        ++calls;
        return memoryCounters;
    }
    std::optional<double> graphicsBusy() const override { return graphics; }
    QList<Volume> volumes() const override {
        ++calls;
        ++volumeCalls;
        return volumeList;
    }
    QList<NetworkCounters> networkCounters() const override { return next(network, m_network); }
    QList<ProcessSample> processes() const override {
        ++processCalls;
        return next(processTable, m_process);
    }

private:
    template <typename T>
    T next(const QList<T>& script, int& at) const {
        ++calls;
        if (script.isEmpty()) {
            return T{};
        }
        return script.at(std::min<qsizetype>(at++, script.size() - 1));
    }
    mutable int m_tick = 0;
    mutable int m_core = 0;
    mutable int m_network = 0;
    mutable int m_process = 0;
};

class ScriptedSensorSource final : public SensorSource {
public:
    SensorSample sample;
    mutable int reads = 0;
    SensorSample read() const override {
        ++reads;
        return sample;
    }
};

class InlineRunner final : public SampleRunner {
public:
    void run(std::function<void()> work, const QObject* context,
             std::function<void()> done) override {
        QPointer<const QObject> receiver(context);
        work();
        if (receiver) {
            done();
        }
    }
};

// Keeps each read in flight until the test lets it finish.
class HeldRunner final : public SampleRunner {
public:
    void run(std::function<void()> work, const QObject* context,
             std::function<void()> done) override {
        m_held.append({std::move(work), QPointer<const QObject>(context), std::move(done)});
    }
    qsizetype held() const { return m_held.size(); }
    void releaseAll() {
        const auto held = std::exchange(m_held, {});
        for (const Job& job : held) {
            job.work();
            if (job.context) {
                job.done();
            }
        }
    }

private:
    struct Job {
        std::function<void()> work;
        QPointer<const QObject> context;
        std::function<void()> done;
    };
    QList<Job> m_held;
};

} // namespace tw::test
