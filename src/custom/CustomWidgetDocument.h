// The store's file, "custom-widgets.json": the format level and every widget the person made,
// without request headers, which live in the keychain.
#pragma once

#include "custom/CustomWidgetDefinition.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace tw {

struct CustomWidgetDocument {
    static constexpr int currentSchema = 1;

    int schema = currentSchema;
    QList<CustomWidgetDefinition> widgets;

    // nullopt when the bytes are no such document or any widget in it fails to decode: the file
    // is then set aside whole rather than rewritten without the widget. A repeated id gets a
    // fresh one, so that two widgets never share a kind.
    static std::optional<CustomWidgetDocument> decode(const QByteArray& bytes);
    // Indented JSON; never carries a header.
    QByteArray encode() const;

    bool operator==(const CustomWidgetDocument&) const = default;
};

} // namespace tw
