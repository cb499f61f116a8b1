#include "live/WebMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace tw::WebMessage {

namespace {

constexpr qsizetype maxText = 512;

QByteArray line(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QJsonObject> object(const QByteArray& line) {
    if (line.size() > maxLine) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(line.trimmed());
    if (!document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

// Web pages only: a helper told to open a local file or a script address would show what the
// tile's settings have no business showing.
std::optional<QUrl> webAddress(const QJsonValue& value) {
    const QUrl url(value.toString().left(maxLine), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        return std::nullopt;
    }
    // In its encoded form, so that what is sent on reads back as the same address.
    return QUrl::fromEncoded(url.toEncoded(), QUrl::StrictMode);
}

double finite(const QJsonValue& value, double fallback) {
    const double number = value.toDouble(fallback);
    return std::isfinite(number) ? number : fallback;
}

} // namespace

QByteArray encode(const WebCommand& command) {
    QJsonObject object;
    switch (command.kind) {
    case WebCommand::Kind::load:
        object.insert(QStringLiteral("load"), command.url.toString(QUrl::FullyEncoded));
        object.insert(QStringLiteral("width"), command.pixels.width());
        object.insert(QStringLiteral("height"), command.pixels.height());
        object.insert(QStringLiteral("zoom"), command.zoom);
        object.insert(QStringLiteral("scroll"), command.scroll);
        break;
    case WebCommand::Kind::reload:
        object.insert(QStringLiteral("reload"), true);
        break;
    case WebCommand::Kind::click:
        object.insert(QStringLiteral("click"), QJsonArray{command.point.x(), command.point.y()});
        break;
    case WebCommand::Kind::scroll:
        object.insert(QStringLiteral("scroll"), command.scroll);
        break;
    }
    return line(object);
}

QByteArray encode(const WebEvent& event) {
    QJsonObject object;
    switch (event.kind) {
    case WebEvent::Kind::loading:
        object.insert(QStringLiteral("event"), QStringLiteral("loading"));
        break;
    case WebEvent::Kind::frame:
        object.insert(QStringLiteral("event"), QStringLiteral("frame"));
        object.insert(QStringLiteral("title"), event.title.left(maxText));
        object.insert(QStringLiteral("url"), event.url.toString(QUrl::FullyEncoded).left(maxText));
        break;
    case WebEvent::Kind::failed:
        object.insert(QStringLiteral("event"), QStringLiteral("failed"));
        object.insert(QStringLiteral("why"), event.why.left(maxText));
        break;
    }
    return line(object);
}

std::optional<WebCommand> decodeCommand(const QByteArray& text) {
    const std::optional<QJsonObject> found = object(text);
    if (!found) {
        return std::nullopt;
    }
    const QJsonObject& o = *found;
    WebCommand command;
    if (o.contains(QLatin1String("load"))) {
        const std::optional<QUrl> url = webAddress(o.value(QLatin1String("load")));
        const int width = o.value(QLatin1String("width")).toInt();
        const int height = o.value(QLatin1String("height")).toInt();
        if (!url || width < 1 || height < 1 || width > maxSide || height > maxSide) {
            return std::nullopt;
        }
        command.kind = WebCommand::Kind::load;
        command.url = *url;
        command.pixels = QSize(width, height);
        command.zoom = std::clamp(finite(o.value(QLatin1String("zoom")), 1.0), minZoom, maxZoom);
        command.scroll = std::max(0, o.value(QLatin1String("scroll")).toInt());
        return command;
    }
    if (o.value(QLatin1String("reload")).toBool()) {
        command.kind = WebCommand::Kind::reload;
        return command;
    }
    if (const QJsonArray at = o.value(QLatin1String("click")).toArray(); at.size() == 2) {
        const double x = finite(at.at(0), -1);
        const double y = finite(at.at(1), -1);
        if (x < 0 || y < 0 || x > maxSide || y > maxSide) {
            return std::nullopt;
        }
        command.kind = WebCommand::Kind::click;
        command.point = QPointF(x, y);
        return command;
    }
    if (o.value(QLatin1String("scroll")).isDouble()) {
        command.kind = WebCommand::Kind::scroll;
        command.scroll = std::max(0, o.value(QLatin1String("scroll")).toInt());
        return command;
    }
    return std::nullopt;
}

std::optional<WebEvent> decodeEvent(const QByteArray& text) {
    const std::optional<QJsonObject> found = object(text);
    if (!found) {
        return std::nullopt;
    }
    const QString kind = found->value(QLatin1String("event")).toString();
    WebEvent event;
    if (kind == QLatin1String("loading")) {
        event.kind = WebEvent::Kind::loading;
    } else if (kind == QLatin1String("frame")) {
        event.kind = WebEvent::Kind::frame;
        event.title = found->value(QLatin1String("title")).toString().left(maxText).simplified();
        event.url = webAddress(found->value(QLatin1String("url"))).value_or(QUrl());
    } else if (kind == QLatin1String("failed")) {
        event.kind = WebEvent::Kind::failed;
        event.why = found->value(QLatin1String("why")).toString().left(maxText).simplified();
    } else {
        return std::nullopt;
    }
    return event;
}

} // namespace tw::WebMessage
