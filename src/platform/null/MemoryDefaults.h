// Defaults held in memory: tests, and pictures drawn off-screen that must not persist anything.
#pragma once

#include "platform/Defaults.h"

#include <QVariantMap>

namespace tw {

class MemoryDefaults final : public Defaults {
    Q_OBJECT
public:
    using Defaults::Defaults;

    // Keeps the overload with a fallback visible beside the override.
    using Defaults::value;
    QVariant value(const QString& key) const override { return m_values.value(key); }
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QStringList keys() const override { return m_values.keys(); }
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;
    bool isWritable() const override { return m_writable; }
    // A store that has become read-only, as a full disk or a locked file makes it.
    void setWritable(bool writable) { m_writable = writable; }

private:
    QVariantMap m_values;
    bool m_writable = true;
};

} // namespace tw
