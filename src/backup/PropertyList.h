// Preferences as an XML property list: the form a layout file carries them in.
#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

namespace tw {

class PropertyList {
public:
    PropertyList() = delete;

    // Nesting deeper than this is refused; preferences are flat.
    static constexpr int maxDepth = 32;

    // Strings, integers, reals, booleans, bytes, dates, lists and maps keep their type; any other
    // value is written as its text.
    static QByteArray encode(const QVariantMap& values);
    // A top-level dictionary, or nothing for anything else (malformed XML, unknown elements,
    // too deep).
    static std::optional<QVariantMap> decode(const QByteArray& bytes);
};

} // namespace tw
