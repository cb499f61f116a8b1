#include "platform/linux/VdirCalendarStore.h"

#include "platform/AtomicFile.h"
#include "platform/linux/ICalReader.h"

#include <QColor>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>

namespace tw {
namespace {

Q_LOGGING_CATEGORY(lcCalendar, "Calendar")

constexpr int deepestCollection = 3;
const QLatin1String itemSuffix(".ics");

QString metadata(const QDir& folder, const QString& name) {
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.read(1024)).trimmed();
}

// A steady colour of its own for a collection that names none.
QString colorFor(const QString& id) {
    static const QStringList palette{QStringLiteral("#0a84ff"), QStringLiteral("#ff9f0a"),
                                     QStringLiteral("#30d158"), QStringLiteral("#bf5af2"),
                                     QStringLiteral("#ff375f"), QStringLiteral("#64d2ff")};
    const QByteArray digest = QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Sha1);
    return palette.at(static_cast<unsigned char>(digest.at(0)) % palette.size());
}

bool holdsItems(const QDir& folder) {
    return !folder.entryList({QStringLiteral("*.ics")}, QDir::Files).isEmpty() ||
           QFileInfo::exists(folder.filePath(QStringLiteral("displayname")));
}

void collect(const QString& path, int depth, bool readOnly, QList<CalendarList>& out,
             QSet<QString>& seen) {
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    if (canonical.isEmpty() || !info.isDir() || seen.contains(canonical)) {
        return;
    }
    seen.insert(canonical);
    const QDir folder(canonical);
    if (holdsItems(folder)) {
        CalendarList list;
        list.id = canonical;
        list.title = metadata(folder, QStringLiteral("displayname"));
        if (list.title.isEmpty()) {
            list.title = folder.dirName();
        }
        const QColor named(metadata(folder, QStringLiteral("color")));
        list.color = named.isValid() ? named.name() : colorFor(canonical);
        list.readOnly = readOnly;
        out.append(list);
        return;
    }
    if (depth >= deepestCollection) {
        return;
    }
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        collect(folder.filePath(name), depth + 1, readOnly, out, seen);
    }
}

QStringList itemFiles(const QString& collection) {
    QStringList out;
    const QDir folder(collection);
    for (const QString& name :
         folder.entryList({QStringLiteral("*.ics")}, QDir::Files, QDir::Name)) {
        out << folder.filePath(name);
    }
    return out;
}

} // namespace

VdirCalendarStore::VdirCalendarStore(Folders folders)
    : m_folders(std::move(folders)) {}

QStringList VdirCalendarStore::usualRoots(const QString& home, const QString& dataHome) {
    return {dataHome + QStringLiteral("/calendars"), home + QStringLiteral("/.calendars"),
            dataHome + QStringLiteral("/vdirsyncer/calendars"),
            dataHome + QStringLiteral("/khal/calendars")};
}

QList<CalendarList> VdirCalendarStore::collections() const {
    QList<CalendarList> out;
    QSet<QString> seen;
    for (const QString& root : m_folders.readOnlyRoots) {
        collect(root, 0, true, out, seen);
    }
    for (const QString& root : m_folders.roots) {
        collect(root, 0, false, out, seen);
    }
    std::stable_sort(out.begin(), out.end(), [](const CalendarList& a, const CalendarList& b) {
        return a.title.localeAwareCompare(b.title) < 0;
    });
    return out;
}

QList<CalendarList> VdirCalendarStore::calendars() const {
    return collections();
}

QList<CalendarList> VdirCalendarStore::reminderLists() const {
    QList<CalendarList> lists = collections();
    lists.removeIf([](const CalendarList& list) { return list.readOnly; });
    return lists;
}

std::optional<QByteArray> VdirCalendarStore::readItem(const QString& path) const {
    const QFileInfo info(path);
    const QString stamp = QStringLiteral("%1|%2|%3")
                              .arg(path, QString::number(info.size()),
                                   QString::number(info.lastModified().toMSecsSinceEpoch()));
    QString problem;
    QByteArray bytes;
    if (info.size() > mostFileBytes) {
        problem = QStringLiteral("larger than %1 bytes").arg(mostFileBytes);
    } else {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            problem = file.errorString();
        } else {
            bytes = file.read(mostFileBytes + 1);
            if (bytes.size() > mostFileBytes) {
                problem = QStringLiteral("larger than %1 bytes").arg(mostFileBytes);
            }
        }
    }
    if (problem.isEmpty()) {
        return bytes;
    }
    const QMutexLocker lock(&m_mutex);
    if (!m_logged.contains(stamp)) {
        m_logged.insert(stamp);
        qCWarning(lcCalendar, "skipped %s: %s", qUtf8Printable(path), qUtf8Printable(problem));
    }
    return std::nullopt;
}

