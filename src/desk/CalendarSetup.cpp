#include "desk/CalendarSetup.h"

#include "desk/CalendarSubscriptions.h"
#include "platform/CalendarStore.h"
#include "platform/Defaults.h"
#include "text/L.h"

#include <QFileInfo>
#include <QPointer>

namespace tw {
namespace {

const char* const foldersKey = "tarnwick.calendar.folders";
const char* const subscriptionsKey = "tarnwick.calendar.subscriptions";

QString tooMany() {
    return L("calendar.sources.tooMany", QStringLiteral("There are too many already."));
}

} // namespace

CalendarSetup::CalendarSetup(Defaults& defaults, CalendarStore& store,
                             CalendarSubscriptions& subscriptions, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_store(store)
    , m_subscriptions(subscriptions) {
    m_store.setOwnFolders(folders());
    m_subscriptions.setAddresses(this->subscriptions());
}

QStringList CalendarSetup::list(const char* key) const {
    // Lenient: a stored list of anything but text reads as the text in it.
    QStringList values = m_defaults.value(QLatin1String(key)).toStringList();
    values.removeAll(QString());
    values.removeDuplicates();
    return values.mid(0, mostEntries);
}

void CalendarSetup::store(const char* key, const QStringList& values) {
    m_defaults.setValue(QLatin1String(key), values);
    m_store.setOwnFolders(folders());
    m_subscriptions.setAddresses(subscriptions());
    Q_EMIT changed();
}

QStringList CalendarSetup::folders() const {
    return list(foldersKey);
}

QStringList CalendarSetup::subscriptions() const {
    return list(subscriptionsKey);
}

QString CalendarSetup::addFolder(const QString& path) {
    const QFileInfo info(path);
    const QString folder = info.canonicalFilePath();
    if (folder.isEmpty() || !info.isDir() || !info.isReadable()) {
        return L("calendar.folder.unreadable", QStringLiteral("That folder cannot be read."));
    }
    QStringList folders = this->folders();
    if (folders.contains(folder)) {
        return L("calendar.folder.known", QStringLiteral("That folder is already read."));
    }
    if (folders.size() >= mostEntries) {
        return tooMany();
    }
    store(foldersKey, folders << folder);
    return {};
}

void CalendarSetup::removeFolder(const QString& path) {
    QStringList folders = this->folders();
    if (folders.removeAll(path) > 0) {
        store(foldersKey, folders);
    }
}

void CalendarSetup::subscribe(const QString& address, const QDateTime& now,
                              std::function<void(const QString& problem)> done) {
    const QString trimmed = address.trimmed();
    if (subscriptions().contains(trimmed)) {
        done(L("calendar.subscribe.known", QStringLiteral("You already subscribe to it.")));
        return;
    }
    if (subscriptions().size() >= mostEntries) {
        done(tooMany());
        return;
    }
    m_subscriptions.fetchNow(
        trimmed, now,
        [self = QPointer<CalendarSetup>(this), trimmed, done](const QString& problem) {
            if (self && problem.isEmpty() && !self->subscriptions().contains(trimmed)) {
                self->store(subscriptionsKey, self->subscriptions() << trimmed);
            }
            done(problem);
        });
}

void CalendarSetup::unsubscribe(const QString& address) {
    QStringList addresses = subscriptions();
    if (addresses.removeAll(address) > 0) {
        m_subscriptions.forget(address);
        store(subscriptionsKey, addresses);
    }
}

} // namespace tw
