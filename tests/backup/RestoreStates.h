// Two whole setups a restore moves between, and what a data directory holds of them, for the
// restore's crash test and its loop.
#pragma once

#include "backup/LayoutBackup.h"
#include "backup/PropertyList.h"
#include "platform/Defaults.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace tw::test {

// "A" carries every data file; "B" only three, so that a mix shows as a file of one beside the
// lack of the other.
inline LayoutBackup::Snapshot restoreState(char which) {
    LayoutBackup::Snapshot snapshot;
    const QByteArray tag(1, which);
    const QStringList names = LayoutBackup::dataFileNames();
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (which == 'A' || i % 2 == 0) {
            snapshot.files.insert(names.at(i), tag + '-' + names.at(i).toUtf8() +
                                                   QByteArray(4096 * (i + 1), which));
        }
    }
    snapshot.wallpapers.insert(QStringLiteral("picture.png"), tag + QByteArray(65536, which));
    snapshot.defaults =
        PropertyList::encode({{QStringLiteral("tarnwick.mark"), QString::fromLatin1(tag)},
                              {QStringLiteral("tarnwick.only") + QString::fromLatin1(tag), true}});
    return snapshot;
}

// What the directory and the preferences hold, as the states above would read.
inline QStringList restoreFingerprint(const QString& directory, const Defaults& defaults) {
    QStringList lines;
    const QDir dir(directory);
    for (const QString& name : LayoutBackup::dataFileNames()) {
        QFile file(dir.filePath(name));
        lines.append(name + QLatin1Char('=') +
                     (file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().left(40))
                                                     : QStringLiteral("absent")));
    }
    QFile picture(dir.filePath(QStringLiteral("Wallpapers/picture.png")));
    lines.append(QStringLiteral("picture=") +
                 (picture.open(QIODevice::ReadOnly)
                      ? QString::number(picture.size()) + QString::fromLatin1(picture.read(1))
                      : QStringLiteral("absent")));
    for (const char* key : {"tarnwick.mark", "tarnwick.onlyA", "tarnwick.onlyB"}) {
        lines.append(QLatin1String(key) + QLatin1Char('=') +
                     defaults.value(QLatin1String(key), QStringLiteral("absent")).toString());
    }
    return lines;
}

} // namespace tw::test
