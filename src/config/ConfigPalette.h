// The configuration window's own colours in light and dark, and the style sheet built from them,
// so that every page draws in the house style instead of the toolkit's default grey.
#pragma once

#include "platform/ColorSchemeWatcher.h"

#include <QColor>
#include <QPalette>
#include <QString>

namespace tw {

struct ConfigPalette {
    ColorScheme scheme = ColorScheme::Light;
    QColor window;          // behind the pages
    QColor sidebar;         // the section list
    QColor sidebarSelected; // the chosen section's row
    QColor card;            // grouped settings and gallery cards
    QColor cardBorder;
    QColor text;
    QColor secondaryText;
    QColor accent;
    QColor accentText; // text on the accent
    QColor field;      // inputs
    QColor fieldBorder;
    QColor separator;
    QColor danger;

    static ConfigPalette of(ColorScheme scheme);

    bool isDark() const { return scheme == ColorScheme::Dark; }
    QPalette palette() const;
    // The rules for the widgets the pages use: buttons, fields, switches, sliders, lists, menus,
    // scroll bars. Object names pick the variants: "primary" buttons, "card" frames, "caption"
    // and "title" labels; the gallery's "chip" and "segment" buttons, "cardName" labels.
    QString styleSheet() const;
};

} // namespace tw
