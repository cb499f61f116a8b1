// Text look-up: every string people read goes through L with its English default in the code.
#pragma once

#include <QString>

namespace tw {

// The text for `key` in the language chosen at launch, or `english` when no table has it.
// Tables are QTranslators installed on the application (context "tarnwick").
QString L(const char* key, const QString& english);

} // namespace tw
