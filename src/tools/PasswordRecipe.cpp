#include "tools/PasswordRecipe.h"

#include <cmath>

namespace tw {

namespace {

bool flag(const WidgetSettings& settings, const char* key, bool fallback) {
    const QString value = settings.value(QLatin1String(key));
    if (value == QLatin1String("true")) {
        return true;
    }
    if (value == QLatin1String("false")) {
        return false;
    }
    return fallback;
}

int number(const WidgetSettings& settings, const char* key, int fallback, int low, int high) {
    bool ok = false;
    const int value = settings.value(QLatin1String(key)).trimmed().toInt(&ok);
    return ok ? std::clamp(value, low, high) : fallback;
}

QString without(QString set, const QString& similar) {
    for (const QChar c : similar) {
        set.remove(c);
    }
    return set;
}

} // namespace

PasswordRecipe PasswordRecipe::fromSettings(const WidgetSettings& settings) {
    PasswordRecipe recipe;
    recipe.mode = settings.value(QStringLiteral("mode")) == QLatin1String("words")
                      ? Mode::words
                      : Mode::characters;
    recipe.length = number(settings, "length", recipe.length, minLength, maxLength);
    recipe.lower = flag(settings, "lower", recipe.lower);
    recipe.upper = flag(settings, "upper", recipe.upper);
    recipe.digits = flag(settings, "digits", recipe.digits);
    recipe.symbols = flag(settings, "symbols", recipe.symbols);
    if (!recipe.lower && !recipe.upper && !recipe.digits && !recipe.symbols) {
        recipe.lower = true;
    }
    recipe.avoidSimilar = flag(settings, "similar", recipe.avoidSimilar);
    recipe.words = number(settings, "words", recipe.words, minWords, maxWords);
    const QString separator = settings.value(QStringLiteral("separator"));
    if (separator == QLatin1String("space")) {
        recipe.separator = QStringLiteral(" ");
    } else if (separator == QLatin1String("dot")) {
        recipe.separator = QStringLiteral(".");
    } else if (separator == QLatin1String("none")) {
        recipe.separator.clear();
    }
    recipe.capitalize = flag(settings, "capitalize", recipe.capitalize);
    return recipe;
}

QStringList PasswordRecipe::sets() const {
    // Symbols that survive a shell, a form and a spreadsheet: no quotes, backslash or space.
    static const QString similar = QStringLiteral("Il1|O0o");
    QStringList out;
    const auto add = [&](bool on, const QString& set) {
        if (on) {
            out.append(avoidSimilar ? without(set, similar) : set);
        }
    };
    add(lower, QStringLiteral("abcdefghijklmnopqrstuvwxyz"));
    add(upper, QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    add(digits, QStringLiteral("0123456789"));
    add(symbols, QStringLiteral("!#$%&()*+-./:;<=>?@[]^_{}~"));
    return out;
}

double PasswordRecipe::entropyBits(qsizetype wordCount) const {
    if (mode == Mode::words) {
        return wordCount > 1 ? words * std::log2(static_cast<double>(wordCount)) : 0;
    }
    const QStringList chosen = sets();
    double pool = 0;
    for (const QString& set : chosen) {
        pool += static_cast<double>(set.size());
    }
    // Passwords lacking a chosen set are drawn again, so count only those with every set:
    // inclusion and exclusion over the sets left out, as shares of pool^length.
    double share = 0;
    const qsizetype n = chosen.size();
    for (quint32 mask = 0; mask < (1U << n); ++mask) {
        double missing = 0;
        int count = 0;
        for (qsizetype i = 0; i < n; ++i) {
            if ((mask & (1U << i)) != 0) {
                missing += static_cast<double>(chosen[i].size());
                ++count;
            }
        }
        share += ((count % 2 == 0) ? 1 : -1) * std::pow((pool - missing) / pool, length);
    }
    return length * std::log2(pool) + std::log2(share);
}

PasswordRecipe::Strength PasswordRecipe::strength(double bits) {
    if (bits < 40) {
        return Strength::weak;
    }
    if (bits < 60) {
        return Strength::fair;
    }
    if (bits < 80) {
        return Strength::strong;
    }
    return Strength::veryStrong;
}

} // namespace tw
