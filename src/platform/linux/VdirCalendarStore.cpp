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
        list.folder = canonical;
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

// What tells whether a collection changed since it was read, without reading an item: vdir
// writers replace an item by renaming a new file over it, which changes its time of change.
QString signatureOf(const CalendarList& list) {
    QString signature = list.title + QLatin1Char('\n') + list.color;
    const QFileInfoList files =
        QDir(list.id).entryInfoList({QStringLiteral("*.ics")}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        signature += QStringLiteral("\n%1 %2 %3")
                         .arg(file.fileName())
                         .arg(file.size())
                         .arg(file.lastModified().toMSecsSinceEpoch());
    }
    return signature;
}

} // namespace

VdirCalendarStore::VdirCalendarStore(Folders folders)
    : m_folders(std::move(folders)) {}

QStringList VdirCalendarStore::usualRoots(const QString& home, const QString& dataHome) {
    return {dataHome + QStringLiteral("/calendars"), home + QStringLiteral("/.calendars"),
            dataHome + QStringLiteral("/vdirsyncer/calendars"),
            dataHome + QStringLiteral("/khal/calendars")};
}

void VdirCalendarStore::setOwnFolders(const QStringList& folders) {
    const QMutexLocker lock(&m_mutex);
    m_own = folders;
}

QList<CalendarList> VdirCalendarStore::collections() const {
    QStringList roots;
    {
        const QMutexLocker lock(&m_mutex);
        roots = m_folders.roots + m_own;
    }
    QList<CalendarList> out;
    QSet<QString> seen;
    for (const QString& root : m_folders.readOnlyRoots) {
        collect(root, 0, true, out, seen);
    }
    for (const QString& root : roots) {
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

int VdirCalendarStore::filesParsed() const {
    const QMutexLocker lock(&m_mutex);
    return m_parsed;
}

std::optional<ICalReader::Contents>
VdirCalendarStore::parse(const QString& path, const QDateTime& from, const QDateTime& to,
                         const QTimeZone& zone, const char* component) const {
    const std::optional<QByteArray> bytes = readItem(path);
    if (!bytes || !bytes->contains(component)) {
        return std::nullopt;
    }
    ICalReader::Contents contents = ICalReader::read(*bytes, from, to, zone);
    const QMutexLocker lock(&m_mutex);
    ++m_parsed;
    if (!contents.readable) {
        const QString stamp = path + QString::number(qHash(*bytes));
        if (!m_logged.contains(stamp)) {
            m_logged.insert(stamp);
            qCWarning(lcCalendar, "skipped %s: not iCalendar", qUtf8Printable(path));
        }
        return std::nullopt;
    }
    return contents;
}

VdirCalendarStore::Kept VdirCalendarStore::keptEvents(const CalendarList& calendar,
                                                      const QDateTime& from, const QDateTime& to,
                                                      const QTimeZone& zone) const {
    const QString signature = signatureOf(calendar);
    {
        const QMutexLocker lock(&m_mutex);
        const auto kept = m_events.constFind(calendar.id);
        if (kept != m_events.cend() && kept->signature == signature && kept->from == from &&
            kept->to == to && kept->zone == zone.id()) {
            return *kept;
        }
    }
    Kept fresh{signature, from, to, zone.id(), {}, {}};
    for (const QString& path : itemFiles(calendar.id)) {
        const std::optional<ICalReader::Contents> contents = parse(path, from, to, zone, "");
        if (!contents) {
            continue;
        }
        const QString file = QFileInfo(path).fileName();
        for (const ICalReader::Event& event : contents->events) {
            CalendarEventItem item;
            item.id = calendar.id + QLatin1Char('/') + file + QLatin1Char('#') + event.uid +
                      QLatin1Char('@') + QString::number(event.start.toSecsSinceEpoch());
            item.title = event.title;
            item.startDate = event.start;
            item.endDate = event.end;
            item.isAllDay = event.allDay;
            item.calendarColor = calendar.color;
            item.calendarTitle = calendar.title;
            fresh.events.append(item);
        }
    }
    const QMutexLocker lock(&m_mutex);
    m_events.insert(calendar.id, fresh);
    return fresh;
}

VdirCalendarStore::Kept VdirCalendarStore::keptTodos(const CalendarList& list,
                                                     const QTimeZone& zone) const {
    const QString signature = signatureOf(list);
    {
        const QMutexLocker lock(&m_mutex);
        const auto kept = m_todos.constFind(list.id);
        if (kept != m_todos.cend() && kept->signature == signature && kept->zone == zone.id()) {
            return *kept;
        }
    }
    Kept fresh{signature, {}, {}, zone.id(), {}, {}};
    for (const QString& path : itemFiles(list.id)) {
        if (const auto contents = parse(path, {}, {}, zone, "VTODO")) {
            for (const ICalReader::Todo& todo : contents->todos) {
                fresh.todos.append({path, todo});
            }
        }
    }
    const QMutexLocker lock(&m_mutex);
    m_todos.insert(list.id, fresh);
    return fresh;
}

CalendarStore::Fetched<CalendarEventItem>
VdirCalendarStore::events(const QDateTime& from, const QDateTime& to,
                          const std::optional<QString>& calendarID, const QTimeZone& zone) const {
    // Read for whole days, so that the moving span of each minute finds what was kept.
    const QDateTime dayFrom(from.toUTC().date().addDays(-1), QTime(0, 0), QTimeZone::utc());
    const QDateTime dayTo(to.toUTC().date().addDays(1), QTime(0, 0), QTimeZone::utc());
    Fetched<CalendarEventItem> fetched;
    for (const CalendarList& calendar : collections()) {
        if (calendarID && *calendarID != calendar.id) {
            continue;
        }
        for (const CalendarEventItem& item : keptEvents(calendar, dayFrom, dayTo, zone).events) {
            const bool overlaps =
                item.startDate < to &&
                (item.endDate > from || (item.endDate == item.startDate && item.startDate >= from));
            if (overlaps) {
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
        for (const auto& [path, todo] : keptTodos(list, zone).todos) {
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
