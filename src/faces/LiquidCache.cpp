#include "faces/LiquidCache.h"

namespace tw {

QImage LiquidCache::cached(const LiquidRequest& request) const {
    for (const Entry& entry : m_entries) {
        if (entry.request == request) {
            return entry.image;
        }
    }
    return {};
}

void LiquidCache::store(const QImage& image, const LiquidRequest& request) {
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].request == request) {
            m_entries.removeAt(i);
            break;
        }
    }
    if (m_entries.size() >= capacity) {
        m_entries.removeFirst();
    }
    // The entry need not keep the whole wallpaper alive; the identity names it.
    LiquidRequest key = request;
    key.backdrop = QImage();
    m_entries.append({key, image});
}

} // namespace tw
