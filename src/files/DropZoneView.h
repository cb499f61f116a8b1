// What the drop zone tile shows: where drops go and the last items that went there.
#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QList>
#include <QString>

namespace tw {

struct DroppedItem {
    QString name;
    // Where it went, to open it from the tile.
    QString path;
    QDateTime at;
    bool isFolder = false;

    bool operator==(const DroppedItem&) const = default;

    // The "items" setting: a JSON array of {"name", "path", "at", "folder"}, newest first.
    static QList<DroppedItem> listFromJson(const QString& text);
    static QString listToJson(const QList<DroppedItem>& items);
};

struct DropZoneView {
    QString folder;
    bool folderMissing = false;
    bool copies = false;
    QList<DroppedItem> items;
    // What the last drop could not do, in the warning hue for a while.
    QString problem;

    bool operator==(const DropZoneView&) const = default;
};

} // namespace tw
