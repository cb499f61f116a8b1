#include "custom/CustomPath.h"

#include "custom/CustomSource.h"

namespace tw {

CustomPath CustomPath::split(const QString& text) {
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    if (colon >= 0) {
        const QString head = text.first(colon);
        if (CustomSource::isValidName(head)) {
            return {head, text.sliced(colon + 1)};
        }
    }
    return {std::nullopt, text};
}

} // namespace tw
