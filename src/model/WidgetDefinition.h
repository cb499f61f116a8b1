// A widget kind as the catalogue hands it out; built-in and custom kinds alike.
#pragma once

#include "model/WidgetMetadata.h"

namespace tw {

// Views are not part of the model: the faces library draws a kind from its metadata and instance.
struct WidgetDefinition {
    WidgetMetadata metadata;

    bool operator==(const WidgetDefinition&) const = default;
};

} // namespace tw
