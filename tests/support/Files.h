// Reading and writing whole files in a test's temporary directory.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tw::test {

// The file's bytes; empty when it cannot be read.
inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Replaces the file with `bytes`, making its directory first; true when all were written.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) &&
           file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

} // namespace tw::test
