// One ".trashinfo" file of the freedesktop trash: where a trashed item came from and when it went.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace tw {

struct TrashInfo {
    // Absolute, or relative to the top of the disk whose trash holds it.
    QString path;
    // Local time without a zone, as the format has it; invalid when the file had none.
    QDateTime deletionDate;

    bool operator==(const TrashInfo&) const = default;

    // Lenient: the "[Trash Info]" group's Path (percent-encoded) and DeletionDate, other groups,
    // keys and broken lines ignored; nullopt without a Path.
    static std::optional<TrashInfo> fromBytes(const QByteArray& bytes);
    QByteArray toBytes() const;
};

} // namespace tw
