#include "workspace/StickyNoteBehaviour.h"

#include "platform/Clipboard.h"
#include "text/L.h"
#include "workspace/NoteMarkup.h"
#include "workspace/NoteStore.h"

namespace tw {

namespace {

// "task:3" gives 3 for the prefix "task:"; nullopt for another command or no number.
std::optional<int> argument(const QString& command, QLatin1String prefix) {
    if (!command.startsWith(prefix)) {
        return std::nullopt;
    }
    bool ok = false;
    const int value = command.mid(prefix.size()).toInt(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

} // namespace

StickyNoteBehaviour::StickyNoteBehaviour(NoteStore& store, Clipboard& clipboard, QObject* parent)
    : TileBehaviour(parent)
    , m_store(store)
    , m_clipboard(clipboard) {
    connect(&m_store, &NoteStore::changed, this, &StickyNoteBehaviour::changed);
}

NoteView StickyNoteBehaviour::view(const QUuid& tile) const {
    NoteView view;
    view.text = m_store.text(tile);
    view.problem = m_store.problem(tile);
    const auto editing = m_editing.constFind(tile);
    if (editing != m_editing.cend()) {
        view.caret = std::clamp(editing->caret, 0, static_cast<int>(view.text.size()));
        view.all = editing->all;
    }
    return view;
}

void StickyNoteBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QList<QUuid> now;
    for (const BehaviourTile& tile : tiles) {
        const QUuid id = tile.instance.id;
        now.append(id);
        // A note that came with its text in its settings (a shared board, an older copy) takes
        // it as its first text.
        const QString given = tile.instance.setting(QStringLiteral("text")).value_or(QString());
        if (!given.isEmpty() && !m_store.exists(id)) {
            m_store.setText(id, given.left(NoteEditor::longest));
        }
    }
    for (const QUuid& id : std::as_const(m_tiles)) {
        if (!now.contains(id)) {
            m_editing.remove(id);
            m_store.flush(id);
        }
    }
    m_tiles = now;
}

bool StickyNoteBehaviour::press(const WidgetInstance& tile, const QString& command) {
    if (const auto line = argument(command, QLatin1String("task:"))) {
        m_store.setText(tile.id, NoteMarkup::toggledTask(m_store.text(tile.id), *line));
        return true;
    }
    if (const auto offset = argument(command, QLatin1String("caret:"))) {
        NoteEdit edit{m_store.text(tile.id), 0, false};
        NoteEditor::placeCaret(edit, *offset);
        m_editing.insert(tile.id, edit);
        Q_EMIT changed(tile.id);
        return true;
    }
    if (command == QLatin1String("copy")) {
        copy(m_store.text(tile.id));
        return true;
    }
    return false;
}

bool StickyNoteBehaviour::key(const WidgetInstance& tile, const Key& key) {
    const auto editing = m_editing.find(tile.id);
    if (editing == m_editing.end()) {
        return false;
    }
    NoteEdit edit = *editing;
    edit.text = m_store.text(tile.id);
    const NoteEditor::Result result = NoteEditor::key(edit, key.key, key.modifiers, key.text);
    switch (result.outcome) {
    case NoteEditor::Outcome::ignored:
        return false;
    case NoteEditor::Outcome::finish:
        finish(tile.id);
        Q_EMIT keysDone(tile.id);
        return true;
    case NoteEditor::Outcome::copy:
    case NoteEditor::Outcome::cut:
        copy(result.copied);
        break;
    case NoteEditor::Outcome::paste: {
        const QString pasted = m_clipboard.text();
        if (!pasted.isEmpty()) {
            NoteEditor::insert(edit, pasted);
        }
        break;
    }
    case NoteEditor::Outcome::edited:
    case NoteEditor::Outcome::moved:
        break;
    }
    *editing = edit;
    if (edit.text != m_store.text(tile.id)) {
        m_store.setText(tile.id, edit.text);
    } else {
        Q_EMIT changed(tile.id);
    }
    return true;
}

void StickyNoteBehaviour::focusChanged(const WidgetInstance& tile, bool focused) {
    if (!focused) {
        finish(tile.id);
    }
}

QList<TileBehaviour::MenuItem> StickyNoteBehaviour::menuItems(const WidgetInstance& tile) const {
    if (m_store.text(tile.id).isEmpty()) {
        return {};
    }
    return {{L("stickynote.copy", QStringLiteral("Copy Text")), QStringLiteral("copy")}};
}

void StickyNoteBehaviour::finish(const QUuid& id) {
    if (m_editing.remove(id) > 0) {
        Q_EMIT changed(id);
    }
    m_store.flush(id);
}

void StickyNoteBehaviour::copy(const QString& text) {
    m_clipboard.copyText(text);
}

} // namespace tw
