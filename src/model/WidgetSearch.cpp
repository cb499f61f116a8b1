#include "model/WidgetSearch.h"

#include <algorithm>

namespace tw::WidgetSearch {

QStringList words(QStringView text) {
    // Decomposed, "é" is "e" and a combining accent, which is then dropped.
    const QString decomposed = text.toString().normalized(QString::NormalizationForm_KD);
    QStringList found;
    QString word;
    for (const QChar c : decomposed) {
        if (c.isLetterOrNumber()) {
            word.append(c);
        } else if (!c.isMark() && !word.isEmpty()) {
            found.append(word.toCaseFolded());
            word.clear();
        }
    }
    if (!word.isEmpty()) {
        found.append(word.toCaseFolded());
    }
    return found;
}

bool matches(const QStringList& query, const QStringList& known) {
    for (const QString& wanted : query) {
        const bool begins = std::any_of(known.cbegin(), known.cend(), [&wanted](const QString& w) {
            return w.startsWith(wanted);
        });
        if (!begins) {
            return false;
        }
    }
    return true;
}

} // namespace tw::WidgetSearch
