#include "look/ThemeStore.h"

#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/Defaults.h"
#include "platform/RawValues.h"
#include "settings/StoredValue.h"
#include "text/L.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tw {

Q_LOGGING_CATEGORY(lcTheme, "ThemeStore")

namespace {

constexpr RawValues<ThemeStore::GlassStyle, 3> kGlassStyles{{"frosted", "clear", "liquid"}};
constexpr RawValues<ThemeStore::GlassTint, 3> kGlassTints{{"auto", "light", "dark"}};

} // namespace

QString ThemeStore::defaultFilePath() {
    return QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("theme.json"));
}

ThemeStore::ThemeStore(Defaults& defaults, const Clock& clock, const QString& filePath,
                       QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_clock(clock)
    , m_filePath(filePath) {
    load();
}

void ThemeStore::load() {
    m_glassStrength = StoredValue::number(m_defaults.value(glassStrengthKey)).value_or(0.0);
    m_glassClear = StoredValue::boolean(m_defaults.value(glassClearKey)).value_or(false);
    m_glassLiquid = StoredValue::boolean(m_defaults.value(glassLiquidKey)).value_or(false);
    m_glassTint =
        glassTintFromName(StoredValue::word(m_defaults.value(glassTintKey)).value_or(QString()));
    m_uniformColors = StoredValue::boolean(m_defaults.value(uniformColorsKey)).value_or(false);
    const QVariantMap perDisplay = m_defaults.value(perDisplayKey).toMap();
    for (auto it = perDisplay.cbegin(); it != perDisplay.cend(); ++it) {
        if (it.value().typeId() == QMetaType::QString) {
            m_perDisplay.insert(it.key(), it.value().toString());
        }
    }

    std::optional<Theme> stored;
    const DataFile::Outcome outcome =
        DataFile::load(m_filePath, m_clock.now(), [&stored](const QByteArray& bytes) {
            QJsonParseError error{};
            const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
            stored = error.error == QJsonParseError::NoError && document.isObject()
                         ? Theme::fromJson(document.object())
                         : std::nullopt;
            return stored.has_value();
        });
    m_fileLeftAlone = outcome == DataFile::Outcome::leftAlone;
    if (outcome == DataFile::Outcome::setAside) {
        qCWarning(lcTheme, "Unreadable theme file %s; using the default theme",
                  qUtf8Printable(m_filePath));
    }
    if (stored) {
        m_current = Theme::builtIn(stored->id).value_or(*stored);
    }
}

Theme ThemeStore::themed(Theme theme) const {
    if (m_accentOverride) {
        theme.accent = *m_accentOverride;
    }
    return theme;
}

void ThemeStore::setCurrent(const Theme& theme) {
    if (theme == m_current) {
        return;
    }
    m_current = theme;
    Q_EMIT currentChanged(m_current);
    Q_EMIT themedChanged();
}

void ThemeStore::select(const Theme& theme) {
    setCurrent(theme);
    save();
}

void ThemeStore::selectPalette(const QString& id) {
    if (const std::optional<Theme> theme = Theme::builtIn(id)) {
        select(*theme);
    }
}

void ThemeStore::update(const std::function<void(Theme&)>& change) {
    Theme theme = m_current;
    change(theme);
    select(theme);
}

void ThemeStore::resetToDefault() {
    setAccentOverride(std::nullopt);
    select(Theme::defaultTheme());
}

void ThemeStore::save() {
    if (!m_persistsPreferences || m_fileLeftAlone) {
        return;
    }
    const QByteArray bytes = QJsonDocument(m_current.toJson()).toJson(QJsonDocument::Indented);
    if (const AtomicFile::Result result = AtomicFile::write(m_filePath, bytes); !result) {
        qCWarning(lcTheme, "Failed to save theme: %s", qUtf8Printable(result.error));
    }
}

void ThemeStore::store(const QString& key, const QVariant& value) {
    if (m_persistsPreferences) {
        m_defaults.setValue(key, value);
    }
}

void ThemeStore::setGlassStrength(double strength) {
    if (!std::isfinite(strength) || strength == m_glassStrength) {
        return;
    }
    m_glassStrength = strength;
    store(glassStrengthKey, strength);
    Q_EMIT glassStrengthChanged(strength);
}

ThemeStore::GlassStyle ThemeStore::glassStyle() const {
    if (m_glassLiquid) {
        return GlassStyle::Liquid;
    }
    return m_glassClear ? GlassStyle::Clear : GlassStyle::Frosted;
}

void ThemeStore::setGlassFlags(std::optional<bool> clear, std::optional<bool> liquid) {
    const GlassStyle before = glassStyle();
    if (clear && *clear != m_glassClear) {
        m_glassClear = *clear;
        store(glassClearKey, m_glassClear);
        Q_EMIT glassClearChanged(m_glassClear);
    }
    if (liquid && *liquid != m_glassLiquid) {
        m_glassLiquid = *liquid;
        store(glassLiquidKey, m_glassLiquid);
        Q_EMIT glassLiquidChanged(m_glassLiquid);
    }
    if (glassStyle() != before) {
        Q_EMIT glassStyleChanged(glassStyle());
    }
}

void ThemeStore::setGlassClear(bool clear) {
    setGlassFlags(clear, std::nullopt);
}

void ThemeStore::setGlassLiquid(bool liquid) {
    setGlassFlags(std::nullopt, liquid);
}

void ThemeStore::setGlassStyle(GlassStyle style) {
    setGlassFlags(style == GlassStyle::Clear, style == GlassStyle::Liquid);
}

void ThemeStore::setGlassTint(GlassTint tint) {
    if (tint == m_glassTint) {
        return;
    }
    m_glassTint = tint;
    store(glassTintKey, glassTintName(tint));
    Q_EMIT glassTintChanged(tint);
}

void ThemeStore::setUniformColors(bool uniform) {
    if (uniform == m_uniformColors) {
        return;
    }
    m_uniformColors = uniform;
    store(uniformColorsKey, uniform);
    Q_EMIT uniformColorsChanged(uniform);
}

void ThemeStore::setAccentOverride(const std::optional<ThemeColor>& accent) {
    if (accent == m_accentOverride) {
        return;
    }
    m_accentOverride = accent;
    Q_EMIT accentOverrideChanged();
    Q_EMIT themedChanged();
}

void ThemeStore::setTheme(const std::optional<QString>& id, const QString& display) {
    const bool known = id && Theme::builtIn(*id);
    const bool changed =
        known ? m_perDisplay.value(display) != *id : m_perDisplay.contains(display);
    if (known) {
        m_perDisplay.insert(display, *id);
    } else {
        m_perDisplay.remove(display);
    }
    if (changed) {
        Q_EMIT perDisplayChanged();
    }
    savePerDisplay();
}

std::optional<Theme> ThemeStore::themeForDisplay(const std::optional<QString>& display) const {
    if (!display) {
        return std::nullopt;
    }
    const auto entry = m_perDisplay.constFind(*display);
    if (entry == m_perDisplay.cend()) {
        return std::nullopt;
    }
    const std::optional<Theme> theme = Theme::builtIn(*entry);
    if (!theme) {
        return std::nullopt;
    }
    return themed(*theme);
}

void ThemeStore::clearPerDisplayThemes() {
    if (!m_perDisplay.isEmpty()) {
        m_perDisplay.clear();
        Q_EMIT perDisplayChanged();
    }
    savePerDisplay();
}

void ThemeStore::savePerDisplay() {
    QVariantMap map;
    for (auto it = m_perDisplay.cbegin(); it != m_perDisplay.cend(); ++it) {
        map.insert(it.key(), it.value());
    }
    store(perDisplayKey, map);
}

ThemeColor ThemeStore::tint(const ThemeColor& color, int shade) const {
    if (!m_uniformColors) {
        return color;
    }
    ThemeColor accent = themed().accent;
    if (shade == 0) {
        return accent;
    }
    // Integer halving first: shades 1 and 2 share an amount, as do 3 and 4.
    const double amount = std::min((std::abs(shade) + 1) / 2 * 0.16, 0.45);
    if (shade % 2 != 0) {
        accent.red += (1.0 - accent.red) * amount;
        accent.green += (1.0 - accent.green) * amount;
        accent.blue += (1.0 - accent.blue) * amount;
    } else {
        accent.opacity = std::max(1.0 - amount, 0.45);
    }
    return accent;
}

void ThemeStore::applyDarkFrostedOnce(const QString& release) {
    if (!m_persistsPreferences) {
        return;
    }
    const QString key = glassResetKeyPrefix + release;
    if (m_defaults.contains(key)) {
        return;
    }
    m_defaults.setValue(key, true);
    if (glassStyle() != GlassStyle::Frosted) {
        setGlassFlags(false, false);
    }
    if (m_glassTint != GlassTint::Dark) {
        setGlassTint(GlassTint::Dark);
    }
}

QString ThemeStore::glassStyleName(GlassStyle style) {
    return kGlassStyles.of(style);
}

QString ThemeStore::glassTintName(GlassTint tint) {
    return kGlassTints.of(tint);
}

ThemeStore::GlassTint ThemeStore::glassTintFromName(const QString& name) {
    return kGlassTints.parse(name).value_or(defaultGlassTint);
}

QString ThemeStore::glassTintTitle(GlassTint tint) {
    switch (tint) {
    case GlassTint::Auto:
        return L("appearance.tint.auto", QStringLiteral("Automatic"));
    case GlassTint::Light:
        return L("appearance.tint.light", QStringLiteral("Light"));
    case GlassTint::Dark:
        break;
    }
    return L("appearance.tint.dark", QStringLiteral("Dark"));
}

QString ThemeStore::glassTintSubtitle(GlassTint tint) {
    switch (tint) {
    case GlassTint::Auto:
        return L("appearance.tint.auto.sub", QStringLiteral("Follows your desktop's appearance"));
    case GlassTint::Light:
        return L("appearance.tint.light.sub", QStringLiteral("Bright, milky glass"));
    case GlassTint::Dark:
        break;
    }
    return L("appearance.tint.dark.sub", QStringLiteral("Smoked, dark glass"));
}

bool ThemeStore::prefersLightGlass(GlassTint tint, SystemAppearance system) {
    switch (tint) {
    case GlassTint::Light:
        return true;
    case GlassTint::Dark:
        return false;
    case GlassTint::Auto:
        break;
    }
    return system == SystemAppearance::Dark;
}

} // namespace tw
