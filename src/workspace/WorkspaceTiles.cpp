#include "workspace/WorkspaceTiles.h"

#include "model/TileBehaviour.h"
#include "platform/null/MemoryClipboard.h"

namespace tw {

namespace {

std::unique_ptr<Clipboard> ownClipboard(Clipboard* given) {
    return given != nullptr ? nullptr : std::make_unique<MemoryClipboard>();
}

} // namespace

WorkspaceTiles::WorkspaceTiles(const Services& services)
    : m_ownClipboard(ownClipboard(services.clipboard))
    , m_notes(services.directory, services.scheduler)
    , m_clipboardHistory(services.clipboard != nullptr ? *services.clipboard : *m_ownClipboard,
                         services.clock, services.scheduler, services.directory)
    , m_stickyNote(m_notes,
                   services.clipboard != nullptr ? services.clipboard : m_ownClipboard.get())
    , m_quote(services.grid, services.clock)
    , m_clipboard(m_clipboardHistory) {}

void WorkspaceTiles::addTo(TileBehaviours& behaviours) {
    behaviours.add(QStringLiteral("stickynote"), &m_stickyNote);
    behaviours.add(QStringLiteral("quote"), &m_quote);
    behaviours.add(QStringLiteral("clipboard"), &m_clipboard);
}

} // namespace tw
