// A custom widget file, whatever it holds: decoding never breaks, validation always answers, the
// clean-up is a fixed point, and what is written reads back as the same definition (row and
// element ids aside, which are made at every reading) and writes the same text again.
#include "Require.h"
#include "custom/CustomWidgetDefinition.h"

#include <QByteArray>

#include <cstdint>

using tw::CustomWidgetDefinition;
using tw::fuzz::require;

namespace {

constexpr auto included = CustomWidgetDefinition::Secrets::included;
constexpr auto omitted = CustomWidgetDefinition::Secrets::omitted;

// Every field of the definition, ids of rows and elements aside.
QJsonObject fields(const CustomWidgetDefinition& definition) {
    return definition.toJson(included);
}

void checkRoundTrip(const CustomWidgetDefinition& definition) {
    const QString text = definition.fileJSON(included);
    if (text == QLatin1String("{}")) {
        return;
    }
    const std::optional<CustomWidgetDefinition> back = CustomWidgetDefinition::decode(text);
    require(back.has_value(), "a written definition does not decode");
    require(fields(*back) == fields(definition), "a written definition reads back different");
    require(back->fileJSON(included) == text, "writing is not stable");

    const std::optional<CustomWidgetDefinition> shared =
        CustomWidgetDefinition::decode(definition.fileJSON(omitted));
    require(shared.has_value(), "a shared definition does not decode");
    require(!shared->hasHeaders(), "a shared definition carries headers");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<CustomWidgetDefinition> decoded = CustomWidgetDefinition::decode(bytes);
    if (!decoded) {
        return 0;
    }
    (void)decoded->issues();
    checkRoundTrip(*decoded);

    const CustomWidgetDefinition clean = decoded->sanitized();
    require(fields(clean.sanitized()) == fields(clean), "the clean-up is no fixed point");
    require(clean.sizes.size() >= 1 && !clean.name.trimmed().isEmpty(), "clean-up left a hole");
    require(!clean.extraSources ||
                clean.extraSources->size() <= CustomWidgetDefinition::maximumExtraSources,
            "too many extra sources after clean-up");
    (void)clean.isRenderable();
    checkRoundTrip(clean);
    return 0;
}
