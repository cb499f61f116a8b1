// The clipboard tile's history: what was copied lately, the newest first, each thing once, and
// nothing a password manager marked as secret.
#pragma once

#include "workspace/Clipping.h"

#include <QList>

#include <optional>

class QMimeData;

namespace tw {

class ClipboardHistory {
public:
    static constexpr qsizetype most = 30;
    // Texts longer than this are kept cut to it.
    static constexpr qsizetype longestText = 100000;
    // A larger picture is kept scaled down to about this many pixels.
    static constexpr qint64 largestImagePixels = 8000000;
    // The pictures together stay under this; the oldest go first.
    static constexpr qsizetype mostImageBytes = 96 * 1024 * 1024;

    enum class Images { kept, skipped };

    // The clipping the clipboard's contents make, or nullopt: nothing there, only blanks, a
    // picture while pictures are skipped, or contents a password manager marked as secret.
    static std::optional<Clipping> clippingOf(const QMimeData* data, const QDateTime& at,
                                              Images images);
    // Whether the contents carry a password manager's mark that they are secret.
    static bool isSecret(const QMimeData& data);

    // Puts `clipping` first; the same content copied again moves up with its new time. False
    // when nothing changed.
    bool add(Clipping clipping);
    bool remove(qsizetype index);
    bool clear();
    // Drops the pictures (when the person stops keeping them).
    bool dropImages();

    const QList<Clipping>& items() const { return m_items; }
    void setItems(QList<Clipping> items);

private:
    void trim();

    QList<Clipping> m_items;
};

} // namespace tw
