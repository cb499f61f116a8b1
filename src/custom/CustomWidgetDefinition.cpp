#include "custom/CustomWidgetDefinition.h"

#include "custom/CustomTokens.h"
#include "custom/CustomWidgetDefinitionDecoding.h"
#include "model/JsonCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

#include <algorithm>

namespace tw {

namespace {

std::optional<QList<CustomSource>> decodeSources(const QJsonArray& array) {
    QList<CustomSource> sources;
    for (const QJsonValue& member : array) {
        std::optional<CustomSource> source = CustomSource::fromJson(member);
        if (!source) {
            return std::nullopt;
        }
        if (sources.size() < CustomDecoding::maximumSources) {
            sources.append(std::move(*source));
        }
    }
    return sources;
}

CustomSource withoutHeaders(CustomSource source) {
    source.headers.reset();
    return source;
}

} // namespace

std::optional<CustomWidgetDefinition> CustomWidgetDefinition::decode(const QByteArray& json) {
    if (json.size() > CustomDecoding::maximumDocumentBytes) {
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        return std::nullopt;
    }
    return fromJson(document.object());
}

std::optional<CustomWidgetDefinition> CustomWidgetDefinition::decode(const QString& json) {
    return decode(json.toUtf8());
}

std::optional<CustomWidgetDefinition> CustomWidgetDefinition::fromJson(const QJsonObject& json) {
    CustomDecoding::FieldReader read(json);
    CustomWidgetDefinition definition;
    definition.schema = read.integer(QLatin1String("schema")).value_or(currentSchema);
    if (const std::optional<QUuid> id = read.uuid(QLatin1String("id"))) {
        definition.id = *id;
    }
    definition.name = read.string(QLatin1String("name")).value_or(QString());
    definition.symbol = read.string(QLatin1String("symbol")).value_or(definition.symbol);
    definition.accent = read.string(QLatin1String("accent"));
    definition.link = read.string(QLatin1String("link"));
    const QJsonArray sizes = read.array(QLatin1String("sizes")).value_or(QJsonArray());
    const std::optional<QJsonObject> source = read.object(QLatin1String("source"));
    const std::optional<QJsonArray> sources = read.array(QLatin1String("sources"));
    const QJsonArray rows = read.array(QLatin1String("rows")).value_or(QJsonArray());
    if (read.failed()) {
        return std::nullopt;
    }

    for (const QJsonValue& size : sizes) {
        if (!size.isString()) {
            return std::nullopt;
        }
        const std::optional<WidgetSize> known = widgetSizeFromRawValue(size.toString());
        if (known && definition.sizes.size() < CustomDecoding::maximumSizes) {
            definition.sizes.append(*known);
        }
    }
    if (source) {
        definition.source = CustomSource::fromJson(*source);
        if (!definition.source) {
            return std::nullopt;
        }
    }
    if (sources) {
        definition.extraSources = decodeSources(*sources);
        if (!definition.extraSources) {
            return std::nullopt;
        }
        if (definition.extraSources->isEmpty()) {
            definition.extraSources.reset();
        }
    }
    for (const QJsonValue& member : rows) {
        std::optional<CustomRow> row = CustomRow::fromJson(member);
        if (!row) {
            return std::nullopt;
        }
        if (definition.rows.size() < CustomDecoding::maximumRows) {
            definition.rows.append(std::move(*row));
        }
    }
    return definition;
}

QJsonObject CustomWidgetDefinition::toJson(Secrets secrets) const {
    const auto encodeSource = [secrets](const CustomSource& one) {
        return (secrets == Secrets::included ? one : withoutHeaders(one)).toJson();
    };
    QJsonArray sizeArray;
    for (WidgetSize size : sizes) {
        sizeArray.append(rawValue(size));
    }
    QJsonArray rowArray;
    for (const CustomRow& row : rows) {
        rowArray.append(row.toJson());
    }
    QJsonObject json{
        {QLatin1String("schema"), schema},   {QLatin1String("id"), JsonCoding::encodeUuid(id)},
        {QLatin1String("name"), name},       {QLatin1String("symbol"), symbol},
        {QLatin1String("sizes"), sizeArray}, {QLatin1String("rows"), rowArray}};
    if (accent) {
        json.insert(QLatin1String("accent"), *accent);
    }
    if (source) {
        json.insert(QLatin1String("source"), encodeSource(*source));
    }
    if (extraSources) {
        QJsonArray array;
        for (const CustomSource& extra : *extraSources) {
            array.append(encodeSource(extra));
        }
        json.insert(QLatin1String("sources"), array);
    }
    if (link && !link->isEmpty()) {
        json.insert(QLatin1String("link"), *link);
    }
    return json;
}

QString CustomWidgetDefinition::fileJSON(Secrets secrets) const {
    // QJsonObject keeps its keys sorted and QJsonDocument leaves "/" unescaped.
    const QByteArray bytes = QJsonDocument(toJson(secrets)).toJson(QJsonDocument::Indented);
    if (bytes.isEmpty()) {
        return QStringLiteral("{}");
    }
    return QString::fromUtf8(bytes);
}

QString CustomWidgetDefinition::exportFilename() const {
    QString kept;
    for (const char32_t c : name.toUcs4()) {
        // Marks stay with their letters: a decomposed "é" keeps its accent.
        if (QChar::isLetterOrNumber(c) || QChar::isMark(c) || c == U' ') {
            kept.append(QString::fromUcs4(&c, 1));
        }
    }
    while (kept.startsWith(QLatin1Char(' '))) {
        kept.remove(0, 1);
    }
    while (kept.endsWith(QLatin1Char(' '))) {
        kept.chop(1);
    }
    if (kept.isEmpty()) {
        kept = QStringLiteral("widget");
    }
    return kept + QLatin1Char('.') + QLatin1String(fileExtension);
}

QString CustomWidgetDefinition::kind() const {
    return QLatin1String(kindPrefix) + JsonCoding::encodeUuid(id);
}

bool CustomWidgetDefinition::isCustom(QStringView kind) {
    return kind.startsWith(QLatin1String(kindPrefix));
}

std::optional<QUuid> CustomWidgetDefinition::idFromKind(QStringView kind) {
    if (!isCustom(kind)) {
        return std::nullopt;
    }
    return CustomDecoding::parseUuid(kind.mid(QLatin1String(kindPrefix).size()));
}

QList<CustomSource> CustomWidgetDefinition::allSources() const {
    QList<CustomSource> all;
    if (source) {
        all.append(*source);
    }
    if (extraSources) {
        all.append(*extraSources);
    }
    return all;
}

WidgetSize CustomWidgetDefinition::largestSize() const {
    if (sizes.isEmpty()) {
        return WidgetSize::large;
    }
    // max_element keeps the first of equals.
    return *std::max_element(sizes.begin(), sizes.end(), [](WidgetSize a, WidgetSize b) {
        return cellCount(a) < cellCount(b);
    });
}

bool CustomWidgetDefinition::hasHeaders() const {
    const QList<CustomSource> all = allSources();
    return std::any_of(all.begin(), all.end(),
                       [](const CustomSource& s) { return s.headers && !s.headers->isEmpty(); });
}

bool CustomWidgetDefinition::needsSystemValues() const {
    static const QStringList heads{QStringLiteral("battery"), QStringLiteral("cpu"),
                                   QStringLiteral("ram"), QStringLiteral("disk")};
    for (const CustomRow& row : rows) {
        for (const CustomElement& element : row.elements) {
            for (const auto& match : CustomTokens::scan(element.text.value_or(QString()))) {
                for (const QString& head : heads) {
                    if (match.token == head ||
                        (match.token.startsWith(head) && match.token.mid(head.size(), 1) == u".")) {
                        return true;
                    }
                }
            }
        }
    }
    return false;
}

} // namespace tw
