// The custom widget store's file, whatever it holds: decoding never breaks, no two widgets share
// an id, and what is written reads back as the same widgets, never with a header.
#include "Require.h"
#include "custom/CustomWidgetDocument.h"

#include <QByteArray>
#include <QSet>

#include <cstdint>

using tw::CustomWidgetDefinition;
using tw::CustomWidgetDocument;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<CustomWidgetDocument> decoded = CustomWidgetDocument::decode(bytes);
    if (!decoded) {
        return 0;
    }
    QSet<QUuid> ids;
    for (const CustomWidgetDefinition& widget : decoded->widgets) {
        ids.insert(widget.id);
    }
    require(ids.size() == decoded->widgets.size(), "two widgets share an id");

    const QByteArray written = decoded->encode();
    const std::optional<CustomWidgetDocument> back = CustomWidgetDocument::decode(written);
    require(back.has_value(), "a written document does not decode");
    require(back->widgets.size() == decoded->widgets.size(), "widgets lost on the way");
    for (qsizetype i = 0; i < back->widgets.size(); ++i) {
        constexpr auto omitted = CustomWidgetDefinition::Secrets::omitted;
        require(!back->widgets[i].hasHeaders(), "a header reached the file");
        require(back->widgets[i].toJson(omitted) == decoded->widgets[i].toJson(omitted),
                "a written widget reads back different");
    }
    require(back->encode() == written, "writing is not stable");
    return 0;
}
