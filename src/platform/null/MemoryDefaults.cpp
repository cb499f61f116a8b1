#include "platform/null/MemoryDefaults.h"

namespace tw {

void MemoryDefaults::setValue(const QString& key, const QVariant& value) {
    const auto it = m_values.constFind(key);
    if (it != m_values.cend() && *it == value) {
        return;
    }
    m_values.insert(key, value);
    Q_EMIT valueChanged(key);
}

void MemoryDefaults::remove(const QString& key) {
    if (m_values.remove(key) > 0) {
        Q_EMIT valueChanged(key);
    }
}

} // namespace tw
