#include "config/AppearancePage.h"

#include "config/ConfigContext.h"
#include "config/PanePicture.h"
#include "config/SettingsCard.h"
#include "config/SwitchButton.h"
#include "config/ThemeSwatch.h"
#include "look/ThemeStore.h"
#include "look/WallpaperPalette.h"
#include "settings/AppSettings.h"
#include "text/L.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

namespace tw {

namespace {

constexpr int swatchColumns = 6;

QString glassTitle(ThemeStore::GlassStyle style) {
    switch (style) {
    case ThemeStore::GlassStyle::Frosted:
        return L("appearance.frosted", QStringLiteral("Frosted"));
    case ThemeStore::GlassStyle::Clear:
        return L("appearance.clear", QStringLiteral("Clear"));
    case ThemeStore::GlassStyle::Liquid:
        return L("appearance.liquid", QStringLiteral("Liquid"));
    }
    return {};
}

QString glassNote(ThemeStore::GlassStyle style) {
    switch (style) {
    case ThemeStore::GlassStyle::Frosted:
        return L("appearance.frosted.sub",
                 QStringLiteral("Your wallpaper, softly blurred behind each tile."));
    case ThemeStore::GlassStyle::Clear:
        return L("appearance.clear.sub",
                 QStringLiteral("Barely blurred: the wallpaper stays sharp and present."));
    case ThemeStore::GlassStyle::Liquid:
        return L("appearance.liquid.sub",
                 QStringLiteral("A real lens: the wallpaper bends and catches light at the "
                                "edges."));
    }
    return {};
}

} // namespace

AppearancePage::AppearancePage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.appearance", QStringLiteral("Appearance")), parent)
    , m_context(context) {
    addThemes();
    addGlass();
    addDisplays();
    addLockScreen();
    connect(&m_context.theme, &ThemeStore::currentChanged, this, &AppearancePage::showCurrentTheme);
}

bool AppearancePage::admit(const QString& what) {
    if (!m_context.canSave()) {
        reportNotSaved(what);
        return false;
    }
    clearReport();
    return true;
}

void AppearancePage::addThemes() {
    SettingsCard* card =
        addGroup(QStringLiteral("theme"), L("appearance.theme", QStringLiteral("Theme")));
    auto* grid = new QWidget();
    auto* layout = new QGridLayout(grid);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(8);
    layout->setVerticalSpacing(10);
    QList<Theme> themes;
    const std::optional<Theme> fromWallpaper =
        m_context.wallpaperTheme ? m_context.wallpaperTheme() : std::nullopt;
    Theme wallpaper = fromWallpaper.value_or(Theme::defaultTheme());
    wallpaper.id = QString::fromLatin1(WallpaperPalette::themeID);
    wallpaper.name = L("theme.fromWallpaper", QStringLiteral("Match my wallpaper"));
    themes << wallpaper << Theme::builtIns();
    for (const Theme& theme : themes) {
        auto* swatch = new ThemeSwatch(theme, grid);
        const int index = static_cast<int>(m_swatches.size());
        layout->addWidget(swatch, index / swatchColumns, index % swatchColumns);
        m_swatches << swatch;
        connect(swatch, &ThemeSwatch::clicked, this, [this, swatch] {
            if (!chooseTheme(swatch->theme().id)) {
                showCurrentTheme();
            }
        });
    }
    m_wallpaperSwatch = m_swatches.first();
    if (!fromWallpaper) {
        m_wallpaperSwatch->setEnabled(false);
        m_wallpaperSwatch->setToolTip(
            L("theme.fromWallpaper.none", QStringLiteral("No desktop picture could be read.")));
    }
    card->addWide(grid);
    card->addWide(caption(L("appearance.theme.note",
                            QStringLiteral("“Match my wallpaper” takes its colours from your "
                                           "desktop picture."))));
    showCurrentTheme();
}

bool AppearancePage::chooseTheme(const QString& id) {
    if (!admit(L("appearance.theme", QStringLiteral("Theme")))) {
        return false;
    }
    ThemeStore& store = m_context.theme;
    if (id == QLatin1String(WallpaperPalette::themeID)) {
        const std::optional<Theme> theme =
            m_context.wallpaperTheme ? m_context.wallpaperTheme() : std::nullopt;
        if (!theme) {
            return false;
        }
        m_wallpaperSwatch->setTheme(*theme);
        store.select(*theme);
        return true;
    }
    if (!Theme::builtIn(id)) {
        return false;
    }
    store.selectPalette(id);
    return true;
}

void AppearancePage::showCurrentTheme() {
    const QString id = m_context.theme.current().id;
    for (ThemeSwatch* swatch : std::as_const(m_swatches)) {
        if (swatch->theme().id == id) {
            swatch->setChecked(true);
        }
    }
}

void AppearancePage::addGlass() {
    SettingsCard* card =
        addGroup(QStringLiteral("look"), L("widget.glass", QStringLiteral("Glass")));
    ThemeStore& store = m_context.theme;
    auto* looks = new QWidget();
    auto* row = new QHBoxLayout(looks);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto* styles = new QButtonGroup(this);
    auto* note = caption(glassNote(store.glassStyle()));
    for (const ThemeStore::GlassStyle style :
         {ThemeStore::GlassStyle::Frosted, ThemeStore::GlassStyle::Clear,
          ThemeStore::GlassStyle::Liquid}) {
        auto* button = new QPushButton(glassTitle(style), looks);
        button->setCheckable(true);
        button->setObjectName(QStringLiteral("segment"));
        button->setProperty("roomy", true);
        button->setProperty("edge",
                            QLatin1String(style == ThemeStore::GlassStyle::Frosted  ? "first"
                                          : style == ThemeStore::GlassStyle::Liquid ? "last"
                                                                                    : "middle"));
        button->setChecked(store.glassStyle() == style);
        styles->addButton(button, static_cast<int>(style));
        row->addWidget(button);
    }
    row->addStretch(1);
    connect(styles, &QButtonGroup::idClicked, this, [this, styles, note](int id) {
        ThemeStore& theme = m_context.theme;
        if (!admit(L("widget.glass", QStringLiteral("Glass")))) {
            styles->button(static_cast<int>(theme.glassStyle()))->setChecked(true);
            return;
        }
        theme.setGlassStyle(static_cast<ThemeStore::GlassStyle>(id));
        note->setText(glassNote(theme.glassStyle()));
    });
    card->addRow(L("appearance.glass.look", QStringLiteral("Look")), QString(), looks);
    card->addWide(note);

    auto* strength = new QSlider(Qt::Horizontal);
    strength->setRange(0, 100);
    strength->setMinimumWidth(220);
    strength->setValue(static_cast<int>(std::lround(store.glassStrength() * 100)));
    connect(strength, &QSlider::valueChanged, this, [this, strength](int value) {
        ThemeStore& theme = m_context.theme;
        if (!admit(L("appearance.strength", QStringLiteral("Strength")))) {
            const QSignalBlocker blocker(strength);
            strength->setValue(static_cast<int>(std::lround(theme.glassStrength() * 100)));
            return;
        }
        theme.setGlassStrength(value / 100.0);
    });
    card->addRow(L("appearance.strength", QStringLiteral("Strength")),
                 L("appearance.strength.sub",
                   QStringLiteral("How much the glass hides what lies behind it.")),
                 strength);

    auto* tint = new QComboBox();
    for (const ThemeStore::GlassTint value :
         {ThemeStore::GlassTint::Auto, ThemeStore::GlassTint::Light, ThemeStore::GlassTint::Dark}) {
        tint->addItem(ThemeStore::glassTintTitle(value), static_cast<int>(value));
        tint->setItemData(tint->count() - 1, ThemeStore::glassTintSubtitle(value), Qt::ToolTipRole);
    }
    tint->setCurrentIndex(tint->findData(static_cast<int>(store.glassTint())));
    auto* tintNote = caption(ThemeStore::glassTintSubtitle(store.glassTint()));
    connect(tint, &QComboBox::currentIndexChanged, this, [this, tint, tintNote] {
        ThemeStore& theme = m_context.theme;
        if (!admit(L("appearance.tint", QStringLiteral("Tint")))) {
            const QSignalBlocker blocker(tint);
            tint->setCurrentIndex(tint->findData(static_cast<int>(theme.glassTint())));
            return;
        }
        theme.setGlassTint(static_cast<ThemeStore::GlassTint>(tint->currentData().toInt()));
        tintNote->setText(ThemeStore::glassTintSubtitle(theme.glassTint()));
    });
    QWidget* tintRow = card->addRow(L("appearance.tint", QStringLiteral("Tint")), QString(), tint);
    tintRow->layout()->itemAt(0)->layout()->addWidget(tintNote);

    auto* uniform = new SwitchButton();
    uniform->setChecked(store.uniformColors());
    connect(uniform, &SwitchButton::toggled, this, [this, uniform](bool on) {
        if (!admit(L("appearance.uniform", QStringLiteral("One colour for every tile")))) {
            const QSignalBlocker blocker(uniform);
            uniform->setChecked(!on);
            return;
        }
        m_context.theme.setUniformColors(on);
    });
    card->addRow(L("appearance.uniform", QStringLiteral("One colour for every tile")),
                 L("appearance.uniform.sub",
                   QStringLiteral("Every tile's colours become shades of the theme's accent.")),
                 uniform);
}

void AppearancePage::addDisplays() {
    if (m_context.displays.size() < 2) {
        return;
    }
    SettingsCard* card = addGroup(QStringLiteral("displays"),
                                  L("appearance.displays", QStringLiteral("Each display")));
    for (const ConfigContext::Display& display : std::as_const(m_context.displays)) {
        auto* box = new QComboBox();
        box->addItem(L("appearance.displays.same", QStringLiteral("Same as the theme above")),
                     QString());
        for (const Theme& theme : Theme::builtIns()) {
            box->addItem(theme.name, theme.id);
        }
        box->setCurrentIndex(
            std::max(0, box->findData(m_context.theme.perDisplay().value(display.id))));
        const QString id = display.id;
        connect(box, &QComboBox::currentIndexChanged, this, [this, box, id] {
            if (!admit(L("appearance.displays", QStringLiteral("Each display")))) {
                const QSignalBlocker blocker(box);
                box->setCurrentIndex(
                    std::max(0, box->findData(m_context.theme.perDisplay().value(id))));
                return;
            }
            const QString chosen = box->currentData().toString();
            m_context.theme.setTheme(chosen.isEmpty() ? std::nullopt : std::optional(chosen), id);
        });
        card->addRow(display.name, QString(), box);
    }
}

void AppearancePage::addLockScreen() {
    SettingsCard* card =
        addGroup(QStringLiteral("lock"), L("lock.title", QStringLiteral("Lock Screen")));
    AppSettings& settings = m_context.settings;
    if (m_context.paintLockPane) {
        card->addWide(new PanePicture(m_context.paintLockPane, ConfigContext::lockPaneSize));
    }
    const bool available = m_context.lockScreenUnavailable.isEmpty();
    auto* enabled = new SwitchButton();
    enabled->setChecked(available && settings.lockScreenEnabled());
    enabled->setEnabled(available);
    connect(enabled, &SwitchButton::toggled, this, [this, enabled](bool on) {
        if (!admit(L("lock.enabled", QStringLiteral("Show widgets on the lock screen")))) {
            const QSignalBlocker blocker(enabled);
            enabled->setChecked(!on);
            return;
        }
        m_context.settings.setLockScreenEnabled(on);
    });
    card->addRow(L("lock.enabled", QStringLiteral("Show widgets on the lock screen")),
                 available ? L("lock.enabled.sub",
                               QStringLiteral("Your widgets stay visible above the lock screen, "
                                              "clear of the clock and the controls."))
                 : m_context.paintLockPane
                     ? L("lock.unavailable.short", QStringLiteral("Not available on this desktop."))
                     : m_context.lockScreenUnavailable,
                 enabled);
    auto* pace = new QComboBox();
    for (const double fps : AppSettings::lockScreenFPSChoices) {
        pace->addItem(fps == 0 ? L("lock.fps.still", QStringLiteral("Still"))
                               : L("lock.fps", QStringLiteral("%1 frames a second")).arg(fps),
                      fps);
    }
    pace->setCurrentIndex(std::max(0, pace->findData(settings.lockScreenFPS())));
    pace->setEnabled(available);
    connect(pace, &QComboBox::currentIndexChanged, this, [this, pace] {
        if (!admit(L("lock.pace", QStringLiteral("Animation")))) {
            const QSignalBlocker blocker(pace);
            pace->setCurrentIndex(std::max(0, pace->findData(m_context.settings.lockScreenFPS())));
            return;
        }
        m_context.settings.setLockScreenFPS(pace->currentData().toDouble());
    });
    card->addRow(L("lock.pace", QStringLiteral("Animation")), QString(), pace);
}

} // namespace tw
