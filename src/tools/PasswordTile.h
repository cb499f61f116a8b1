// What a password generator tile shows: the password made for it (held in memory only, never in
// a file), its recipe and strength, and a copy just made.
#pragma once

#include "model/WidgetInstance.h"
#include "tools/PasswordRecipe.h"

namespace tw {

struct PasswordTile {
    QString password;
    PasswordRecipe recipe;
    double bits = 0;
    bool copied = false;

    // A fixed password of the recipe's kind and length, for previews and pictures, which must
    // not show a live one.
    static PasswordTile sample(const WidgetSettings& settings);

    bool operator==(const PasswordTile&) const = default;
};

} // namespace tw
