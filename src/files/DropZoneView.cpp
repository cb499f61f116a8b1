#include "files/DropZoneView.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tw {

namespace {

constexpr qsizetype maximumItems = 12;

} // namespace

QList<DroppedItem> DroppedItem::listFromJson(const QString& text) {
    QList<DroppedItem> items;
    const QJsonArray array = QJsonDocument::fromJson(text.toUtf8()).array();
    for (const QJsonValue& value : array) {
        const QJsonObject object = value.toObject();
        DroppedItem item{
            .name = object.value(QStringLiteral("name")).toString(),
            .path = object.value(QStringLiteral("path")).toString(),
            .at = QDateTime::fromString(object.value(QStringLiteral("at")).toString(), Qt::ISODate),
            .isFolder = object.value(QStringLiteral("folder")).toBool()};
        if (!item.name.isEmpty() && !item.path.isEmpty() && items.size() < maximumItems) {
            items.append(item);
        }
    }
    return items;
}

QString DroppedItem::listToJson(const QList<DroppedItem>& items) {
    QJsonArray array;
    for (const DroppedItem& item : items.mid(0, maximumItems)) {
        QJsonObject object{{QStringLiteral("name"), item.name},
                           {QStringLiteral("path"), item.path},
                           {QStringLiteral("at"), item.at.toString(Qt::ISODate)}};
        if (item.isFolder) {
            object.insert(QStringLiteral("folder"), true);
        }
        array.append(object);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

} // namespace tw
