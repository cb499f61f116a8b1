#include "tools/PasswordBehaviour.h"

#include "grid/GridStore.h"
#include "text/L.h"
#include "tools/PasswordGenerator.h"

namespace tw {

PasswordBehaviour::PasswordBehaviour(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                                     RandomSource source, QObject* parent)
    : TileBehaviour(parent)
    , m_grid(grid)
    , m_clipboard(clipboard)
    , m_source(std::move(source))
    , m_copied(scheduler, this, [this](const QUuid& id) {
        if (const auto found = m_tiles.find(id); found != m_tiles.end()) {
            found->copied = false;
            Q_EMIT changed(id);
        }
    }) {}

void PasswordBehaviour::make(PasswordTile& tile, const PasswordRecipe& recipe) {
    const QStringList& words = PasswordGenerator::wordList();
    tile.recipe = recipe;
    tile.password = PasswordGenerator::make(recipe, words, m_source);
    tile.bits = recipe.entropyBits(words.size());
    tile.copied = false;
}

void PasswordBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QHash<QUuid, PasswordTile> kept;
    for (const BehaviourTile& tile : tiles) {
        const PasswordRecipe recipe =
            PasswordRecipe::fromSettings(tile.instance.settings.value_or(WidgetSettings()));
        PasswordTile shown = m_tiles.value(tile.instance.id);
        // A new recipe makes a new password; a tile only moved or come into view keeps its own.
        if (shown.password.isEmpty() || shown.recipe != recipe) {
            make(shown, recipe);
            Q_EMIT changed(tile.instance.id);
        }
        kept.insert(tile.instance.id, shown);
    }
    for (auto it = m_tiles.cbegin(); it != m_tiles.cend(); ++it) {
        if (!kept.contains(it.key())) {
            m_copied.forget(it.key());
        }
    }
    m_tiles = kept;
}

PasswordTile& PasswordBehaviour::tileOf(const WidgetInstance& instance) {
    auto found = m_tiles.find(instance.id);
    if (found == m_tiles.end()) {
        found = m_tiles.insert(instance.id, {});
        make(*found, PasswordRecipe::fromSettings(instance.settings.value_or(WidgetSettings())));
    }
    return *found;
}

const PasswordTile* PasswordBehaviour::tile(const QUuid& id) const {
    const auto found = m_tiles.constFind(id);
    return found != m_tiles.constEnd() ? &*found : nullptr;
}

WidgetSettings PasswordBehaviour::settingsFor(const QString& command,
                                              const WidgetSettings& settings) {
    const PasswordRecipe recipe = PasswordRecipe::fromSettings(settings);
    const bool words = recipe.mode == PasswordRecipe::Mode::words;
    const int step = command == QLatin1String("longer") ? 1 : -1;
    if (command == QLatin1String("longer") || command == QLatin1String("shorter")) {
        if (words) {
            return {{QStringLiteral("words"),
                     QString::number(std::clamp(recipe.words + step, PasswordRecipe::minWords,
                                                PasswordRecipe::maxWords))}};
        }
        return {{QStringLiteral("length"),
                 QString::number(std::clamp(recipe.length + step, PasswordRecipe::minLength,
                                            PasswordRecipe::maxLength))}};
    }
    if (!command.startsWith(QLatin1String("toggle:"))) {
        return {};
    }
    const QString key = command.mid(7);
    if (key == QLatin1String("mode")) {
        return {{QStringLiteral("mode"),
                 words ? QStringLiteral("characters") : QStringLiteral("words")}};
    }
    const QList<std::pair<QString, bool>> sets = {{QStringLiteral("lower"), recipe.lower},
                                                  {QStringLiteral("upper"), recipe.upper},
                                                  {QStringLiteral("digits"), recipe.digits},
                                                  {QStringLiteral("symbols"), recipe.symbols},
                                                  {QStringLiteral("similar"), recipe.avoidSimilar}};
    int setsOn = 0;
    for (const auto& [name, on] : sets.mid(0, 4)) {
        setsOn += on ? 1 : 0;
    }
    for (const auto& [name, on] : sets) {
        if (name != key) {
            continue;
        }
        // The last set stays: a password needs characters to be made of.
        if (on && setsOn == 1 && name != QLatin1String("similar")) {
            return {};
        }
        return {{name, on ? QStringLiteral("false") : QStringLiteral("true")}};
    }
    return {};
}

bool PasswordBehaviour::press(const WidgetInstance& instance, const QString& command) {
    PasswordTile& tile = tileOf(instance);
    if (command == QLatin1String("copy")) {
        m_clipboard.copyText(tile.password, Clipboard::Secrecy::secret);
        tile.copied = true;
        m_copied.start(instance.id);
        Q_EMIT changed(instance.id);
        return true;
    }
    if (command == QLatin1String("new")) {
        make(tile, tile.recipe);
        Q_EMIT changed(instance.id);
        return true;
    }
    const WidgetSettings settings = instance.settings.value_or(WidgetSettings());
    const WidgetSettings changes = settingsFor(command, settings);
    if (changes.isEmpty()) {
        // A control that changes nothing still takes its click.
        return command.startsWith(QLatin1String("toggle:")) || command == QLatin1String("longer") ||
               command == QLatin1String("shorter");
    }
    // The person's own choice, so a step they can undo. The grid tells the desktop at once, which
    // may hand the tiles over again: find this one afresh after it.
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        m_grid.setSetting(instance.id, it.key(), it.value());
    }
    WidgetSettings after = settings;
    after.insert(changes);
    const PasswordRecipe recipe = PasswordRecipe::fromSettings(after);
    PasswordTile& shown = tileOf(instance);
    if (shown.recipe != recipe) {
        make(shown, recipe);
    }
    Q_EMIT changed(instance.id);
    return true;
}

QList<TileBehaviour::MenuItem> PasswordBehaviour::menuItems(const WidgetInstance&) const {
    return {{L("password.menu.copy", QStringLiteral("Copy Password")), QStringLiteral("copy")},
            {L("password.menu.new", QStringLiteral("New Password")), QStringLiteral("new")}};
}

} // namespace tw
