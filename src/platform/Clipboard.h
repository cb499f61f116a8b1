// The system clipboard: what it holds, word when that changes, and a way to fill it.
#pragma once

#include <QObject>
#include <QString>

class QMimeData;

namespace tw {

class Clipboard : public QObject {
    Q_OBJECT

public:
    // The format a password manager adds, holding "secret", so that clipboard keepers leave a
    // copy out of their history.
    static inline const QString secretHint = QStringLiteral("x-kde-passwordManagerHint");

    enum class Secrecy { plain, secret };

    using QObject::QObject;

    // What the clipboard holds now, owned by the clipboard and good until the next change;
    // null when nothing is there or it could not be read.
    virtual const QMimeData* contents() const = 0;
    // Fills the clipboard, taking `data`.
    virtual void setContents(QMimeData* data) = 0;

    // Puts text on the clipboard; nothing for empty text.
    void copyText(const QString& text, Secrecy secrecy = Secrecy::plain);
    // The text the clipboard holds; empty when it holds none.
    QString text() const;

Q_SIGNALS:
    // Something put new contents on the clipboard, this program included.
    void changed();
};

} // namespace tw
