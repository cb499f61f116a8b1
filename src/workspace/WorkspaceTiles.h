// The sticky note, quote and clipboard kinds' stores and behaviours, made together for the
// composition root.
#pragma once

#include "platform/Clipboard.h"
#include "workspace/ClipboardBehaviour.h"
#include "workspace/ClipboardService.h"
#include "workspace/NoteStore.h"
#include "workspace/QuoteBehaviour.h"
#include "workspace/StickyNoteBehaviour.h"

#include <memory>

namespace tw {

class Clock;
class GridStore;
class Scheduler;
class TileBehaviours;

class WorkspaceTiles {
public:
    struct Services {
        GridStore& grid;
        const Clock& clock;
        Scheduler& scheduler;
        Clipboard& clipboard;
        // The data directory.
        QString directory;
    };

    explicit WorkspaceTiles(const Services& services);

    void addTo(TileBehaviours& behaviours);

    NoteStore& notes() { return m_notes; }
    ClipboardService& clipboard() { return m_clipboardHistory; }

private:
    NoteStore m_notes;
    ClipboardService m_clipboardHistory;
    StickyNoteBehaviour m_stickyNote;
    QuoteBehaviour m_quote;
    ClipboardBehaviour m_clipboard;
};

} // namespace tw
