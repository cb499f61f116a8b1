#include "files/FolderListing.h"

#include "files/NaturalOrder.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>

namespace tw {

FolderListing FolderListing::read(const QString& folder, Sort sort, Hidden hidden, int limit) {
    FolderListing listing;
    const QFileInfo info(folder);
    listing.exists = !folder.isEmpty() && info.isDir();
    listing.readable = listing.exists && info.isReadable() && info.isExecutable();
    if (!listing.readable) {
        return listing;
    }
    QDir::Filters filters = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System;
    if (hidden == Hidden::shown) {
        filters |= QDir::Hidden;
    }
    const QFileInfoList entries = QDir(folder).entryInfoList(filters, QDir::NoSort);
    const QMimeDatabase mimes;
    QList<FolderItem> items;
    items.reserve(entries.size());
    for (const QFileInfo& entry : entries) {
        FolderItem item{.name = entry.fileName(),
                        .path = entry.absoluteFilePath(),
                        .isFolder = entry.isDir(),
                        .iconName = {},
                        .genericIconName = {},
                        .size = entry.isDir() ? 0 : entry.size(),
                        .modified = entry.lastModified()};
        // By name alone: reading every file's first bytes would cost a disk's worth of seeks.
        const QMimeType mime = mimes.mimeTypeForFile(entry, QMimeDatabase::MatchExtension);
        item.iconName = entry.isDir() ? QStringLiteral("folder") : mime.iconName();
        item.genericIconName = entry.isDir() ? QStringLiteral("folder") : mime.genericIconName();
        items.append(item);
    }
    const auto byName = [](const FolderItem& a, const FolderItem& b) {
        return NaturalOrder::less(a.name, b.name);
    };
    std::sort(items.begin(), items.end(), [&](const FolderItem& a, const FolderItem& b) {
        if (a.isFolder != b.isFolder) {
            return a.isFolder;
        }
        switch (sort) {
        case Sort::modified:
            if (a.modified != b.modified) {
                return a.modified > b.modified;
            }
            break;
        case Sort::size:
            if (a.size != b.size) {
                return a.size > b.size;
            }
            break;
        case Sort::kind:
            if (a.iconName != b.iconName) {
                return a.iconName < b.iconName;
            }
            break;
        case Sort::name:
            break;
        }
        return byName(a, b);
    });
    listing.total = static_cast<int>(items.size());
    listing.items = items.mid(0, std::max(0, limit));
    return listing;
}

FolderListing::Sort FolderListing::sortNamed(const QString& name) {
    if (name == QLatin1String("modified")) {
        return Sort::modified;
    }
    if (name == QLatin1String("kind")) {
        return Sort::kind;
    }
    if (name == QLatin1String("size")) {
        return Sort::size;
    }
    return Sort::name;
}

} // namespace tw
