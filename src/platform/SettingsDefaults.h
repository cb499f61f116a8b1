// Defaults kept by QSettings: the application's own native preferences store.
#pragma once

#include "platform/Defaults.h"

#include <QSettings>

#include <memory>

namespace tw {

class SettingsDefaults final : public Defaults {
    Q_OBJECT
public:
    // The application's own domain ("Tarnwick" in the platform's preferences location).
    explicit SettingsDefaults(QObject* parent = nullptr);
    // A given file, for tools and tests that must not touch the user's preferences.
    explicit SettingsDefaults(const QString& iniPath, QObject* parent = nullptr);

    // Keeps the overload with a fallback visible beside the override.
    using Defaults::value;
    QVariant value(const QString& key) const override;
    bool contains(const QString& key) const override;
    QStringList keys() const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;
    void sync() override;
    bool isWritable() const override;

private:
    std::unique_ptr<QSettings> m_settings;
};

} // namespace tw
