// The sticky note: its text on a sheet of coloured paper filling the tile, lists with bullets,
// tasks with boxes a click ticks, bold runs; while typed into, the caret (its line shown as
// typed, marks and all) kept in view.
#pragma once

#include "faces/WidgetFace.h"
#include "workspace/NoteView.h"

#include <QColor>

namespace tw {

class StickyNoteFace final : public WidgetFace {
public:
    struct Paper {
        QColor sheet;
        QColor ink;
    };

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The colours of the "paper" setting on this glass: a pale sheet on light glass, a deep one
    // on dark.
    static Paper paper(const FaceContext& context);
    // What the tile shows: the note's behaviour's view, else the "text" setting, else a sample
    // (pictures and the gallery).
    static NoteView view(const FaceContext& context);
    // What a press at `point` does: "task:<line>" over a task's box, else "caret:<offset>".
    static QString commandAt(const QRectF& rect, QPointF point, const FaceContext& context);
};

} // namespace tw
