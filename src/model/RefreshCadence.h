// How often a widget kind's data is due: every so many seconds, or only when the data changes.
#pragma once

#include <chrono>
#include <optional>

namespace tw {

class RefreshCadence {
public:
    using Seconds = std::chrono::duration<double>;

    static RefreshCadence seconds(double seconds) { return RefreshCadence(Seconds(seconds)); }
    static RefreshCadence never() { return RefreshCadence(std::nullopt); }

    bool isNever() const { return !m_interval.has_value(); }
    // nullopt for never.
    std::optional<Seconds> interval() const { return m_interval; }

    bool operator==(const RefreshCadence&) const = default;

private:
    explicit RefreshCadence(std::optional<Seconds> interval)
        : m_interval(interval) {}

    std::optional<Seconds> m_interval;
};

} // namespace tw
