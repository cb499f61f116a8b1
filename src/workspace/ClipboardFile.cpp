#include "workspace/ClipboardFile.h"

#include "workspace/ClipboardHistory.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace tw::ClipboardFile {

namespace {

const QString kClippings = QStringLiteral("clippings");
const QString kText = QStringLiteral("text");
const QString kImage = QStringLiteral("image");
const QString kCopied = QStringLiteral("copied");

bool isDigest(const QString& hex) {
    return hex.size() == 40 && std::all_of(hex.cbegin(), hex.cend(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
           });
}

} // namespace

QString imageName(const Clipping& clipping) {
    return QString::fromLatin1(clipping.digest.toHex()) + QStringLiteral(".png");
}

QByteArray encode(const QList<Clipping>& clippings) {
    QJsonArray list;
    for (const Clipping& clipping : clippings) {
        QJsonObject entry{{kCopied, clipping.copiedAt.toUTC().toString(Qt::ISODateWithMs)}};
        if (clipping.kind == Clipping::Kind::text) {
            entry.insert(kText, clipping.text);
        } else {
            entry.insert(kImage, QString::fromLatin1(clipping.digest.toHex()));
        }
        list.append(entry);
    }
    return QJsonDocument(QJsonObject{{kClippings, list}}).toJson(QJsonDocument::Indented);
}

QList<Clipping> decode(const QByteArray& bytes) {
    const QJsonArray list = QJsonDocument::fromJson(bytes).object().value(kClippings).toArray();
    QList<Clipping> clippings;
    for (const QJsonValue& value : list) {
        if (clippings.size() >= ClipboardHistory::most) {
            break;
        }
        const QJsonObject entry = value.toObject();
        const QDateTime copied =
            QDateTime::fromString(entry.value(kCopied).toString(), Qt::ISODateWithMs);
        if (!copied.isValid()) {
            continue;
        }
        const QJsonValue text = entry.value(kText);
        const QString image = entry.value(kImage).toString();
        if (text.isString() && !text.toString().trimmed().isEmpty()) {
            clippings.append(
                Clipping::ofText(text.toString().left(ClipboardHistory::longestText), copied));
        } else if (isDigest(image)) {
            Clipping clipping;
            clipping.kind = Clipping::Kind::image;
            clipping.copiedAt = copied;
            clipping.digest = QByteArray::fromHex(image.toLatin1());
            clippings.append(clipping);
        }
    }
    return clippings;
}

} // namespace tw::ClipboardFile
