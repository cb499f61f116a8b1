// The terminal tile: the command as a prompt over the last lines of its output on a dark screen,
// in a monospaced face with the program's colours mapped to ones that read there, and how the
// last run ended (its time, an exit code, a time-out, output cut at the cap, a missing program).
#pragma once

#include "faces/WidgetFace.h"
#include "launch/TerminalText.h"

#include <QColor>

namespace tw {

class TerminalFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The colour of a program's palette entry or colour of its own on the dark screen; the
    // screen's text colour for plain text.
    static QColor colorOf(const TerminalColor& color);
};

} // namespace tw
