// A theme as a person chooses it: a small tile in the theme's colours with a time and its name,
// ringed in the accent when chosen.
#pragma once

#include "look/Theme.h"

#include <QAbstractButton>

namespace tw {

class ThemeSwatch final : public QAbstractButton {
    Q_OBJECT
public:
    explicit ThemeSwatch(const Theme& theme, QWidget* parent = nullptr);

    const Theme& theme() const { return m_theme; }
    void setTheme(const Theme& theme);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme m_theme;
};

} // namespace tw
