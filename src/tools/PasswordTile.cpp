#include "tools/PasswordTile.h"

#include "tools/PasswordGenerator.h"

namespace tw {

PasswordTile PasswordTile::sample(const WidgetSettings& settings) {
    PasswordTile tile;
    tile.recipe = PasswordRecipe::fromSettings(settings);
    const QStringList& words = PasswordGenerator::wordList();
    tile.bits = tile.recipe.entropyBits(words.size());
    if (tile.recipe.mode == PasswordRecipe::Mode::words) {
        static const QStringList sample = {
            QStringLiteral("harbor"),  QStringLiteral("maple"),   QStringLiteral("quiet"),
            QStringLiteral("lantern"), QStringLiteral("orbit"),   QStringLiteral("pepper"),
            QStringLiteral("thistle"), QStringLiteral("velvet"),  QStringLiteral("comet"),
            QStringLiteral("willow"),  QStringLiteral("saffron"), QStringLiteral("geyser")};
        QStringList chosen = sample.mid(0, tile.recipe.words);
        if (tile.recipe.capitalize) {
            for (QString& word : chosen) {
                word[0] = word[0].toUpper();
            }
        }
        tile.password = chosen.join(tile.recipe.separator);
        return tile;
    }
    // A counter through the recipe's own pool reads as random and draws the same each time.
    const QString pool = tile.recipe.sets().join(QString());
    for (int i = 0; i < tile.recipe.length; ++i) {
        tile.password += pool[(i * 37 + 11) % pool.size()];
    }
    return tile;
}

} // namespace tw
