// What sticky note tiles do on the desktop: typed into after a click (the caret where it was
// clicked), a click on a task's box ticks it, Escape or a click elsewhere ends the typing, the
// text copied and pasted with the clipboard. Their text lives in the `NoteStore`.
#pragma once

#include "model/TileBehaviour.h"
#include "workspace/NoteEditor.h"
#include "workspace/NoteView.h"

#include <QHash>

namespace tw {

class Clipboard;
class NoteStore;

class StickyNoteBehaviour final : public TileBehaviour {
    Q_OBJECT

public:
    // `clipboard` may be null: copying and pasting then do nothing.
    StickyNoteBehaviour(NoteStore& store, Clipboard& clipboard, QObject* parent = nullptr);

    NoteView view(const QUuid& tile) const;

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    bool takesKeys() const override { return true; }
    bool key(const WidgetInstance& tile, const Key& key) override;
    void focusChanged(const WidgetInstance& tile, bool focused) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    void finish(const QUuid& id);
    void copy(const QString& text);

    NoteStore& m_store;
    Clipboard& m_clipboard;
    // The tiles being typed into: caret and selection.
    QHash<QUuid, NoteEdit> m_editing;
    QList<QUuid> m_tiles;
};

} // namespace tw
