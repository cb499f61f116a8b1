#include "settings/LMarkdown.h"

#include "text/L.h"

namespace tw {

StyledText LMarkdown(const char* key, const QString& english) {
    const QString text = L(key, english);
    return StyledText::fromMarkdown(text).value_or(StyledText::plain(text));
}

} // namespace tw
