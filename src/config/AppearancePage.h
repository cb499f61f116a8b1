// The "appearance" section: the tile themes with their previews and "Match my wallpaper", the
// three glass looks with strength and tint, a theme per display, and the lock screen.
#pragma once

#include "config/SettingsPage.h"

#include <QList>

class QAbstractButton;
class QButtonGroup;

namespace tw {

struct ConfigContext;
class ThemeSwatch;

class AppearancePage final : public SettingsPage {
    Q_OBJECT
public:
    explicit AppearancePage(ConfigContext& context, QWidget* parent = nullptr);

    // Chooses the theme as a click on its swatch does; for the keyboard and for tests.
    bool chooseTheme(const QString& id);

private:
    void addThemes();
    void addGlass();
    void addDisplays();
    void addLockScreen();
    void showCurrentTheme();
    // False, with the page saying so, when the preferences cannot be written.
    bool admit(const QString& what);

    ConfigContext& m_context;
    QList<ThemeSwatch*> m_swatches;
    ThemeSwatch* m_wallpaperSwatch = nullptr;
};

} // namespace tw
