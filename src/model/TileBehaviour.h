// What a kind does on the desktop beyond drawing: typing, clicks on its own controls, dropped
// files and work that runs only while a tile is in view. One object serves every tile of its kind;
// the desktop calls it, the kind's face reads its state.
#pragma once

#include "model/WidgetInstance.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

class QMimeData;

namespace tw {

// One tile of a behaviour's kind as the desktop holds it now.
struct BehaviourTile {
    WidgetInstance instance;
    // On the shown desktop and not covered.
    bool inView = false;

    bool operator==(const BehaviourTile&) const = default;
};

class TileBehaviour : public QObject {
    Q_OBJECT
public:
    struct Key {
        int key = 0;
        Qt::KeyboardModifiers modifiers;
        QString text;
    };
    struct MenuItem {
        QString title;
        QString command;
    };

    using QObject::QObject;

    // Every tile of the kind on the desktop, after one was added, removed, changed its settings
    // or came into or out of view.
    virtual void setTiles(const QList<BehaviourTile>& tiles);
    // A plain click on the tile; `command` is what the face offers at that point, empty elsewhere.
    // True when used: the click then does nothing else.
    virtual bool press(const WidgetInstance& tile, const QString& command);
    // Whether the kind's tiles take the keyboard when clicked.
    virtual bool takesKeys() const;
    virtual bool key(const WidgetInstance& tile, const Key& key);
    virtual void focusChanged(const WidgetInstance& tile, bool focused);
    // Whether the kind's tiles are drop targets at all; then whether this drop is welcome.
    virtual bool takesDrops() const;
    virtual bool acceptsDrop(const WidgetInstance& tile, const QMimeData& data) const;
    virtual bool drop(const WidgetInstance& tile, const QMimeData& data);
    // Entries of the tile's context menu; choosing one presses its command.
    virtual QList<MenuItem> menuItems(const WidgetInstance& tile) const;

Q_SIGNALS:
    // The tile's picture changed; a null id for every tile of the kind.
    void changed(const QUuid& tile);
    // The tile is done with the keyboard (its editing ended by a key): the desktop takes the
    // focus from it, so that keys no longer reach it.
    void keysDone(const QUuid& tile);
};

// The behaviours of the kinds that have one, by kind. Owns none of them.
class TileBehaviours {
public:
    void add(const QString& kind, TileBehaviour* behaviour);
    TileBehaviour* find(const QString& kind) const { return m_byKind.value(kind); }
    QList<QString> kinds() const { return m_byKind.keys(); }

    template <class T>
    const T* as(const QString& kind) const {
        return qobject_cast<const T*>(find(kind));
    }

private:
    QHash<QString, TileBehaviour*> m_byKind;
};

} // namespace tw
