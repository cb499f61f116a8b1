#include "workspace/NoteStore.h"

#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/DataFile.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QStringDecoder>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcNotes, "Notes")

const QString kText = QStringLiteral("text");

QString notSaved() {
    return L("stickynote.notSaved", QStringLiteral("Not saved: the disk refused the note"));
}

std::optional<QString> strictUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

} // namespace

NoteStore::NoteStore(const QString& directory, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_folder(QDir(directory).filePath(QStringLiteral("notes")))
    , m_scheduler(scheduler) {}

NoteStore::~NoteStore() {
    flush();
}

QString NoteStore::filePath(const QUuid& id) const {
    return QDir(m_folder).filePath(id.toString(QUuid::WithoutBraces) + QStringLiteral(".md"));
}

QString NoteStore::journalPath(const QUuid& id) const {
    return QDir(m_folder).filePath(id.toString(QUuid::WithoutBraces) + QStringLiteral(".journal"));
}

QByteArray NoteStore::record(const QString& text) {
    return QJsonDocument(QJsonObject{{kText, text}}).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QString> NoteStore::lastRecord(const QByteArray& journal) {
    const QList<QByteArray> lines = journal.split('\n');
    for (qsizetype i = lines.size() - 1; i >= 0; --i) {
        const QJsonDocument document = QJsonDocument::fromJson(lines[i]);
        const QJsonValue text = document.object().value(kText);
        if (text.isString()) {
            return text.toString().left(NoteStore::largestFile);
        }
    }
    return std::nullopt;
}

NoteStore::Note& NoteStore::note(const QUuid& id) {
    auto found = m_notes.find(id);
    if (found == m_notes.end()) {
        found = m_notes.emplace(id, Note{}).first;
        load(id, found->second);
    }
    return found->second;
}

void NoteStore::load(const QUuid& id, Note& note) {
    const QString path = filePath(id);
    AtomicFile::removeStaleTemporaries(path);
    const DataFile::Contents file = DataFile::read(path, largestFile);
    switch (file.status) {
    case DataFile::Status::missing:
        break;
    case DataFile::Status::regular:
        if (const auto text = strictUtf8(file.bytes)) {
            note.text = *text;
        } else {
            // Keep the bytes as they were; the note goes on with what could be read.
            note.text = QString::fromUtf8(file.bytes);
            AppPaths::quarantineUnreadable(path);
            note.pending = true;
        }
        break;
    case DataFile::Status::tooLarge:
    case DataFile::Status::unreadable:
        qCWarning(lcNotes) << "Note set aside:" << file.problem;
        AppPaths::quarantineUnreadable(path);
        break;
    case DataFile::Status::notRegular:
        qCWarning(lcNotes) << "Note left alone:" << file.problem;
        note.readOnly = true;
        note.problem = notSaved();
        return;
    }
    const QString journal = journalPath(id);
    const DataFile::Contents log = DataFile::read(journal);
    if (log.status == DataFile::Status::regular && !log.bytes.isEmpty()) {
        if (const auto newest = lastRecord(log.bytes)) {
            note.text = *newest;
            note.pending = true;
        } else {
            AppPaths::quarantineUnreadable(journal);
        }
    } else if (log.status == DataFile::Status::tooLarge ||
               log.status == DataFile::Status::unreadable) {
        AppPaths::quarantineUnreadable(journal);
    }
    if (note.pending) {
        save(id, note);
    }
}

QString NoteStore::text(const QUuid& id) {
    return note(id).text;
}

bool NoteStore::exists(const QUuid& id) const {
    return QFileInfo::exists(filePath(id)) || QFileInfo::exists(journalPath(id));
}

QString NoteStore::problem(const QUuid& id) const {
    const auto found = m_notes.find(id);
    return found == m_notes.end() ? QString() : found->second.problem;
}

bool NoteStore::makeFolder() {
    return QDir().mkpath(m_folder);
}

void NoteStore::setText(const QUuid& id, const QString& text) {
    Note& entry = note(id);
    if (entry.text == text) {
        return;
    }
    entry.text = text;
    if (entry.readOnly) {
        Q_EMIT changed(id);
        return;
    }
    QFile journal(journalPath(id));
    const QByteArray line = record(text);
    const bool kept = makeFolder() && journal.open(QIODevice::WriteOnly | QIODevice::Append) &&
                      journal.write(line) == line.size() && journal.flush();
    if (!kept) {
        qCWarning(lcNotes) << "Journal not written:" << journal.errorString();
    }
    entry.problem = kept ? QString() : notSaved();
    entry.pending = true;
    entry.quiet = m_scheduler.singleShot(pause, std::chrono::milliseconds(100), this,
                                         [this, id] { flush(id); });
    if (!entry.deadline.isActive()) {
        entry.deadline = m_scheduler.singleShot(longest, std::chrono::milliseconds(500), this,
                                                [this, id] { flush(id); });
    }
    Q_EMIT changed(id);
}

void NoteStore::flush() {
    for (auto& [id, entry] : m_notes) {
        if (entry.pending) {
            save(id, entry);
        }
    }
}

void NoteStore::flush(const QUuid& id) {
    const auto found = m_notes.find(id);
    if (found != m_notes.end() && found->second.pending) {
        const QString before = found->second.problem;
        save(id, found->second);
        if (found->second.problem != before) {
            Q_EMIT changed(id);
        }
    }
}

void NoteStore::save(const QUuid& id, Note& note) {
    note.quiet.cancel();
    note.deadline.cancel();
    if (note.readOnly) {
        return;
    }
    const AtomicFile::Result written =
        makeFolder() ? AtomicFile::write(filePath(id), note.text.toUtf8())
                     : AtomicFile::Result{QStringLiteral("no folder %1").arg(m_folder)};
    if (!written) {
        // The journal still holds every change; the next change or flush tries again.
        qCWarning(lcNotes) << "Note not written:" << written.error;
        return;
    }
    note.pending = false;
    note.problem.clear();
    QFile::remove(journalPath(id));
}

} // namespace tw
