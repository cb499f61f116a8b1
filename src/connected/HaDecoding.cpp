#include "connected/HaDecoding.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace tw {

namespace {

constexpr int maxText = 120;

QString text(const QJsonValue& value) {
    if (value.isDouble()) {
        return QString::number(value.toDouble());
    }
    return value.isString() ? value.toString().left(maxText).simplified() : QString();
}

} // namespace

std::optional<HaEntity> decodeHaEntity(const QJsonObject& state) {
    HaEntity entity;
    entity.id = state.value(u"entity_id").toString();
    if (!HaEntity::isEntityId(entity.id)) {
        return std::nullopt;
    }
    const QJsonObject attributes = state.value(u"attributes").toObject();
    entity.name = text(attributes.value(u"friendly_name"));
    if (entity.name.isEmpty()) {
        entity.name = entity.id.section(QLatin1Char('.'), 1).replace(QLatin1Char('_'), u' ');
    }
    entity.state = text(state.value(u"state"));
    entity.unit = text(attributes.value(u"unit_of_measurement")).left(12);
    entity.deviceClass = text(attributes.value(u"device_class")).left(40);
    const double brightness = attributes.value(u"brightness").toDouble(-1);
    if (std::isfinite(brightness) && brightness >= 0 && brightness <= 255) {
        entity.brightness = static_cast<int>(std::lround(brightness));
    }
    entity.changed = QDateTime::fromString(state.value(u"last_changed").toString(), Qt::ISODate);
    return entity;
}

std::optional<QList<HaEntity>> decodeHaStates(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<HaEntity> entities;
    for (const QJsonValue& value : document.array()) {
        if (entities.size() >= maxHaEntities) {
            break;
        }
        if (std::optional<HaEntity> entity = decodeHaEntity(value.toObject())) {
            entities.append(*entity);
        }
    }
    return entities;
}

HaMessage decodeHaMessage(const QByteArray& frame) {
    HaMessage message;
    const QJsonObject object = QJsonDocument::fromJson(frame).object();
    const QString type = object.value(u"type").toString();
    message.id = object.value(u"id").toInt();
    if (type == u"auth_required") {
        message.type = HaMessage::Type::authRequired;
    } else if (type == u"auth_ok") {
        message.type = HaMessage::Type::authOk;
    } else if (type == u"auth_invalid") {
        message.type = HaMessage::Type::authInvalid;
        message.message = text(object.value(u"message"));
    } else if (type == u"result") {
        message.type = HaMessage::Type::result;
        message.success = object.value(u"success").toBool();
        message.message = text(object.value(u"error").toObject().value(u"message"));
    } else if (type == u"event") {
        const QJsonObject event = object.value(u"event").toObject();
        const QJsonObject data = event.value(u"data").toObject();
        if (event.value(u"event_type").toString() == u"state_changed") {
            const QString id = data.value(u"entity_id").toString();
            const QJsonValue state = data.value(u"new_state");
            if (state.isObject()) {
                message.entity = decodeHaEntity(state.toObject());
            } else if (HaEntity::isEntityId(id)) {
                message.entity = HaEntity{.id = id,
                                          .name = {},
                                          .state = {},
                                          .unit = {},
                                          .deviceClass = {},
                                          .brightness = {},
                                          .changed = {}};
                message.removed = true;
            }
            message.type = message.entity ? HaMessage::Type::stateChanged : HaMessage::Type::other;
        }
    }
    return message;
}

} // namespace tw
