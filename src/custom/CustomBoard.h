// What custom widget tiles draw from: the definitions, the shared sources' states and the
// sparklines' histories. A plain value: the host keeps one up to date from its store and runtime,
// a picture fills its own.
#pragma once

#include "custom/CustomSourceState.h"
#include "custom/CustomValueBag.h"
#include "custom/CustomWidgetDefinition.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct ReadingsBoard;

struct CustomBoard {
    // By kind, "custom.<UUID>".
    QHash<QString, CustomWidgetDefinition> definitions;
    // By `CustomSource::cacheKey()`.
    QHash<QString, CustomSourceState> sources;
    // By history key: the definition's UUID, its row and its element ("<uuid>|2|0").
    QHash<QString, QList<double>> histories;
    // The machine's name, the short user name and when the machine started, for the tokens.
    QString host;
    QString user;
    std::optional<QDateTime> bootedAt;

    // Nullptr for a kind with no definition.
    const CustomWidgetDefinition* definition(const QString& kind) const;
    // The values of one moment for a definition: the readings from `readings` (may be null), the
    // main source's document and error, the named sources' documents, the first error of any.
    CustomValueBag bag(const CustomWidgetDefinition& definition, const QDateTime& now,
                       const ReadingsBoard* readings) const;
    // The merged state of the definition's sources; nullopt when none has a state.
    std::optional<CustomSourceState> sourceState(const CustomWidgetDefinition& definition) const;
    // "<uuid>|<row>|<element>", indexes from 0.
    static QString historyKey(const CustomWidgetDefinition& definition, int row, int element);
    // The points of a sparkline; empty when there are none.
    QList<double> history(const QString& key) const { return histories.value(key); }

    bool operator==(const CustomBoard&) const = default;
};

} // namespace tw
