// Where values too private for a data file are kept: the request headers of custom widgets, which
// may hold API keys. Reading may take a while (a keychain can ask the person to unlock it).
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tw {

class SecretStore {
public:
    SecretStore() = default;
    virtual ~SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;

    // Hands the value under `key` to `done`, at once or later on the main thread; nullopt when
    // there is none or it cannot be read.
    virtual void read(const QString& key, std::function<void(std::optional<QString>)> done) = 0;
    // Failures are logged; the value then lives until the program ends.
    virtual void write(const QString& key, const QString& value) = 0;
    virtual void remove(const QString& key) = 0;
};

} // namespace tw
