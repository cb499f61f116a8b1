// A list element that may fail to decode without failing the list it stands in.
#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QList>

#include <optional>

namespace tw {

template <typename T>
struct Lossy {
    std::optional<T> value;

    static Lossy fromJson(const QJsonValue& json) { return Lossy{T::fromJson(json)}; }
};

// The members of `array` that decode as T, in their order; the others are dropped.
template <typename T>
QList<T> decodeLossyList(const QJsonArray& array) {
    QList<T> decoded;
    decoded.reserve(array.size());
    for (const auto& element : array) {
        if (Lossy<T> item = Lossy<T>::fromJson(element); item.value) {
            decoded.append(std::move(*item.value));
        }
    }
    return decoded;
}

} // namespace tw
