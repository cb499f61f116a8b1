#include "workspace/WorkspaceTiles.h"

#include "model/TileBehaviour.h"

namespace tw {

WorkspaceTiles::WorkspaceTiles(const Services& services)
    : m_notes(services.directory, services.scheduler)
    , m_clipboardHistory(services.clipboard, services.clock, services.scheduler, services.directory)
    , m_stickyNote(m_notes, services.clipboard)
    , m_quote(services.grid, services.clock)
    , m_clipboard(m_clipboardHistory) {}

void WorkspaceTiles::addTo(TileBehaviours& behaviours) {
    behaviours.add(QStringLiteral("stickynote"), &m_stickyNote);
    behaviours.add(QStringLiteral("quote"), &m_quote);
    behaviours.add(QStringLiteral("clipboard"), &m_clipboard);
}

} // namespace tw
