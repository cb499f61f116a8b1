// The clipboard's history while a clipboard tile is on the desktop: watches the clipboard, keeps
// the history in memory, and on disk only while the person asks for that.
#pragma once

#include "platform/ScheduledTask.h"
#include "workspace/ClipboardHistory.h"

#include <QObject>
#include <QString>

namespace tw {

class Clipboard;
class Clock;
class Scheduler;

class ClipboardService : public QObject {
    Q_OBJECT

public:
    // `directory` is the data directory, where a kept history goes.
    ClipboardService(Clipboard& clipboard, const Clock& clock, Scheduler& scheduler,
                     const QString& directory, QObject* parent = nullptr);
    ~ClipboardService() override;

    // Watch the clipboard (a tile is on the desktop) or not (none is).
    void setWatching(bool watching);
    // Keep the history on disk: on reads what was kept and writes from now on; off deletes the
    // kept files.
    void setKeeping(bool keeping);
    void setImages(ClipboardHistory::Images images);

    const QList<Clipping>& items() const { return m_history.items(); }
    // Puts clipping `index` back on the clipboard; false when there is no such clipping.
    bool copyBack(qsizetype index);
    void remove(qsizetype index);
    void clear();
    // Why the history could not be kept on disk; empty when it was (or is not kept).
    QString problem() const { return m_problem; }

    QString filePath() const;
    QString imageFolder() const;

Q_SIGNALS:
    void changed();

private:
    void take();
    void edited();
    void load();
    void save();
    void forget();

    Clipboard& m_clipboard;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    QString m_directory;
    ClipboardHistory m_history;
    ClipboardHistory::Images m_images = ClipboardHistory::Images::kept;
    bool m_watching = false;
    bool m_keeping = false;
    QString m_problem;
    ScheduledTask m_save;
};

} // namespace tw
