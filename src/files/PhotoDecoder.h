// Reads a picture file straight to the size a tile shows it at, filled and centred: a 24 MP
// photo is never decoded whole where the format can scale while decoding (JPEG). Any thread.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace tw {

class PhotoDecoder {
public:
    PhotoDecoder() = delete;

    struct Result {
        // Exactly `size` pixels, turned as the camera's orientation tag says; null on failure.
        QImage image;
        // Why the file could not be read, for the log; empty on success.
        QString error;
    };

    // Pictures larger than this many pixels are refused rather than risking memory.
    static constexpr qint64 maximumPixels = 400'000'000;

    static Result decode(const QString& path, QSize size);
    // The file names the slideshow can read ("jpg", "png", …), lower case.
    static QStringList suffixes();
};

} // namespace tw
