#include "settings/StoredValue.h"

#include <QStringList>

#include <cmath>

namespace tw::StoredValue {

std::optional<bool> boolean(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return value.toDouble() != 0.0;
    case QMetaType::QString: {
        const QString text = value.toString().trimmed().toLower();
        if (text == QLatin1String("true") || text == QLatin1String("1")) {
            return true;
        }
        if (text == QLatin1String("false") || text == QLatin1String("0")) {
            return false;
        }
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<double> number(const QVariant& value) {
    const int type = value.metaType().id();
    if (type != QMetaType::Int && type != QMetaType::UInt && type != QMetaType::LongLong &&
        type != QMetaType::ULongLong && type != QMetaType::Double && type != QMetaType::Float &&
        type != QMetaType::QString) {
        return std::nullopt;
    }
    bool ok = false;
    const double result =
        type == QMetaType::QString ? value.toString().trimmed().toDouble(&ok) : value.toDouble(&ok);
    if (!ok || !std::isfinite(result)) {
        return std::nullopt;
    }
    return result;
}

std::optional<QString> word(const QVariant& value) {
    QString text;
    if (value.metaType().id() == QMetaType::QString) {
        text = value.toString();
    } else if (value.metaType().id() == QMetaType::QStringList &&
               value.toStringList().size() == 1) {
        text = value.toStringList().constFirst();
    }
    text = text.trimmed();
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text;
}

} // namespace tw::StoredValue
