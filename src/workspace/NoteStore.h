// The text of every sticky note, one file a tile ("notes/<id>.md"), kept as it is typed: each
// change is appended to the note's journal at once ("notes/<id>.journal", one JSON line holding
// the whole text), which a killed process cannot lose, and the file is rewritten atomically once
// typing pauses (or every `longest` while it goes on), after which the journal goes.
#pragma once

#include "platform/ScheduledTask.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <chrono>
#include <map>

namespace tw {

class Scheduler;

class NoteStore : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds pause{1500};
    static constexpr std::chrono::milliseconds longest{10000};
    // A note file bigger than this is not one of ours: set aside, and the note starts empty.
    static constexpr qint64 largestFile = 1024 * 1024;

    // `directory` is the data directory; the notes go in its "notes" folder.
    NoteStore(const QString& directory, Scheduler& scheduler, QObject* parent = nullptr);
    ~NoteStore() override;

    // The note's text, read from its files the first time it is asked for.
    QString text(const QUuid& id);
    // Whether the note has a file or a journal of its own yet.
    bool exists(const QUuid& id) const;
    void setText(const QUuid& id, const QString& text);
    // Why the note's last change could not be kept on disk; empty when it was. The text stays in
    // memory either way.
    QString problem(const QUuid& id) const;
    // Rewrites every note with changes in its journal now (editing ended, a tile went, a quit).
    void flush();
    void flush(const QUuid& id);

    QString filePath(const QUuid& id) const;
    QString journalPath(const QUuid& id) const;

    // The newest whole text in a journal's bytes; nullopt when no line holds one. A line cut
    // short by a kill is skipped.
    static std::optional<QString> lastRecord(const QByteArray& journal);
    static QByteArray record(const QString& text);

Q_SIGNALS:
    void changed(const QUuid& id);

private:
    struct Note {
        QString text;
        QString problem;
        bool pending = false;
        // Writes go nowhere: what is in the note's place is no file of ours.
        bool readOnly = false;
        ScheduledTask quiet;
        ScheduledTask deadline;
    };

    Note& note(const QUuid& id);
    void load(const QUuid& id, Note& note);
    void save(const QUuid& id, Note& note);
    bool makeFolder();

    QString m_folder;
    Scheduler& m_scheduler;
    std::map<QUuid, Note> m_notes;
};

} // namespace tw
