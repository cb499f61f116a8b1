#include "custom/CustomWidgetStore.h"

#include "custom/CustomWidgetDocument.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/SecretStore.h"
#include "text/L.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcCustomStore, "CustomWidgetStore")

namespace {

// A share file is one definition; the decoder refuses anything larger anyway.
constexpr qint64 kMaxShareFile = 2 * 1024 * 1024;

// The headers of every source in `allSources()` order, null where a source has none; empty
// when no source has any.
QString secretText(const CustomWidgetDefinition& widget) {
    if (!widget.hasHeaders()) {
        return {};
    }
    QJsonArray array;
    for (const CustomSource& source : widget.allSources()) {
        if (!source.headers) {
            array.append(QJsonValue::Null);
            continue;
        }
        QJsonObject headers;
        for (auto it = source.headers->constBegin(); it != source.headers->constEnd(); ++it) {
            headers.insert(it.key(), it.value());
        }
        array.append(headers);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

// Puts the kept headers back on sources that have none of their own by now.
void applySecret(CustomWidgetDefinition& widget, const QString& text) {
    const QJsonArray array = QJsonDocument::fromJson(text.toUtf8()).array();
    const auto apply = [&array](CustomSource& source, qsizetype index) {
        const QJsonObject headers = array.at(index).toObject();
        if (source.headers || headers.isEmpty()) {
            return;
        }
        QMap<QString, QString> map;
        for (auto it = headers.constBegin(); it != headers.constEnd(); ++it) {
            map.insert(it.key(), it.value().toString());
        }
        source.headers = map;
    };
    qsizetype index = 0;
    if (widget.source) {
        apply(*widget.source, index++);
    }
    if (widget.extraSources) {
        for (CustomSource& extra : *widget.extraSources) {
            apply(extra, index++);
        }
    }
}

// Row and element ids are made afresh at every reading and clean-up; they are no change.
bool sameContent(const CustomWidgetDefinition& a, const CustomWidgetDefinition& b) {
    constexpr auto included = CustomWidgetDefinition::Secrets::included;
    return a.toJson(included) == b.toJson(included);
}

QSet<QString> names(const QList<CustomWidgetDefinition>& widgets) {
    QSet<QString> taken;
    for (const CustomWidgetDefinition& widget : widgets) {
        taken.insert(widget.name);
    }
    return taken;
}

} // namespace

QString CustomWidgetStore::ImportError::title() {
    return L("custom.import.failed", QStringLiteral("Couldn’t import that file"));
}

QString CustomWidgetStore::ImportError::message() const {
    if (kind == Kind::unreadable) {
        return L("custom.import.unreadable", QStringLiteral("The file couldn’t be read."));
    }
    return issue.message();
}

CustomWidgetStore::CustomWidgetStore(Services services, QObject* parent)
    : QObject(parent)
    , m_clock(services.clock)
    , m_secrets(services.secrets)
    , m_path(QDir(services.directory).filePath(fileName())) {
    load();
}

QString CustomWidgetStore::secretKey(const QUuid& id) {
    return QStringLiteral("custom-widget-") + id.toString(QUuid::WithoutBraces).toUpper();
}

void CustomWidgetStore::load() {
    const DataFile::Outcome outcome =
        DataFile::load(m_path, m_clock.now(), [this](const QByteArray& bytes) {
            std::optional<CustomWidgetDocument> document = CustomWidgetDocument::decode(bytes);
            if (!document) {
                return false;
            }
            m_widgets.clear();
            for (const CustomWidgetDefinition& widget : document->widgets) {
                m_widgets.append(widget.sanitized());
            }
            return true;
        });
    m_healthy = outcome == DataFile::Outcome::missing || outcome == DataFile::Outcome::loaded ||
                outcome == DataFile::Outcome::recovered;
    m_writable = outcome != DataFile::Outcome::leftAlone;
    if (!m_healthy) {
        qCWarning(lcCustomStore, "%s could not be read; custom widgets stay on the desktop",
                  qUtf8Printable(m_path));
    }
    readSecrets();
}

void CustomWidgetStore::readSecrets() {
    for (const CustomWidgetDefinition& widget : std::as_const(m_widgets)) {
        m_pendingSecrets.insert(widget.id);
    }
    const QList<CustomWidgetDefinition> widgets = m_widgets;
    for (const CustomWidgetDefinition& widget : widgets) {
        const QUuid id = widget.id;
        m_secrets.read(secretKey(id), [this, id](std::optional<QString> text) {
            m_pendingSecrets.remove(id);
            if (!text) {
                return;
            }
            m_storedSecrets.insert(id, *text);
            for (CustomWidgetDefinition& kept : m_widgets) {
                if (kept.id == id) {
                    applySecret(kept, *text);
                    Q_EMIT widgetsChanged();
                    return;
                }
            }
        });
    }
}

void CustomWidgetStore::storeSecrets() {
    QSet<QUuid> present;
    for (const CustomWidgetDefinition& widget : std::as_const(m_widgets)) {
        present.insert(widget.id);
        if (m_pendingSecrets.contains(widget.id)) {
            continue;
        }
        const QString text = secretText(widget);
        if (text == m_storedSecrets.value(widget.id)) {
            continue;
        }
        if (text.isEmpty()) {
            m_secrets.remove(secretKey(widget.id));
            m_storedSecrets.remove(widget.id);
        } else {
            m_secrets.write(secretKey(widget.id), text);
            m_storedSecrets.insert(widget.id, text);
        }
    }
    for (const QUuid& id : m_storedSecrets.keys()) {
        if (!present.contains(id)) {
            m_secrets.remove(secretKey(id));
            m_storedSecrets.remove(id);
        }
    }
}

bool CustomWidgetStore::save() {
    storeSecrets();
    if (!m_writable) {
        qCWarning(lcCustomStore, "not writing %s: something else stands there",
                  qUtf8Printable(m_path));
        return false;
    }
    CustomWidgetDocument document;
    document.widgets = m_widgets;
    const AtomicFile::Result written = AtomicFile::write(m_path, document.encode());
    if (!written) {
        qCWarning(lcCustomStore, "cannot save: %s", qUtf8Printable(written.error));
    }
    return written.ok();
}

std::optional<CustomWidgetDefinition> CustomWidgetStore::definition(QStringView kind) const {
    const std::optional<QUuid> id = CustomWidgetDefinition::idFromKind(kind);
    if (!id) {
        return std::nullopt;
    }
    for (const CustomWidgetDefinition& widget : m_widgets) {
        if (widget.id == *id) {
            return widget;
        }
    }
    return std::nullopt;
}

std::optional<WidgetDefinition> CustomWidgetStore::widgetDefinition(const QString& kind) const {
    const auto cached = m_definitionCache.constFind(kind);
    if (cached != m_definitionCache.cend()) {
        return cached.value();
    }
    const std::optional<CustomWidgetDefinition> found = definition(kind);
    if (!found) {
        return std::nullopt;
    }
    const WidgetDefinition made = makeWidgetDefinition(*found);
    m_definitionCache.insert(kind, made);
    return made;
}

QList<WidgetDefinition> CustomWidgetStore::widgetDefinitions() const {
    QList<WidgetDefinition> all;
    for (const CustomWidgetDefinition& widget : m_widgets) {
        all.append(*widgetDefinition(widget.kind()));
    }
    return all;
}

WidgetDefinition CustomWidgetStore::makeWidgetDefinition(const CustomWidgetDefinition& definition) {
    WidgetDefinition made;
    WidgetMetadata& metadata = made.metadata;
    metadata.kind = definition.kind();
    metadata.displayName = definition.name;
    metadata.symbol = definition.symbol;
    metadata.allowedSizes = definition.sizes;
    // The author lists the size they mean first.
    metadata.defaultSize = definition.sizes.value(0, definition.largestSize());
    if (metadata.allowedSizes.isEmpty()) {
        metadata.allowedSizes = {metadata.defaultSize};
    }
    // Time tokens move with the minute; fetched data repaints the tile when it arrives.
    metadata.refresh = RefreshCadence::seconds(60);
    return made;
}

void CustomWidgetStore::update(const CustomWidgetDefinition& definition) {
    const CustomWidgetDefinition clean = definition.sanitized();
    const auto found = std::find_if(m_widgets.begin(), m_widgets.end(),
                                    [&clean](const auto& widget) { return widget.id == clean.id; });
    if (found == m_widgets.end()) {
        m_widgets.append(clean);
    } else if (sameContent(*found, clean)) {
        return;
    } else {
        *found = clean;
    }
    m_pendingSecrets.remove(clean.id);
    m_definitionCache.remove(clean.kind());
    save();
    Q_EMIT widgetsChanged();
}

void CustomWidgetStore::remove(const QUuid& id) {
    const qsizetype removed =
        m_widgets.removeIf([&id](const CustomWidgetDefinition& widget) { return widget.id == id; });
    if (removed == 0) {
        return;
    }
    CustomWidgetDefinition gone;
    gone.id = id;
    m_pendingSecrets.remove(id);
    m_definitionCache.remove(gone.kind());
    save();
    Q_EMIT widgetRemoved(gone.kind());
    Q_EMIT widgetsChanged();
}

std::optional<CustomWidgetDefinition> CustomWidgetStore::duplicate(const QUuid& id) {
    for (const CustomWidgetDefinition& widget : std::as_const(m_widgets)) {
        if (widget.id != id) {
            continue;
        }
        CustomWidgetDefinition copy = widget;
        copy.id = QUuid::createUuid();
        copy.name = nextCopyName(widget.name, names(m_widgets));
        m_widgets.append(copy);
        save();
        Q_EMIT widgetsChanged();
        return copy;
    }
    return std::nullopt;
}

std::variant<CustomWidgetDefinition, CustomWidgetStore::ImportError>
CustomWidgetStore::importWidget(const QString& path) {
    const DataFile::Contents contents = DataFile::read(path, kMaxShareFile);
    if (contents.status != DataFile::Status::regular) {
        return ImportError{.kind = ImportError::Kind::unreadable, .issue = {}};
    }
    const std::optional<CustomWidgetDefinition> decoded =
        CustomWidgetDefinition::decode(contents.bytes);
    if (!decoded) {
        return ImportError{.kind = ImportError::Kind::invalid,
                           .issue = CustomWidgetIssue::of(CustomWidgetIssue::Kind::notJSON)};
    }
    for (const CustomWidgetIssue& issue : decoded->issues()) {
        if (issue.isBlocking()) {
            return ImportError{.kind = ImportError::Kind::invalid, .issue = issue};
        }
    }
    CustomWidgetDefinition imported = decoded->sanitized();
    imported.id = QUuid::createUuid();
    m_widgets.append(imported);
    save();
    Q_EMIT widgetsChanged();
    return imported;
}

QString CustomWidgetStore::nextCopyName(const QString& name, const QSet<QString>& taken) {
    const QString first = L("custom.copyName", QStringLiteral("%1 copy")).arg(name);
    if (!taken.contains(first)) {
        return first;
    }
    for (int number = 2;; ++number) {
        const QString next =
            L("custom.copyNameN", QStringLiteral("%1 copy %2")).arg(name, QString::number(number));
        if (!taken.contains(next)) {
            return next;
        }
    }
}

AtomicFile::Result CustomWidgetStore::exportWidget(const CustomWidgetDefinition& definition,
                                                   const QString& path) {
    return AtomicFile::write(
        path, definition.fileJSON(CustomWidgetDefinition::Secrets::omitted).toUtf8());
}

QString CustomWidgetStore::headersDroppedMessage() {
    return L("custom.export.headersDropped",
             QStringLiteral("Request headers are not saved into the file. Whoever opens it enters "
                            "their own."));
}

} // namespace tw
