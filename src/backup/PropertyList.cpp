#include "backup/PropertyList.h"

#include <QDateTime>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace tw {

namespace {

void writeValue(QXmlStreamWriter& xml, const QVariant& value);

void writeMap(QXmlStreamWriter& xml, const QVariantMap& map) {
    xml.writeStartElement(QStringLiteral("dict"));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        xml.writeTextElement(QStringLiteral("key"), it.key());
        writeValue(xml, it.value());
    }
    xml.writeEndElement();
}

void writeValue(QXmlStreamWriter& xml, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        xml.writeEmptyElement(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
        return;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        xml.writeTextElement(QStringLiteral("integer"), QString::number(value.toLongLong()));
        return;
    case QMetaType::Double:
    case QMetaType::Float:
        xml.writeTextElement(QStringLiteral("real"), QString::number(value.toDouble(), 'g', 17));
        return;
    case QMetaType::QByteArray:
        xml.writeTextElement(QStringLiteral("data"),
                             QString::fromLatin1(value.toByteArray().toBase64()));
        return;
    case QMetaType::QDateTime:
        xml.writeTextElement(QStringLiteral("date"),
                             value.toDateTime().toUTC().toString(Qt::ISODate));
        return;
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        xml.writeStartElement(QStringLiteral("array"));
        for (const QVariant& item : value.toList()) {
            writeValue(xml, item);
        }
        xml.writeEndElement();
        return;
    case QMetaType::QVariantMap:
        writeMap(xml, value.toMap());
        return;
    default:
        xml.writeTextElement(QStringLiteral("string"), value.toString());
        return;
    }
}

class Reader {
public:
    explicit Reader(const QByteArray& bytes)
        : m_xml(bytes) {}

    std::optional<QVariantMap> document() {
        if (!nextElement() || m_xml.name() != QLatin1String("plist") || !nextElement() ||
            m_xml.name() != QLatin1String("dict")) {
            return std::nullopt;
        }
        std::optional<QVariant> top = value(0);
        if (!top || m_xml.hasError()) {
            return std::nullopt;
        }
        return top->toMap();
    }

private:
    // The next start element; false at an end element, the end or an error.
    bool nextElement() {
        while (!m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
            case QXmlStreamReader::Invalid:
                return false;
            default:
                break;
            }
        }
        return false;
    }

    std::optional<QString> text() {
        const QString content = m_xml.readElementText();
        if (m_xml.hasError()) {
            return std::nullopt;
        }
        return content;
    }

    // The value whose start element the reader stands on.
    std::optional<QVariant> value(int depth) {
        if (depth > PropertyList::maxDepth) {
            return std::nullopt;
        }
        const QStringView name = m_xml.name();
        if (name == QLatin1String("dict")) {
            QVariantMap map;
            while (nextElement()) {
                if (m_xml.name() != QLatin1String("key")) {
                    return std::nullopt;
                }
                const std::optional<QString> key = text();
                if (!key || !nextElement()) {
                    return std::nullopt;
                }
                const std::optional<QVariant> item = value(depth + 1);
                if (!item) {
                    return std::nullopt;
                }
                map.insert(*key, *item);
            }
            return m_xml.hasError() ? std::nullopt : std::optional<QVariant>(map);
        }
        if (name == QLatin1String("array")) {
            QVariantList list;
            while (nextElement()) {
                const std::optional<QVariant> item = value(depth + 1);
                if (!item) {
                    return std::nullopt;
                }
                list.append(*item);
            }
            return m_xml.hasError() ? std::nullopt : std::optional<QVariant>(list);
        }
        if (name == QLatin1String("true") || name == QLatin1String("false")) {
            const bool truth = name == QLatin1String("true");
            if (!text()) {
                return std::nullopt;
            }
            return QVariant(truth);
        }
        const QString kind = name.toString();
        const std::optional<QString> content = text();
        if (!content) {
            return std::nullopt;
        }
        bool ok = true;
        if (kind == QLatin1String("string")) {
            return QVariant(*content);
        }
        if (kind == QLatin1String("integer")) {
            const qlonglong number = content->trimmed().toLongLong(&ok);
            return ok ? std::optional<QVariant>(number) : std::nullopt;
        }
        if (kind == QLatin1String("real")) {
            const double number = content->trimmed().toDouble(&ok);
            return ok ? std::optional<QVariant>(number) : std::nullopt;
        }
        if (kind == QLatin1String("data")) {
            const auto decoded = QByteArray::fromBase64Encoding(
                content->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
            return decoded ? std::optional<QVariant>(*decoded) : std::nullopt;
        }
        if (kind == QLatin1String("date")) {
            const QDateTime date = QDateTime::fromString(content->trimmed(), Qt::ISODate);
            return date.isValid() ? std::optional<QVariant>(date) : std::nullopt;
        }
        return std::nullopt;
    }

    QXmlStreamReader m_xml;
};

} // namespace

QByteArray PropertyList::encode(const QVariantMap& values) {
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("plist"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writeMap(xml, values);
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

std::optional<QVariantMap> PropertyList::decode(const QByteArray& bytes) {
    return Reader(bytes).document();
}

} // namespace tw
