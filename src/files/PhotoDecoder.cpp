#include "files/PhotoDecoder.h"

#include <QImageReader>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace tw {

PhotoDecoder::Result PhotoDecoder::decode(const QString& path, QSize size) {
    if (size.isEmpty()) {
        return {.image = {}, .error = QStringLiteral("no size to decode to")};
    }
    QImageReader reader(path);
    reader.setAutoTransform(true);
    QSize original = reader.size();
    if (!original.isValid()) {
        return {.image = {}, .error = reader.errorString()};
    }
    if (static_cast<qint64>(original.width()) * original.height() > maximumPixels) {
        return {
            .image = {},
            .error =
                QStringLiteral("too large: %1×%2").arg(original.width()).arg(original.height())};
    }
    // Scaling and clipping happen before the orientation tag turns the picture.
    QSize wanted = size;
    if (reader.transformation().testFlag(QImageIOHandler::TransformationRotate90)) {
        wanted.transpose();
    }
    const double scale = std::max(static_cast<double>(wanted.width()) / original.width(),
                                  static_cast<double>(wanted.height()) / original.height());
    QImage image;
    if (scale < 1.0) {
        const QSize scaled(
            std::max(wanted.width(), static_cast<int>(std::ceil(original.width() * scale))),
            std::max(wanted.height(), static_cast<int>(std::ceil(original.height() * scale))));
        reader.setScaledSize(scaled);
        reader.setScaledClipRect(QRect(
            QPoint((scaled.width() - wanted.width()) / 2, (scaled.height() - wanted.height()) / 2),
            wanted));
        image = reader.read();
    } else {
        image = reader.read();
        if (!image.isNull()) {
            const QImage filled =
                image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
            image = filled.copy(QRect(
                QPoint((filled.width() - size.width()) / 2, (filled.height() - size.height()) / 2),
                size));
        }
    }
    if (image.isNull()) {
        return {.image = {}, .error = reader.errorString()};
    }
    if (image.size() != size) {
        image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                            : QImage::Format_RGB32);
    return {.image = image, .error = {}};
}

QStringList PhotoDecoder::suffixes() {
    QStringList suffixes;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    static const QSet<QByteArray> notPhotos = {"ico", "cur", "icns", "pbm", "pgm", "ppm", "xbm",
                                               "xpm", "svg", "svgz", "pdf", "ora", "kra"};
    for (const QByteArray& format : formats) {
        if (!notPhotos.contains(format.toLower())) {
            suffixes.append(QString::fromLatin1(format.toLower()));
        }
    }
    return suffixes;
}

} // namespace tw
