// The freedesktop trash: the home trash ("$XDG_DATA_HOME/Trash") and this user's trash at the
// top of every other mounted disk (".Trash/$uid" under a shared, sticky ".Trash", else
// ".Trash-$uid"), each a folder where "files" holds the items, "info" a ".trashinfo" for each and
// "directorysizes" caches the sizes of folders. What lies on another disk goes to that disk's
// trash, so it is moved, never copied.
#pragma once

#include "platform/Trash.h"

#include <functional>

namespace tw {

class Clock;

class XdgTrash final : public Trash {
public:
    // Where the mounted disks begin.
    using MountPoints = std::function<QStringList()>;

    // `root` is the home trash; `clock` dates what is trashed and must outlive this; `mounts`
    // names the disks (none: the home trash alone).
    XdgTrash(QString root, const Clock& clock, MountPoints mounts = {});

    // The mount points of this machine's disks.
    static QStringList mountedDisks();

    bool isAvailable() const override { return true; }
    QStringList watchedFolders() const override;
    Contents contents() const override;
    Result moveToTrash(const QStringList& paths) override;
    Result empty() override;
    QUrl location() const override;

private:
    // The home trash and every disk's trash of this user that exists.
    QStringList trashes() const;
    QString trashOne(const QString& path);
    // Moves `path` into the trash folder `trash`, its info giving `recorded` as where it was;
    // across disks only with `copy`.
    QString trashInto(const QString& trash, const QString& path, const QString& recorded,
                      bool copy);

    QString m_root;
    const Clock& m_clock;
    MountPoints m_mounts;
};

} // namespace tw
