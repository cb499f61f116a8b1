// Where in a custom widget's text each issue stands, so that the editor can mark its line.
#pragma once

#include "custom/CustomWidgetDefinition.h"
#include "custom/CustomWidgetIssue.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <optional>

namespace tw::CustomIssueLines {

// The line (from 0) of every key and array member of a JSON text, by its path: "name",
// "rows/0/elements/1/text"; the root is "". Lenient: text that is no JSON gives what it can.
// The first of a repeated key keeps the place.
QHash<QString, int> keyLines(QStringView text);

// The line an issue of `decoded` concerns: its key's, else that of the nearest enclosing key
// present in the text, else 0.
int lineOf(const CustomWidgetIssue& issue, const CustomWidgetDefinition& decoded,
           const QHash<QString, int>& lines);

// For text the JSON parser refuses: the line of the parser's offset; nullopt for valid JSON.
std::optional<int> parseErrorLine(const QString& text);

} // namespace tw::CustomIssueLines
