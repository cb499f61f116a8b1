#include "backup/Board.h"

#include "model/JsonCoding.h"
#include "platform/DataFile.h"
#include "text/L.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

std::optional<double> finite(const QJsonValue& value) {
    const std::optional<double> number = JsonCoding::decodeDouble(value);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<Board::Item> decodeItem(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    const QJsonValue kind = object.value(QLatin1String("kind"));
    const std::optional<WidgetSize> size =
        widgetSizeFromRawValue(object.value(QLatin1String("size")).toString());
    if (!kind.isString() || kind.toString().isEmpty() || !size) {
        return std::nullopt;
    }
    Board::Item item{.kind = kind.toString(), .size = *size, .dx = 0, .dy = 0, .settings = {}};
    item.dx = finite(object.value(QLatin1String("dx"))).value_or(0);
    item.dy = finite(object.value(QLatin1String("dy"))).value_or(0);
    const QJsonObject settings = object.value(QLatin1String("settings")).toObject();
    if (!settings.isEmpty()) {
        WidgetSettings kept;
        for (auto it = settings.constBegin(); it != settings.constEnd(); ++it) {
            if (it.value().isString()) {
                kept.insert(it.key(), it.value().toString());
            }
        }
        if (!kept.isEmpty()) {
            item.settings = kept;
        }
    }
    return item;
}

QJsonObject encodeItem(const Board::Item& item) {
    QJsonObject object{{QStringLiteral("kind"), item.kind},
                       {QStringLiteral("size"), rawValue(item.size)},
                       {QStringLiteral("dx"), item.dx},
                       {QStringLiteral("dy"), item.dy}};
    if (item.settings) {
        QJsonObject settings;
        for (auto it = item.settings->cbegin(); it != item.settings->cend(); ++it) {
            settings.insert(it.key(), it.value());
        }
        object.insert(QStringLiteral("settings"), settings);
    }
    return object;
}

} // namespace

QString Board::message(Error error) {
    switch (error) {
    case Error::unreadable:
        return L("backup.error.unreadable", QStringLiteral("The file could not be read."));
    case Error::wrongFormat:
        return L("share.error.wrong", QStringLiteral("This is not a Tarnwick board."));
    case Error::newer:
        return L("share.error.newer",
                 QStringLiteral("This board was made with a newer version. Update the app first."));
    case Error::empty:
        return L("share.error.empty",
                 QStringLiteral("There is nothing on the desktop to share yet."));
    }
    return {};
}

QByteArray Board::encode() const {
    QJsonArray list;
    for (const Item& item : items) {
        list.append(encodeItem(item));
    }
    QJsonObject root{{QStringLiteral("format"), format},
                     {QStringLiteral("app"), app},
                     {QStringLiteral("appVersion"), appVersion},
                     {QStringLiteral("name"), name},
                     {QStringLiteral("createdAt"), createdAt.toUTC().toString(Qt::ISODate)},
                     {QStringLiteral("width"), width},
                     {QStringLiteral("height"), height},
                     {QStringLiteral("items"), list}};
    if (look) {
        QJsonObject object;
        if (look->palette) {
            object.insert(QStringLiteral("palette"), *look->palette);
        }
        if (look->glassStyle) {
            object.insert(QStringLiteral("glassStyle"), *look->glassStyle);
        }
        if (look->glassStrength) {
            object.insert(QStringLiteral("glassStrength"), *look->glassStrength);
        }
        root.insert(QStringLiteral("look"), object);
    }
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

Board::Decoded Board::decode(const QByteArray& bytes) {
    if (bytes.size() >= maxBytes) {
        return Error::wrongFormat;
    }
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    const QJsonObject root = document.object();
    const QJsonValue format = root.value(QLatin1String("format"));
    if (!document.isObject() || !format.isDouble() ||
        !root.value(QLatin1String("items")).isArray()) {
        return Error::wrongFormat;
    }
    if (format.toDouble() >= currentFormat + 1) {
        return Error::newer;
    }
    if (format.toDouble() < currentFormat) {
        return Error::wrongFormat;
    }
    Board board;
    board.app = root.value(QLatin1String("app")).toString(appName);
    board.appVersion = root.value(QLatin1String("appVersion")).toString();
    // One line of sensible length: it stands in a dialog's title.
    board.name = root.value(QLatin1String("name")).toString().simplified().left(maxNameLength);
    board.createdAt =
        QDateTime::fromString(root.value(QLatin1String("createdAt")).toString(), Qt::ISODate)
            .toUTC();
    board.width = std::max(0.0, finite(root.value(QLatin1String("width"))).value_or(0));
    board.height = std::max(0.0, finite(root.value(QLatin1String("height"))).value_or(0));
    for (const QJsonValue& value : root.value(QLatin1String("items")).toArray()) {
        if (std::optional<Item> item = decodeItem(value)) {
            board.items.append(*item);
        }
    }
    if (root.value(QLatin1String("look")).isObject()) {
        const QJsonObject object = root.value(QLatin1String("look")).toObject();
        Look look;
        if (object.value(QLatin1String("palette")).isString()) {
            look.palette = object.value(QLatin1String("palette")).toString();
        }
        if (object.value(QLatin1String("glassStyle")).isString()) {
            look.glassStyle = object.value(QLatin1String("glassStyle")).toString();
        }
        if (const std::optional<double> strength =
                finite(object.value(QLatin1String("glassStrength")))) {
            look.glassStrength = std::clamp(*strength, 0.0, 1.0);
        }
        board.look = look;
    }
    return board;
}

Board::Decoded Board::read(const QString& path) {
    const DataFile::Contents contents = DataFile::read(path, maxBytes);
    switch (contents.status) {
    case DataFile::Status::regular:
        return decode(contents.bytes);
    case DataFile::Status::tooLarge:
        return Error::wrongFormat;
    default:
        return Error::unreadable;
    }
}

} // namespace tw
