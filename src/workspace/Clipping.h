// One entry of the clipboard's history: a text or a picture, and when it was copied.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QImage>
#include <QString>

namespace tw {

struct Clipping {
    enum class Kind { text, image };

    Kind kind = Kind::text;
    QString text;
    QImage image;
    QDateTime copiedAt;
    // A digest of the content, which tells two copies of the same thing apart from others.
    QByteArray digest;

    bool operator==(const Clipping&) const = default;

    static Clipping ofText(const QString& text, const QDateTime& at);
    static Clipping ofImage(const QImage& image, const QDateTime& at);

    qsizetype imageBytes() const { return kind == Kind::image ? image.sizeInBytes() : 0; }
};

} // namespace tw
