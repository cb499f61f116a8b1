// What the folder tile shows: the folder's name and its first items.
#pragma once

#include "files/FolderListing.h"

namespace tw {

struct FolderView {
    QString path;
    FolderListing listing;

    bool operator==(const FolderView&) const = default;
};

} // namespace tw
