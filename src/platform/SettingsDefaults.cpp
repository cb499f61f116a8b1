#include "platform/SettingsDefaults.h"

namespace tw {

SettingsDefaults::SettingsDefaults(QObject* parent)
    : Defaults(parent)
    , m_settings(
          std::make_unique<QSettings>(QStringLiteral("Tarnwick"), QStringLiteral("Tarnwick"))) {}

SettingsDefaults::SettingsDefaults(const QString& iniPath, QObject* parent)
    : Defaults(parent)
    , m_settings(std::make_unique<QSettings>(iniPath, QSettings::IniFormat)) {}

QVariant SettingsDefaults::value(const QString& key) const {
    return m_settings->value(key);
}

bool SettingsDefaults::contains(const QString& key) const {
    return m_settings->contains(key);
}

QStringList SettingsDefaults::keys() const {
    return m_settings->allKeys();
}

void SettingsDefaults::setValue(const QString& key, const QVariant& value) {
    if (m_settings->contains(key) && m_settings->value(key) == value) {
        return;
    }
    m_settings->setValue(key, value);
    Q_EMIT valueChanged(key);
}

void SettingsDefaults::remove(const QString& key) {
    if (!m_settings->contains(key)) {
        return;
    }
    m_settings->remove(key);
    Q_EMIT valueChanged(key);
}

bool SettingsDefaults::isWritable() const {
    return m_settings->isWritable();
}

void SettingsDefaults::sync() {
    m_settings->sync();
}

} // namespace tw
