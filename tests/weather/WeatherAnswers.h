// Weather answers for tests: a realistic body with one field replaced or removed by its path.
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace tw::test {

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
