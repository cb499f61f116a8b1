// The small drawings of the guide's steps, in the window's colours: a piece of desktop with glass
// tiles, a tile being moved and a stack, and where the status item stands.
#pragma once

#include "config/OnboardingView.h"

#include <QSizeF>

class QPainter;
class QPalette;
class QRectF;

namespace tw::OnboardingPicture {

// The size every step is drawn at; the view scales it to the space it has.
inline constexpr QSizeF size{400, 180};

void paint(QPainter& painter, const QRectF& rect, int step, OnboardingView::StatusPlace place,
           const QPalette& colours);
// One dot a step, the current one in the accent.
void paintDots(QPainter& painter, const QRectF& rect, int step, const QPalette& colours);

} // namespace tw::OnboardingPicture
