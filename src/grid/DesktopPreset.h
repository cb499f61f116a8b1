// A ready-made arrangement offered to the user: kinds, sizes and cells to add in one go.
#pragma once

#include "model/WidgetInstance.h"
#include "model/WidgetRegistry.h"

#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct DesktopPreset {
    struct Entry {
        QString kind;
        WidgetSize size = WidgetSize::small;
        int col = 0;
        int row = 0;
        std::optional<WidgetSettings> settings;

        bool operator==(const Entry&) const = default;
    };

    QString id;
    QString title;
    QString subtitle;
    QString symbol;
    QList<Entry> entries;

    bool operator==(const DesktopPreset&) const = default;

    // The entries whose kind this build knows.
    QList<Entry> availableEntries(const WidgetRegistry& registry) const {
        QList<Entry> available;
        for (const Entry& entry : entries) {
            if (registry.definition(entry.kind)) {
                available.append(entry);
            }
        }
        return available;
    }
};

} // namespace tw
