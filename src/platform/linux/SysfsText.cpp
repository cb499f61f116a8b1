#include "platform/linux/SysfsText.h"

#include <QFile>

namespace tw::sysfs {

namespace {

// Attributes hold one value; anything longer is not what it claims to be.
constexpr qint64 maxBytes = 4096;

} // namespace

std::optional<QByteArray> read(const QString& path) {
    QFile file(path);
    // sysfs reports every attribute with a size of 4096, so the size says nothing; a
    // directory opens but reads nothing, and a failing sensor fails the read itself.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::nullopt;
    }
    QByteArray bytes(maxBytes, Qt::Uninitialized);
    const qint64 length = file.read(bytes.data(), maxBytes);
    if (length < 0 || (length == 0 && file.error() != QFileDevice::NoError)) {
        return std::nullopt;
    }
    bytes.truncate(length);
    return bytes;
}

std::optional<qint64> integer(const QByteArray& bytes) {
    const QByteArray text = bytes.trimmed();
    if (text.isEmpty()) {
        return std::nullopt;
    }
    bool ok = false;
    const qint64 value = text.toLongLong(&ok, 10);
    if (!ok) {
        return std::nullopt;
    }
    return value;
}

QString word(const QByteArray& bytes) {
    return QString::fromLatin1(bytes.trimmed());
}

} // namespace tw::sysfs
