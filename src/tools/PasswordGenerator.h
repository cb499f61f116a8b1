// Makes passwords and passphrases by a recipe, every possible one equally likely.
#pragma once

#include "tools/PasswordRecipe.h"
#include "tools/RandomPick.h"

#include <QString>
#include <QStringList>

namespace tw {

namespace PasswordGenerator {

// Characters drawn from the recipe's sets until every set is in (so each password that has them
// all is equally likely), or words of `words` joined by its separator. Without words a
// passphrase recipe makes characters.
QString make(const PasswordRecipe& recipe, const QStringList& words, const RandomSource& source);

// The shipped list: short, common English words, one a line, lower case and without repeats.
const QStringList& wordList();

} // namespace PasswordGenerator

} // namespace tw
