// Whether the machine's power is short: its own low-power setting, or a battery at 20 % or less
// that is not plugged in. Read once at start, then again at each change the source announces.
#pragma once

#include <QObject>

#include <functional>
#include <optional>

namespace tw {

class PowerSource;

class PowerWatcher final : public QObject {
    Q_OBJECT
public:
    struct Reason {
        enum class Kind { battery, lowPowerMode };
        Kind kind = Kind::lowPowerMode;
        // The battery's charge for `battery`; -1 otherwise.
        int percent = -1;

        static Reason battery(int percent) { return {Kind::battery, percent}; }
        static Reason lowPowerMode() { return {Kind::lowPowerMode, -1}; }
        bool operator==(const Reason&) const = default;
    };

    // The highest charge, inclusive, at which a battery alone counts as short of power.
    static constexpr int constrainedPercent = 20;

    // `source` must outlive the watcher.
    explicit PowerWatcher(PowerSource& source, QObject* parent = nullptr);

    // Reads the state, then follows the source; a second call does nothing.
    void start();
    // Reads the source again: `reason` always follows, `onChange` only a change of
    // `isConstrained`.
    void refresh();

    bool isConstrained() const { return m_isConstrained; }
    std::optional<Reason> reason() const { return m_reason; }

    // Called with the new `isConstrained`, only when it changed.
    std::function<void(bool)> onChange;

Q_SIGNALS:
    // The reason moved, the battery's percent included.
    void reasonChanged();

private:
    PowerSource& m_source;
    bool m_isConstrained = false;
    std::optional<Reason> m_reason;
    bool m_started = false;
};

} // namespace tw
