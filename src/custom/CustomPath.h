// A path of an element: "name:path" reads an extra source, anything else the main source.
#pragma once

#include <QString>

#include <optional>

namespace tw {

struct CustomPath {
    // The extra source's name, or nullopt for the main source.
    std::optional<QString> source;
    QString path;

    // Divides at the first ":" when what stands before it is a valid source name; every other
    // text, one without a colon too, is a path in the main source as a whole.
    static CustomPath split(const QString& text);

    bool operator==(const CustomPath&) const = default;
};

} // namespace tw
