#include "custom/CustomJSON.h"

#include "settings/Formatters.h"
#include "text/L.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <functional>

namespace tw {

namespace {

bool nestsDeeperThan(QByteArrayView bytes, int limit) {
    int depth = 0;
    bool inString = false;
    bool escaped = false;
    for (const char c : bytes) {
        if (inString) {
            if (escaped) {
                escaped = false;
            } else if (c == '\\') {
                escaped = true;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit) {
                return true;
            }
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

std::optional<double> numberFromText(QString text) {
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    if (text.isEmpty() || text.front().isSpace() || text.back().isSpace()) {
        return std::nullopt;
    }
    bool ok = false;
    const double number = QLocale::c().toDouble(text, &ok);
    // "nan", "inf" and "1e999" read as numbers but no tile can show them.
    if (!ok || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

QString numberText(double number, int decimals) {
    const QString text = Formatters::number(decimals, Grouping::on)->string(number);
    return text.isEmpty() ? QString::number(number) : text;
}

} // namespace

std::optional<CustomJSON> CustomJSON::parse(QByteArrayView bytes) {
    // Some servers open their answer with a byte order mark, which the parser refuses.
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes = bytes.sliced(3);
    }
    if (bytes.size() > maximumBytes || nestsDeeperThan(bytes, maximumDepth)) {
        return std::nullopt;
    }
    // The parser takes only objects and arrays; a one-member array carries any fragment.
    QByteArray wrapped;
    wrapped.reserve(bytes.size() + 2);
    wrapped.append('[').append(bytes).append(']');
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(wrapped, &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1) {
        return std::nullopt;
    }
    return CustomJSON{document.array().first()};
}

std::optional<QJsonValue> CustomJSON::value(const QString& path) const {
    QJsonValue current = root;
    for (const QStringView piece : QStringView(path).split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
        if (current.isObject()) {
            const QJsonObject object = current.toObject();
            const auto found = object.constFind(piece);
            if (found == object.constEnd()) {
                return std::nullopt;
            }
            current = found.value();
        } else if (current.isArray()) {
            const QJsonArray array = current.toArray();
            bool ok = false;
            const qsizetype index = piece.toLongLong(&ok);
            if (!ok || index < 0 || index >= array.size()) {
                return std::nullopt;
            }
            current = array.at(index);
        } else {
            return std::nullopt;
        }
    }
    if (current.isNull() || current.isUndefined()) {
        return std::nullopt;
    }
    return current;
}

std::optional<double> customNumber(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Double:
        return value.toDouble();
    case QJsonValue::Bool:
        return value.toBool() ? 1.0 : 0.0;
    case QJsonValue::String:
        return numberFromText(value.toString());
    default:
        return std::nullopt;
    }
}

std::optional<double> CustomJSON::number(const QString& path) const {
    const std::optional<QJsonValue> found = value(path);
    return found ? customNumber(*found) : std::nullopt;
}

std::optional<QString> CustomJSON::string(const QString& path) const {
    const std::optional<QJsonValue> found = value(path);
    if (!found) {
        return std::nullopt;
    }
    switch (found->type()) {
    case QJsonValue::String:
        return found->toString();
    case QJsonValue::Bool:
        return found->toBool() ? L("custom.value.yes", QStringLiteral("Yes"))
                               : L("custom.value.no", QStringLiteral("No"));
    case QJsonValue::Double: {
        const double number = found->toDouble();
        const bool whole = std::abs(number) < 1e15 && number == std::trunc(number);
        return numberText(number, whole ? 0 : 2);
    }
    case QJsonValue::Array:
        return numberText(static_cast<double>(found->toArray().size()), 0);
    default:
        return std::nullopt;
    }
}

std::optional<QList<CustomJSON>> CustomJSON::entries(const QString& path) const {
    const std::optional<QJsonValue> found = value(path);
    if (!found || !found->isArray()) {
        return std::nullopt;
    }
    const QJsonArray array = found->toArray();
    QList<CustomJSON> members;
    members.reserve(array.size());
    for (const auto& member : array) {
        members.append(CustomJSON{member});
    }
    return members;
}

QList<double> CustomJSON::numbers(const QString& path, const QString& field) const {
    QList<double> result;
    const std::optional<QList<CustomJSON>> list = entries(path);
    if (!list) {
        return result;
    }
    for (const CustomJSON& entry : *list) {
        const std::optional<double> number =
            field.isEmpty() ? customNumber(entry.root) : entry.number(field);
        if (number) {
            result.append(*number);
        }
    }
    return result;
}

void CustomJSON::walk(const QString& prefix, QStringList& into, qsizetype limit) const {
    // Depth first with a stack of its own: children go on in reverse so the first comes off first.
    QList<std::pair<QJsonValue, QString>> pending{{root, prefix}};
    while (!pending.isEmpty() && into.size() < limit) {
        const std::pair<QJsonValue, QString> next = pending.takeLast();
        const QJsonValue& value = next.first;
        const QString& path = next.second;
        const auto join = [&path](const QString& piece) {
            return path.isEmpty() ? piece : path + QLatin1Char('.') + piece;
        };
        if (value.isObject()) {
            const QJsonObject object = value.toObject();
            QStringList keys = object.keys();
            std::sort(keys.begin(), keys.end(), std::greater<>());
            for (const QString& key : keys) {
                pending.append({object.value(key), join(key)});
            }
        } else if (value.isArray()) {
            const QJsonArray array = value.toArray();
            for (qsizetype index = std::min<qsizetype>(array.size(), 10) - 1; index >= 0; --index) {
                pending.append({array.at(index), join(QString::number(index))});
            }
        } else if (!path.isEmpty()) {
            into.append(path);
        }
    }
}

} // namespace tw
