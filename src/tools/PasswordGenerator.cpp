#include "tools/PasswordGenerator.h"

#include <QFile>
#include <QSet>

namespace tw {

namespace {

QString characters(const PasswordRecipe& recipe, const RandomSource& source) {
    const QStringList sets = recipe.sets();
    const QString pool = sets.join(QString());
    QString password(recipe.length, QChar());
    for (;;) {
        for (int i = 0; i < recipe.length; ++i) {
            password[i] = pool[RandomPick::below(source, static_cast<quint32>(pool.size()))];
        }
        bool every = true;
        for (const QString& set : sets) {
            bool found = false;
            for (const QChar c : set) {
                found = found || password.contains(c);
            }
            every = every && found;
        }
        if (every) {
            return password;
        }
    }
}

} // namespace

QString PasswordGenerator::make(const PasswordRecipe& recipe, const QStringList& words,
                                const RandomSource& source) {
    if (recipe.mode == PasswordRecipe::Mode::characters || words.size() < 2) {
        PasswordRecipe chars = recipe;
        chars.mode = PasswordRecipe::Mode::characters;
        return characters(chars, source);
    }
    QStringList chosen;
    for (int i = 0; i < recipe.words; ++i) {
        QString word = words[RandomPick::below(source, static_cast<quint32>(words.size()))];
        if (recipe.capitalize && !word.isEmpty()) {
            word[0] = word[0].toUpper();
        }
        chosen.append(word);
    }
    return chosen.join(recipe.separator);
}

const QStringList& PasswordGenerator::wordList() {
    static const QStringList words = [] {
        QStringList out;
        QFile file(QStringLiteral(":/tools/words.txt"));
        if (!file.open(QIODevice::ReadOnly)) {
            return out;
        }
        QSet<QString> seen;
        for (const QByteArray& raw : file.readAll().split('\n')) {
            const QString word = QString::fromLatin1(raw).trimmed();
            bool letters = word.size() >= 3 && word.size() <= 9;
            for (const QChar c : word) {
                letters = letters && c >= QLatin1Char('a') && c <= QLatin1Char('z');
            }
            if (letters && !seen.contains(word)) {
                seen.insert(word);
                out.append(word);
            }
        }
        return out;
    }();
    return words;
}

} // namespace tw
