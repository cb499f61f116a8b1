// The colours of the program's own panes and cards, light or dark: a quiet background, raised
// cards, and two strengths of text.
#pragma once

#include "faces/GlassLook.h"

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QString>

class QPainter;

namespace tw {

struct PaneInk {
    QColor background;
    QColor card;
    QColor primary;
    QColor secondary;

    static PaneInk of(GlassLook::Shade shade);
    // `text` wrapped in `width` from `at` down; the height it took.
    static double paragraph(QPainter& painter, const QPointF& at, double width, const QString& text,
                            const QFont& font, const QColor& color);
};

} // namespace tw
