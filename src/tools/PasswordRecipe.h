// What a password generator tile makes, read from its settings: characters or words, how many,
// from which sets, and how strong that is.
#pragma once

#include "model/WidgetInstance.h"

#include <QString>
#include <QStringList>

namespace tw {

struct PasswordRecipe {
    enum class Mode { characters, words };
    enum class Strength { weak, fair, strong, veryStrong };

    static constexpr int minLength = 8;
    static constexpr int maxLength = 64;
    static constexpr int minWords = 3;
    static constexpr int maxWords = 12;

    Mode mode = Mode::characters;
    int length = 20;
    bool lower = true;
    bool upper = true;
    bool digits = true;
    bool symbols = true;
    // Leaves out characters that are easily taken for one another (I l 1 O 0 o and kin).
    bool avoidSimilar = true;
    int words = 6;
    QString separator = QStringLiteral("-");
    bool capitalize = false;

    // "mode" (characters, words), "length", "lower", "upper", "digits", "symbols", "similar",
    // "words", "separator" (dash, space, dot, none), "capitalize"; out-of-range numbers are held
    // to their range, and with no set chosen lower case is used.
    static PasswordRecipe fromSettings(const WidgetSettings& settings);

    // The character sets chosen, each without the look-alikes when they are avoided; a password
    // holds at least one character of each.
    QStringList sets() const;

    // Bits of entropy of a password made by this recipe: the base-2 logarithm of how many
    // passwords it can make, every one equally likely (`wordCount` words in the list).
    double entropyBits(qsizetype wordCount) const;

    static Strength strength(double bits);

    bool operator==(const PasswordRecipe&) const = default;
};

} // namespace tw
