// One row of the constant table of built-in widget kinds.
#pragma once

#include "model/WidgetCategory.h"
#include "model/WidgetMetadata.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tw {

struct BuiltInWidget {
    WidgetMetadata metadata;
    WidgetCategory category = WidgetCategory::tools;
    // How many instances of the kind one layout may hold.
    int maxInstances = 1;
    // The folded words the gallery's search finds the kind by: kind, name, category and keywords,
    // each in the language chosen at launch and in English.
    QStringList searchWords;
    // What the kind shows, in a few words for the gallery: "widget.<kind>.summary".
    QString summary;

    // All 51 built-in kinds in catalogue order, the order of every list. Built once, on first
    // use, so that display names come from the language chosen at launch.
    static const QList<BuiltInWidget>& table();
    // The row of exactly `kind`, or nullptr.
    static const BuiltInWidget* find(const QString& kind);
};

} // namespace tw
