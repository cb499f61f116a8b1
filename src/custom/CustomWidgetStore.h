// The custom widgets the person made: kept in "custom-widgets.json" in the data directory, their
// request headers in the keychain, handed to the catalogue as ordinary widget kinds, and read
// from and written to the ".twkwidget" files people pass on.
#pragma once

#include "custom/CustomWidgetDefinition.h"
#include "custom/CustomWidgetIssue.h"
#include "grid/CustomStoreHealth.h"
#include "model/CustomWidgetDefinitions.h"
#include "platform/AtomicFile.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>
#include <variant>

namespace tw {

class Clock;
class SecretStore;

class CustomWidgetStore final : public QObject,
                                public CustomWidgetDefinitions,
                                public CustomStoreHealth {
    Q_OBJECT
public:
    struct Services {
        const Clock& clock;
        SecretStore& secrets;
        // The data directory the file lives in.
        QString directory;
    };

    struct ImportError {
        enum class Kind { invalid, unreadable };
        Kind kind = Kind::unreadable;
        // What made an `invalid` file fail.
        CustomWidgetIssue issue;

        // The heading and the sentence a person reads.
        static QString title();
        QString message() const;
    };

    // Loads the file.
    explicit CustomWidgetStore(Services services, QObject* parent = nullptr);

    static QString fileName() { return QStringLiteral("custom-widgets.json"); }
    // The keychain entry of one widget's request headers.
    static QString secretKey(const QUuid& id);

    const QList<CustomWidgetDefinition>& widgets() const { return m_widgets; }
    // False when the file exists and could not be read; it has been set aside then.
    bool isHealthy() const override { return m_healthy; }
    const QString& filePath() const { return m_path; }

    // "custom." and a UUID of a widget in the store, else nullopt.
    std::optional<CustomWidgetDefinition> definition(QStringView kind) const;
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override;
    QList<WidgetDefinition> widgetDefinitions() const override;
    static WidgetDefinition makeWidgetDefinition(const CustomWidgetDefinition& definition);

    // Writes the file atomically; false (logged) when that failed, the widgets in memory stay.
    bool save();
    // Adds or replaces by id, cleaned first; an unchanged widget writes nothing.
    void update(const CustomWidgetDefinition& definition);
    void remove(const QUuid& id);
    // A copy with a fresh id and a free "… copy" name, appended; nullopt for an unknown id.
    std::optional<CustomWidgetDefinition> duplicate(const QUuid& id);
    // Reads a ".twkwidget" file and adds it with a fresh id, so a file opened twice gives two.
    std::variant<CustomWidgetDefinition, ImportError> importWidget(const QString& path);

    // "Name copy", else "Name copy 2", "Name copy 3"… whichever is not in `taken`.
    static QString nextCopyName(const QString& name, const QSet<QString>& taken);
    // The file's text without request headers, written atomically.
    static AtomicFile::Result exportWidget(const CustomWidgetDefinition& definition,
                                           const QString& path);
    // What a person is told before an export that leaves headers out.
    static QString headersDroppedMessage();

Q_SIGNALS:
    // Any change to `widgets`, the arrival of headers from the keychain included.
    void widgetsChanged();
    // A widget went; its fetch state should go with it.
    void widgetRemoved(const QString& kind);

private:
    void load();
    void readSecrets();
    void storeSecrets();

    const Clock& m_clock;
    SecretStore& m_secrets;
    QString m_path;
    QList<CustomWidgetDefinition> m_widgets;
    bool m_healthy = true;
    // False when something other than a regular file stands at the path.
    bool m_writable = true;
    // What the keychain holds per widget, as far as this store knows.
    QHash<QUuid, QString> m_storedSecrets;
    // Widgets whose headers are still being read; their entries are left alone until then.
    QSet<QUuid> m_pendingSecrets;
    mutable QHash<QString, WidgetDefinition> m_definitionCache;
};

} // namespace tw
