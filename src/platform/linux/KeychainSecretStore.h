// Secrets in the desktop's keychain (the Secret Service), one entry per key under the program's
// service name.
#pragma once

#include "platform/SecretStore.h"

namespace tw {

class KeychainSecretStore final : public SecretStore {
public:
    void read(const QString& key, std::function<void(std::optional<QString>)> done) override;
    void write(const QString& key, const QString& value) override;
    void remove(const QString& key) override;
};

} // namespace tw
