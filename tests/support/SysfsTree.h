// A stand-in for a part of /sys in a temporary directory: attribute files from "path=value"
// lines. The value "<unreadable>" puts a directory in place of the file, which fails to read
// as a sensor answering EIO does.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace tw::test {

inline bool writeSysfsTree(const QString& root, const QStringList& entries) {
    for (const QString& entry : entries) {
        const qsizetype equals = entry.indexOf(QLatin1Char('='));
        if (equals < 0) {
            return false;
        }
        const QString path = root + QLatin1Char('/') + entry.left(equals);
        const QString value = entry.mid(equals + 1);
        QFile::remove(path);
        if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
            return false;
        }
        if (value == QLatin1String("<unreadable>")) {
            if (!QDir().mkpath(path)) {
                return false;
            }
            continue;
        }
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(value.toUtf8() + '\n') < 0) {
            return false;
        }
    }
    return true;
}

} // namespace tw::test
