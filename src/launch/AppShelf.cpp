#include "launch/AppShelf.h"

#include <QRegularExpression>

#include <algorithm>

namespace tw {

namespace {

// Lower case without accents: "Écran" is found by "ecran".
QString folded(const QString& text) {
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString out;
    out.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing) {
            out += c.toLower();
        }
    }
    return out;
}

// 0 best … 4 no match, for one word of the query.
int rank(const InstalledApp& app, const QString& word) {
    const QString name = folded(app.name);
    if (name.startsWith(word)) {
        return 0;
    }
    static const QRegularExpression boundary(QStringLiteral("[\\s\\-_.]+"));
    const QStringList parts = name.split(boundary, Qt::SkipEmptyParts);
    if (std::any_of(parts.cbegin(), parts.cend(),
                    [&](const QString& part) { return part.startsWith(word); })) {
        return 1;
    }
    if (name.contains(word)) {
        return 2;
    }
    const bool keyword = std::any_of(app.keywords.cbegin(), app.keywords.cend(),
                                     [&](const QString& k) { return folded(k).contains(word); });
    return keyword || folded(app.id).contains(word) ? 3 : 4;
}

} // namespace

namespace AppShelf {

QString key() {
    return QStringLiteral("apps");
}

QStringList read(const WidgetSettings& settings) {
    QStringList ids;
    for (const QString& part : settings.value(key()).split(QLatin1Char(';'))) {
        const QString id = part.trimmed();
        if (!id.isEmpty() && !ids.contains(id)) {
            ids << id;
        }
    }
    return ids;
}

QString write(const QStringList& ids) {
    QStringList kept;
    for (const QString& id : ids) {
        const QString trimmed = id.trimmed();
        if (!trimmed.isEmpty() && !trimmed.contains(QLatin1Char(';')) && !kept.contains(trimmed)) {
            kept << trimmed;
        }
    }
    return kept.join(QLatin1Char(';'));
}

QStringList toggled(const QStringList& ids, const QString& id) {
    QStringList out = ids;
    if (out.removeAll(id) == 0) {
        out << id;
    }
    return out;
}

QList<InstalledApp> search(const QList<InstalledApp>& apps, const QString& query) {
    const QStringList words = folded(query).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        return apps;
    }
    QList<std::pair<int, InstalledApp>> found;
    for (const InstalledApp& app : apps) {
        int worst = 0;
        for (const QString& word : words) {
            worst = std::max(worst, rank(app, word));
        }
        if (worst < 4) {
            found.append({worst, app});
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QList<InstalledApp> out;
    for (const auto& [score, app] : found) {
        out << app;
    }
    return out;
}

} // namespace AppShelf

} // namespace tw