CalendarStore::Fetched<CalendarEventItem>
VdirCalendarStore::events(const QDateTime& from, const QDateTime& to,
                          const std::optional<QString>& calendarID, const QTimeZone& zone) const {
    Fetched<CalendarEventItem> fetched;
    for (const CalendarList& calendar : collections()) {
        if (calendarID && *calendarID != calendar.id) {
            continue;
        }
        for (const QString& path : itemFiles(calendar.id)) {
            const std::optional<QByteArray> bytes = readItem(path);
            if (!bytes) {
                continue;
            }
            const ICalReader::Contents contents = ICalReader::read(*bytes, from, to, zone);
            if (!contents.readable) {
                const QMutexLocker lock(&m_mutex);
                if (!m_logged.contains(path + QString::number(qHash(*bytes)))) {
                    m_logged.insert(path + QString::number(qHash(*bytes)));
                    qCWarning(lcCalendar, "skipped %s: not iCalendar", qUtf8Printable(path));
                }
                continue;
            }
            const QString file = QFileInfo(path).fileName();
            for (const ICalReader::Event& event : contents.events) {
                CalendarEventItem item;
                item.id = calendar.id + QLatin1Char('/') + file + QLatin1Char('#') + event.uid +
                          QLatin1Char('@') + QString::number(event.start.toSecsSinceEpoch());
                item.title = event.title;
                item.startDate = event.start;
                item.endDate = event.end;
                item.isAllDay = event.allDay;
                item.calendarColor = calendar.color;
                item.calendarTitle = calendar.title;
                fetched.items.append(item);
            }
        }
    }
    std::stable_sort(fetched.items.begin(), fetched.items.end(),
                     [](const CalendarEventItem& a, const CalendarEventItem& b) {
                         return a.startDate < b.startDate;
                     });
    return fetched;
}

CalendarStore::Fetched<ReminderItem>
VdirCalendarStore::reminders(const std::optional<QString>& listID,
                             const std::optional<QDateTime>& completedSince,
                             const QTimeZone& zone) const {
    Fetched<ReminderItem> fetched;
    for (const CalendarList& list : reminderLists()) {
        if (listID && *listID != list.id) {
            continue;
        }
        for (const QString& path : itemFiles(list.id)) {
            const std::optional<QByteArray> bytes = readItem(path);
            if (!bytes || !bytes->contains("VTODO")) {
                continue;
            }
            const ICalReader::Contents contents = ICalReader::read(*bytes, {}, {}, zone);
            for (const ICalReader::Todo& todo : contents.todos) {
                if (todo.completed &&
                    (!completedSince || !todo.completedAt || *todo.completedAt < *completedSince)) {
                    continue;
                }
                ReminderItem item;
                item.id = path + QLatin1Char('#') + todo.uid;
                item.title = todo.title;
                item.dueDate = todo.due;
                item.isCompleted = todo.completed;
                item.calendarColor = list.color;
                item.listName = list.title;
                item.priority = todo.priority;
                fetched.items.append(item);
            }
        }
    }
    // Open ones first, then by due date (none last), then by title.
    std::stable_sort(fetched.items.begin(), fetched.items.end(),
                     [](const ReminderItem& a, const ReminderItem& b) {
                         if (a.isCompleted != b.isCompleted) {
                             return !a.isCompleted;
                         }
                         if (a.dueDate.has_value() != b.dueDate.has_value()) {
                             return a.dueDate.has_value();
                         }
                         if (a.dueDate && *a.dueDate != *b.dueDate) {
                             return *a.dueDate < *b.dueDate;
                         }
                         return a.title.localeAwareCompare(b.title) < 0;
                     });
    return fetched;
}

QString VdirCalendarStore::setCompleted(const QString& reminderID, bool completed,
                                        const QDateTime& now) {
    const qsizetype hash = reminderID.lastIndexOf(QLatin1Char('#'));
    const QString path = reminderID.left(hash);
    const QString uid = reminderID.mid(hash + 1);
    const QString collection = QFileInfo(path).absolutePath();
    const QList<CalendarList> lists = reminderLists();
    const bool known =
        hash > 0 && std::any_of(lists.cbegin(), lists.cend(),
                                [&](const CalendarList& list) { return list.id == collection; });
    if (!known || !path.endsWith(itemSuffix)) {
        return QStringLiteral("no such reminder");
    }
    // Another program may write the file at any time: write our change on top of what is there
    // now, and start again if it changed while we worked.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::optional<QByteArray> before = readItem(path);
        if (!before) {
            return QStringLiteral("the reminder's file cannot be read");
        }
        const std::optional<QByteArray> after =
            ICalReader::withCompletion(*before, uid, completed, now);
        if (!after) {
            return QStringLiteral("no such reminder");
        }
        if (readItem(path) != before) {
            continue;
        }
        const AtomicFile::Result written = AtomicFile::write(path, *after);
        if (!written) {
            qCWarning(lcCalendar, "save failed: %s", qUtf8Printable(written.error));
            return written.error;
        }
        return {};
    }
    return QStringLiteral("the reminder's file keeps changing");
}

} // namespace tw
