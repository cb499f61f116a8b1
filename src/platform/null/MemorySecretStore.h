// Secrets held in memory only: tests, and machines where no keychain may be used.
#pragma once

#include "platform/SecretStore.h"

#include <QHash>

namespace tw {

class MemorySecretStore final : public SecretStore {
public:
    void read(const QString& key, std::function<void(std::optional<QString>)> done) override {
        const auto found = m_values.constFind(key);
        done(found == m_values.cend() ? std::nullopt : std::optional<QString>(found.value()));
    }
    void write(const QString& key, const QString& value) override { m_values.insert(key, value); }
    void remove(const QString& key) override { m_values.remove(key); }

    const QHash<QString, QString>& values() const { return m_values; }

private:
    QHash<QString, QString> m_values;
};

} // namespace tw
