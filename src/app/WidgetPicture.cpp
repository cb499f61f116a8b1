#include "app/WidgetPicture.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tw {

QImage pictureOf(QWidget& widget, double pixelsPerPoint, const QColor& fill) {
    const double drawn = std::max(pixelsPerPoint, 1.0);
    QImage picture((QSizeF(widget.size()) * drawn).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(drawn);
    picture.fill(fill);
    widget.render(&picture);
    if (pixelsPerPoint >= 1.0) {
        return picture;
    }
    QImage smaller = picture.scaled((QSizeF(widget.size()) * pixelsPerPoint).toSize(),
                                    Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    smaller.setDevicePixelRatio(pixelsPerPoint);
    return smaller;
}

} // namespace tw
