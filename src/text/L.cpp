#include "text/L.h"

#include <QCoreApplication>

namespace tw {

QString L(const char* key, const QString& english) {
    // translate() hands back the key itself when no installed table knows it.
    const QString translated = QCoreApplication::translate("tarnwick", key);
    if (translated.isEmpty() || translated == QLatin1String(key)) {
        return english;
    }
    return translated;
}

} // namespace tw
