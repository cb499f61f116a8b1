// The forecast service's answer as it comes over the wire, read leniently: a missing or
// wrong-typed field is absent, a list ends at its first member of the wrong type.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct OMResponse {
    // Sixteen days of hours and of days, the most the service gives; more is ignored.
    static constexpr qsizetype maxHours = 16 * 24;
    static constexpr qsizetype maxDays = 16;

    std::optional<int> utcOffsetSeconds;
    std::optional<double> temperature;
    std::optional<double> apparent;
    std::optional<int> code;
    std::optional<int> isDay;

    struct Hourly {
        QList<QString> time;
        QList<double> temps;
        QList<int> codes;
        bool operator==(const Hourly&) const = default;
    } hourly;

    struct Daily {
        QList<QString> time;
        QList<double> tempMax;
        QList<double> tempMin;
        QList<int> codes;
        std::optional<QList<QString>> sunrise;
        std::optional<QList<QString>> sunset;
        bool operator==(const Daily&) const = default;
    } daily;

    // Nullopt when `json` does not parse or its root is no object.
    static std::optional<OMResponse> fromAnswer(const QByteArray& json);

    bool operator==(const OMResponse&) const = default;
};

} // namespace tw
