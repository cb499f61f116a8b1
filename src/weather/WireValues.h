// Lenient reading of the weather answers' JSON: a value of the wrong type reads as absent, a list
// ends before its first member of the wrong type and after its first `cap` members.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

#include <optional>

namespace tw::wire {

// The root of `json` when it parses and is an object.
std::optional<QJsonObject> rootObject(const QByteArray& json);
// A number with no fraction, within the range of int.
std::optional<int> integer(const QJsonValue& value);
std::optional<double> real(const QJsonValue& value);
// A non-empty string.
std::optional<QString> string(const QJsonValue& value);

QList<int> integers(const QJsonValue& list, qsizetype cap);
QList<double> reals(const QJsonValue& list, qsizetype cap);
QList<QString> strings(const QJsonValue& list, qsizetype cap);

} // namespace tw::wire
