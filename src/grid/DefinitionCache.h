// The definitions of the kinds met while healing one layout, each asked of the catalogue once:
// a custom kind's definition is built by the custom widget store, which is not free.
#pragma once

#include "model/WidgetDefinition.h"
#include "model/WidgetRegistry.h"

#include <QHash>
#include <QString>

#include <optional>

namespace tw {

class DefinitionCache {
public:
    explicit DefinitionCache(const WidgetRegistry& registry)
        : m_registry(registry) {}

    const std::optional<WidgetDefinition>& definition(const QString& kind) {
        auto it = m_known.find(kind);
        if (it == m_known.end()) {
            it = m_known.insert(kind, m_registry.definition(kind));
        }
        return *it;
    }

private:
    const WidgetRegistry& m_registry;
    QHash<QString, std::optional<WidgetDefinition>> m_known;
};

} // namespace tw
