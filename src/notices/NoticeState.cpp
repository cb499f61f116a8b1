#include "notices/NoticeState.h"

#include "notices/Notice.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tw {

void NoticeState::noteShown(const QString& id, const QDateTime& at) {
    Record& r = records[id];
    r.count += 1;
    r.last = at;
}

void NoticeState::noteDismissed(const QString& id) {
    records[id].dismissed = true;
}

void NoticeState::prune(const QSet<QString>& ids, const QDateTime& now, int keepDays) {
    const qint64 keep = qint64(keepDays) * 86400;
    for (auto it = records.begin(); it != records.end();) {
        const bool recent = it->last && it->last->secsTo(now) < keep;
        if (ids.contains(it.key()) || recent) {
            ++it;
        } else {
            it = records.erase(it);
        }
    }
}

QByteArray NoticeState::toJson() const {
    QJsonObject out;
    for (auto it = records.begin(); it != records.end(); ++it) {
        QJsonObject record{{QStringLiteral("count"), it->count},
                           {QStringLiteral("dismissed"), it->dismissed}};
        if (it->last) {
            record.insert(QStringLiteral("last"), it->last->toUTC().toString(Qt::ISODateWithMs));
        }
        out.insert(it.key(), record);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("records"), out}})
        .toJson(QJsonDocument::Compact);
}

std::optional<NoticeState> NoticeState::fromJson(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        return std::nullopt;
    }
    NoticeState state;
    const QJsonObject records = document.object().value(QStringLiteral("records")).toObject();
    for (auto it = records.begin(); it != records.end(); ++it) {
        if (!it.value().isObject()) {
            continue;
        }
        const QJsonObject object = it.value().toObject();
        Record record;
        record.count = std::max(0, object.value(QStringLiteral("count")).toInt());
        record.dismissed = object.value(QStringLiteral("dismissed")).toBool();
        record.last = Notice::parseDate(object.value(QStringLiteral("last")).toString());
        state.records.insert(it.key(), record);
    }
    return state;
}

} // namespace tw
