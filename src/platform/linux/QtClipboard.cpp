#include "platform/linux/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tw {

QtClipboard::QtClipboard(QObject* parent)
    : Clipboard(parent) {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            [this] { Q_EMIT changed(); });
}

const QMimeData* QtClipboard::contents() const {
    return QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
}

void QtClipboard::setContents(QMimeData* data) {
    QGuiApplication::clipboard()->setMimeData(data, QClipboard::Clipboard);
}

} // namespace tw
