// One finished speed test, and the history of them as the preferences keep it.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QList>

#include <optional>

namespace tw {

struct SpeedTestResult {
    // The newest results kept; older ones fall off the front.
    static constexpr qsizetype historyLimit = 30;

    QDateTime date;
    double downMbps = 0;
    double upMbps = 0;
    double pingMs = 0;

    bool operator==(const SpeedTestResult&) const = default;

    QJsonObject toJson() const;
    // Absent when the date or a figure is missing, not a number or negative.
    static std::optional<SpeedTestResult> fromJson(const QJsonObject& object);

    // A JSON array, oldest first.
    static QByteArray encodeHistory(const QList<SpeedTestResult>& history);
    // Lenient: members that cannot be read are dropped, anything but an array is an empty
    // history; at most the newest `historyLimit`, oldest first.
    static QList<SpeedTestResult> decodeHistory(const QByteArray& json);
};

} // namespace tw
