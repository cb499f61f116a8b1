// What the timer faces share: their controls (drawn, and found again under a press), the time as
// digits, and whether a tile rings now.
#pragma once

#include "desk/DeskAction.h"
#include "faces/WidgetFace.h"

#include <QColor>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <optional>

class QPainter;

namespace tw {

struct FaceContext;

namespace TimerKit {

enum class Glyph { none, play, pause, reset, skip, lap };

struct Control {
    DeskAction action;
    QRectF rect;
    Glyph glyph = Glyph::none;
    // A text in place of a glyph (a preset's minutes).
    QString text;
    // The filled button of the main action; the others are quieter.
    bool primary = false;
    // A chosen preset.
    bool selected = false;

    // A round button with a glyph.
    static Control button(DeskAction action, const QRectF& rect, Glyph glyph);
    // The filled button of the main action.
    static Control primaryButton(DeskAction action, const QRectF& rect, Glyph glyph);
    // A preset's button with its text.
    static Control chip(DeskAction action, const QRectF& rect, const QString& text, bool selected);
    // A place to press that draws nothing.
    static Control area(DeskAction action, const QRectF& rect);
};

// The control under `point`, the first listed winning, with a word on what a button does; nothing
// outside them all.
WidgetFace::Spot spotAt(const QList<Control>& controls, QPointF point);
// Draws every control that has a glyph or a text; an area with neither is only a place to press.
void draw(QPainter& painter, const FaceContext& context, const QList<Control>& controls,
          const QColor& tint);

// "4:05", "1:02:03"; a countdown rounds up so that it reads 0:00 only at its end.
enum class Rounding { up, down };
QString clockText(double seconds, Rounding rounding);
// "4:05.27", the hundredths of a stopped stopwatch.
QString hundredthsText(double seconds);

// Whether the host says this tile rings now.
bool isRinging(const FaceContext& context);
// A square of `side` in the middle of `within`.
QRectF centred(const QRectF& within, qreal side);

} // namespace TimerKit

} // namespace tw
