#include "workspace/Clipping.h"

#include <QCryptographicHash>

namespace tw {

Clipping Clipping::ofText(const QString& text, const QDateTime& at) {
    return {Kind::text,
            text,
            {},
            at,
            QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1)};
}

Clipping Clipping::ofImage(const QImage& image, const QDateTime& at) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(
        QByteArrayView(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    const QByteArray size =
        QByteArray::number(image.width()) + 'x' + QByteArray::number(image.height());
    hash.addData(size);
    return {Kind::image, {}, image, at, hash.result()};
}

} // namespace tw
