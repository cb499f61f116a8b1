// Temperatures and fans as the machine's sensors report them. Reading may wait on the hardware,
// so callers run it off the main thread.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

// What a temperature stands for: the processor die, the battery, the storage.
enum class SensorKind { soc, battery, storage };

struct SensorValue {
    // As people who read sensors know it, e.g. "coretemp Package id 0" or "nvme Composite".
    QString label;
    // None for a sensor that is none of the three kinds; it is still shown among the others.
    std::optional<SensorKind> kind;
    double celsius = 0;
    bool operator==(const SensorValue&) const = default;
};

struct FanValue {
    QString label;
    double rpm = 0;
    bool operator==(const FanValue&) const = default;
};

struct SensorSample {
    QList<SensorValue> temperatures;
    QList<FanValue> fans;
    // Short sentences for a person on what could not be found or read, e.g. that no fan
    // speeds are reported.
    QStringList missing;
    bool operator==(const SensorSample&) const = default;
};

class SensorSource {
public:
    SensorSource() = default;
    virtual ~SensorSource() = default;
    Q_DISABLE_COPY_MOVE(SensorSource)

    virtual SensorSample read() const = 0;
};

} // namespace tw
