// A view tree drawn to a picture at a number of pixels per point, for the picture modes.
#pragma once

#include <QColor>
#include <QImage>

class QWidget;

namespace tw {

// `widget` laid out at its size, on `fill`. Below one pixel a point it is drawn at one and then
// made smaller, so that the whole view fits the picture instead of being cut.
QImage pictureOf(QWidget& widget, double pixelsPerPoint, const QColor& fill);

} // namespace tw
