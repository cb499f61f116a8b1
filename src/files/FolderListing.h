// The items of one folder as a tile lists them: folders first, then sorted as the person chose.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace tw {

struct FolderItem {
    QString name;
    QString path;
    bool isFolder = false;
    // The icon theme's names for its type, specific first ("application-pdf", then
    // "x-office-document").
    QString iconName;
    QString genericIconName;
    qint64 size = 0;
    QDateTime modified;

    bool operator==(const FolderItem&) const = default;
};

struct FolderListing {
    enum class Sort { name, modified, kind, size };
    enum class Hidden { left, shown };

    bool exists = false;
    bool readable = false;
    // The first `limit` items in order.
    QList<FolderItem> items;
    // Every item there, shown or not.
    int total = 0;

    bool operator==(const FolderListing&) const = default;

    static FolderListing read(const QString& folder, Sort sort, Hidden hidden, int limit);
    // "name" (the default), "modified", "kind" or "size".
    static Sort sortNamed(const QString& name);
};

} // namespace tw
