#include "platform/linux/QtPointerPosition.h"

#include "platform/linux/QtDisplays.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace tw {

std::optional<QPointF> QtPointerPosition::position() const {
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (primary == nullptr) {
        return std::nullopt;
    }
    const QRectF at(QCursor::pos(), QSizeF(0, 0));
    return QtDisplays::toInternal(at, QRectF(primary->geometry())).topLeft();
}

} // namespace tw
