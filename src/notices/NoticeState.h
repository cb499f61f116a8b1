// The local memory of which notices were shown, how often, when last, and which were dismissed.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QString>

#include <optional>

namespace tw {

struct NoticeState {
    struct Record {
        int count = 0;
        std::optional<QDateTime> last = {};
        bool dismissed = false;

        bool operator==(const Record&) const = default;
    };

    // Notice id to its record.
    QMap<QString, Record> records;

    bool operator==(const NoticeState&) const = default;

    // The record of `id`, or a fresh one.
    Record record(const QString& id) const { return records.value(id); }
    void noteShown(const QString& id, const QDateTime& at);
    void noteDismissed(const QString& id);
    // Keeps the records of `ids` and those shown fewer than `keepDays` days before `now`.
    void prune(const QSet<QString>& ids, const QDateTime& now, int keepDays);

    QByteArray toJson() const;
    // Lenient: a record that cannot be read is left out; nullopt only when the data is no JSON
    // object at all.
    static std::optional<NoticeState> fromJson(const QByteArray& json);
};

} // namespace tw
