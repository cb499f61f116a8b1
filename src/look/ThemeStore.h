// The look every tile reads: the current theme, the glass settings, an accent override and the
// per-display themes, saved as they change.
#pragma once

#include "look/Theme.h"
#include "look/ThemeColor.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tw {

class Clock;

class Defaults;

class ThemeStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(tw::Theme current READ current NOTIFY currentChanged)
    Q_PROPERTY(
        double glassStrength READ glassStrength WRITE setGlassStrength NOTIFY glassStrengthChanged)
    Q_PROPERTY(bool glassClear READ glassClear WRITE setGlassClear NOTIFY glassClearChanged)
    Q_PROPERTY(bool glassLiquid READ glassLiquid WRITE setGlassLiquid NOTIFY glassLiquidChanged)
    Q_PROPERTY(GlassStyle glassStyle READ glassStyle WRITE setGlassStyle NOTIFY glassStyleChanged)
    Q_PROPERTY(GlassTint glassTint READ glassTint WRITE setGlassTint NOTIFY glassTintChanged)
    Q_PROPERTY(
        bool uniformColors READ uniformColors WRITE setUniformColors NOTIFY uniformColorsChanged)
public:
    // Stored as "frosted", "clear", "liquid".
    enum class GlassStyle { Frosted, Clear, Liquid };
    Q_ENUM(GlassStyle)
    // Stored as "auto", "light", "dark".
    enum class GlassTint { Auto, Light, Dark };
    Q_ENUM(GlassTint)
    enum class SystemAppearance { Light, Dark };

    static constexpr GlassTint defaultGlassTint = GlassTint::Dark;

    // Preference keys.
    static inline const QString glassStrengthKey = QStringLiteral("tarnwick.glassStrength");
    static inline const QString glassClearKey = QStringLiteral("tarnwick.glassClear");
    static inline const QString glassLiquidKey = QStringLiteral("tarnwick.glassLiquid");
    static inline const QString glassTintKey = QStringLiteral("tarnwick.glassTint");
    static inline const QString uniformColorsKey = QStringLiteral("tarnwick.uniformColors");
    static inline const QString perDisplayKey = QStringLiteral("tarnwick.perDisplayThemes");
    static inline const QString glassResetKeyPrefix = QStringLiteral("tarnwick.glassReset.");

    // "theme.json" in the application-support directory.
    static QString defaultFilePath();

    // Reads the preferences and the theme file; a stored built-in theme is taken from the
    // built-in table, so a file cannot freeze old colours of it. `defaults` must outlive this.
    // `clock` names a file set aside as unreadable.
    ThemeStore(Defaults& defaults, const Clock& clock, const QString& filePath = defaultFilePath(),
               QObject* parent = nullptr);

    const Theme& current() const { return m_current; }
    // `current` with the accent override applied.
    Theme themed() const { return themed(m_current); }
    Theme themed(Theme theme) const;
    const Theme& chrome() const { return Theme::appChrome(); }
    const QList<Theme>& builtIns() const { return Theme::builtIns(); }
    const QString& filePath() const { return m_filePath; }

    void select(const Theme& theme);
    // An id that is not a built-in changes nothing.
    void selectPalette(const QString& id);
    void update(const std::function<void(Theme&)>& change);
    // The default theme, no accent override.
    void resetToDefault();

    double glassStrength() const { return m_glassStrength; }
    void setGlassStrength(double strength);
    bool glassClear() const { return m_glassClear; }
    void setGlassClear(bool clear);
    bool glassLiquid() const { return m_glassLiquid; }
    void setGlassLiquid(bool liquid);
    // Liquid wins over clear; neither is frosted. Setting it writes both flags.
    GlassStyle glassStyle() const;
    void setGlassStyle(GlassStyle style);
    GlassTint glassTint() const { return m_glassTint; }
    void setGlassTint(GlassTint tint);
    bool uniformColors() const { return m_uniformColors; }
    void setUniformColors(bool uniform);

    // Set from the wallpaper; never saved.
    const std::optional<ThemeColor>& accentOverride() const { return m_accentOverride; }
    void setAccentOverride(const std::optional<ThemeColor>& accent);

    // Display id to theme id, as stored.
    const QHash<QString, QString>& perDisplay() const { return m_perDisplay; }
    // No id, or one that is not a built-in, removes the display's entry.
    void setTheme(const std::optional<QString>& id, const QString& display);
    // The display's built-in theme through themed(), or nullopt (no display, no entry, or an
    // entry naming a theme that no longer exists) so that the display falls back to `current`.
    std::optional<Theme> themeForDisplay(const std::optional<QString>& display) const;
    void clearPerDisplayThemes();

    // With uniform colours on, every tile colour becomes a shade of the themed accent: 0 is the
    // accent, odd shades lighter, even shades fainter. Off, `color` comes back unchanged.
    ThemeColor tint(const ThemeColor& color, int shade) const;

    // Once per release string: back to frosted, dark glass. Does nothing without persistence.
    void applyDarkFrostedOnce(const QString& release);

    // For pictures rendered off-screen: from now on nothing is written, so a render leaves no
    // trace. There is no way back.
    void suppressPersistence() { m_persistsPreferences = false; }
    bool persistsPreferences() const { return m_persistsPreferences; }

    static QString glassStyleName(GlassStyle style);
    static QString glassTintName(GlassTint tint);
    // An unknown word reads as the default tint.
    static GlassTint glassTintFromName(const QString& name);
    static QString glassTintTitle(GlassTint tint);
    static QString glassTintSubtitle(GlassTint tint);
    // `Auto` follows the system as it stands: a dark system asks for light glass.
    static bool prefersLightGlass(GlassTint tint, SystemAppearance system);

Q_SIGNALS:
    void currentChanged(const tw::Theme& current);
    void glassStrengthChanged(double strength);
    void glassClearChanged(bool clear);
    void glassLiquidChanged(bool liquid);
    void glassStyleChanged(tw::ThemeStore::GlassStyle style);
    void glassTintChanged(tw::ThemeStore::GlassTint tint);
    void uniformColorsChanged(bool uniform);
    void accentOverrideChanged();
    void perDisplayChanged();
    // After any change of `themed()` (current theme or accent override).
    void themedChanged();

private:
    void load();
    void setCurrent(const Theme& theme);
    void save();
    void savePerDisplay();
    void store(const QString& key, const QVariant& value);
    // Writes the flags that are given and reports the derived style once, if it moved.
    void setGlassFlags(std::optional<bool> clear, std::optional<bool> liquid);

    Defaults& m_defaults;
    const Clock& m_clock;
    QString m_filePath;
    Theme m_current = Theme::defaultTheme();
    bool m_persistsPreferences = true;
    // Something other than a data file sits at m_filePath; it is never written over.
    bool m_fileLeftAlone = false;
    double m_glassStrength = 0;
    bool m_glassClear = false;
    bool m_glassLiquid = false;
    GlassTint m_glassTint = defaultGlassTint;
    std::optional<ThemeColor> m_accentOverride;
    bool m_uniformColors = false;
    QHash<QString, QString> m_perDisplay;
};

} // namespace tw
