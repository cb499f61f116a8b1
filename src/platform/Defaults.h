// The user's preferences, keyed by the documented "tarnwick.…" keys.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace tw {

class Defaults : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // The stored value, or an invalid QVariant when the key was never written.
    virtual QVariant value(const QString& key) const = 0;
    virtual bool contains(const QString& key) const = 0;
    // Every stored key, for carrying preferences to another machine.
    virtual QStringList keys() const = 0;
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;
    // Writes pending changes through to permanent storage now, for a process started next to read.
    virtual void sync() {}
    // Whether changes can still reach permanent storage; a settings page refuses a change
    // that would be lost.
    virtual bool isWritable() const { return true; }

    QVariant value(const QString& key, const QVariant& fallback) const {
        return contains(key) ? value(key) : fallback;
    }

Q_SIGNALS:
    // Emitted after a write through this object changed the stored value.
    void valueChanged(const QString& key);
};

} // namespace tw
