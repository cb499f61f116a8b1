// Text look-up for strings written in Markdown: the styled runs of the text L gives.
#pragma once

#include "settings/StyledText.h"

namespace tw {

// L(key, english) parsed as Markdown; when it does not parse, the text as it is, unstyled.
StyledText LMarkdown(const char* key, const QString& english);

} // namespace tw
