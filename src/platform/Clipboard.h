// The system clipboard: what it holds, word when that changes, and a way to fill it.
#pragma once

#include <QObject>

class QMimeData;

namespace tw {

class Clipboard : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // What the clipboard holds now, owned by the clipboard and good until the next change;
    // null when nothing is there or it could not be read.
    virtual const QMimeData* contents() const = 0;
    // Fills the clipboard, taking `data`.
    virtual void setContents(QMimeData* data) = 0;

Q_SIGNALS:
    // Something put new contents on the clipboard, this program included.
    void changed();
};

} // namespace tw
