// The freedesktop trash in one folder (the home trash, "$XDG_DATA_HOME/Trash"): "files" holds
// the items, "info" a ".trashinfo" for each, "directorysizes" caches the sizes of folders.
#pragma once

#include "platform/Trash.h"

namespace tw {

class Clock;

class XdgTrash final : public Trash {
public:
    // `root` is the trash folder; `clock` dates what is trashed and must outlive this.
    XdgTrash(QString root, const Clock& clock);

    bool isAvailable() const override { return true; }
    QStringList watchedFolders() const override;
    Contents contents() const override;
    Result moveToTrash(const QStringList& paths) override;
    Result empty() override;
    QUrl location() const override;

private:
    QString trashOne(const QString& path);

    QString m_root;
    const Clock& m_clock;
};

} // namespace tw
