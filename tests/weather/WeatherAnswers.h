// Weather answers for tests: a realistic forecast, and a body with one field replaced or removed by
// its path.
#pragma once

#include <QByteArray>
#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace tw::test {

// A place one hour ahead of UTC: 48 hours from 24 November at midnight, eight days.
inline QByteArray forecastAnswer() {
    using namespace Qt::StringLiterals;
    QJsonArray times;
    QJsonArray temps;
    QJsonArray codes;
    for (int i = 0; i < 48; ++i) {
        times.append(u"2026-11-%1T%2:00"_s.arg(24 + i / 24).arg(i % 24, 2, 10, QChar(u'0')));
        temps.append(i * 0.5);
        codes.append(i % 2 == 0 ? 0 : 61);
    }
    QJsonArray days;
    QJsonArray maxima;
    QJsonArray minima;
    for (int i = 0; i < 8; ++i) {
        days.append(QDate(2026, 11, 24).addDays(i).toString(Qt::ISODate));
        maxima.append(5.6 + i);
        minima.append(-0.5 - i);
    }
    const QJsonObject answer{
        {u"utc_offset_seconds"_s, 3600},
        {u"current"_s, QJsonObject{{u"temperature_2m"_s, -0.4},
                                   {u"apparent_temperature"_s, -3.5},
                                   {u"weather_code"_s, 71},
                                   {u"is_day"_s, 0}}},
        {u"hourly"_s,
         QJsonObject{{u"time"_s, times}, {u"temperature_2m"_s, temps}, {u"weather_code"_s, codes}}},
        {u"daily"_s, QJsonObject{{u"time"_s, days},
                                 {u"temperature_2m_max"_s, maxima},
                                 {u"temperature_2m_min"_s, minima},
                                 {u"weather_code"_s, QJsonArray{3, 0, 61, 71, 3, 3, 95, 45}},
                                 {u"sunrise"_s, QJsonArray{u"2026-11-24T07:45"_s}},
                                 {u"sunset"_s, QJsonArray{u"2026-11-24T16:30"_s}}}},
    };
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

// `path` is "key" or "outer.key"; an empty `value` removes the field, else it is JSON text.
inline QJsonObject patched(QJsonObject object, QStringList path, const QByteArray& value) {
    const QString key = path.takeFirst();
    if (!path.isEmpty()) {
        object.insert(key, patched(object.value(key).toObject(), path, value));
    } else if (value.isEmpty()) {
        object.remove(key);
    } else {
        object.insert(key, QJsonDocument::fromJson("{\"v\":" + value + '}').object().value(u"v"));
    }
    return object;
}

inline QByteArray answerWith(const QByteArray& base, const QString& path, const QByteArray& value) {
    QJsonObject root = QJsonDocument::fromJson(base).object();
    if (!path.isEmpty()) {
        root = patched(root, path.split(u'.'), value);
    }
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

} // namespace tw::test
