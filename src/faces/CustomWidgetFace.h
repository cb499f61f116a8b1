// The face of every custom kind: the definition's rows of elements from the board's values, or
// the state that stands in for them (nothing to show, a failed source, loading).
#pragma once

#include "custom/CustomValueBag.h"
#include "custom/CustomWidgetDefinition.h"
#include "faces/WidgetFace.h"

#include <QList>
#include <QRectF>

namespace tw {

class CustomWidgetFace final : public WidgetFace {
public:
    // What the tile shows in place of its rows, or `rows`.
    enum class State { empty, failed, loading, rows };

    // One element where it is drawn: its row and place in the row, counted from 0.
    struct Placed {
        int row = 0;
        int element = 0;
        QRectF rect;
        // The type scale the element is drawn at.
        qreal scale = 1;
    };

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    // The definition's link anywhere on the tile; the stale marker tells why it is there.
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The state a definition shows from the board in `context`; a sample drawing knows only the
    // empty one. `stale` says whether the rows should carry the marker of a failed source.
    static State state(const CustomWidgetDefinition& definition, const FaceContext& context,
                       bool* stale = nullptr);
    // The values the rows read: the sample values for a sample drawing, else the board's.
    static CustomValueBag values(const CustomWidgetDefinition& definition,
                                 const FaceContext& context);
    // Where the marker of a stale source stands in `rect`.
    static QRectF markerRect(const QRectF& rect);
    // Where each element goes inside `rect`; rows that find no room even at the smallest type
    // are left out, from the bottom.
    static QList<Placed> layout(const CustomWidgetDefinition& definition, const QRectF& rect,
                                const CustomValueBag& values, const FaceContext& context);
};

} // namespace tw
