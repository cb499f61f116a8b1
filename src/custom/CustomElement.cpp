#include "custom/CustomElement.h"

#include "custom/CustomPath.h"
#include "custom/CustomTokens.h"
#include "custom/CustomWidgetDefinitionDecoding.h"

#include <QJsonArray>

namespace tw {

namespace {

std::optional<QList<CustomColorRule>> decodeRules(const QJsonValue& json) {
    if (!json.isArray()) {
        return std::nullopt;
    }
    const QJsonArray array = json.toArray();
    QList<CustomColorRule> rules;
    for (const QJsonValue& member : array) {
        std::optional<CustomColorRule> rule = CustomColorRule::fromJson(member);
        if (!rule) {
            return std::nullopt;
        }
        if (rules.size() < CustomDecoding::maximumRules) {
            rules.append(*rule);
        }
    }
    if (rules.isEmpty()) {
        return std::nullopt;
    }
    return rules;
}

QString nonEmpty(const std::optional<QString>& text) {
    return text.value_or(QString());
}

QString lastPathComponent(QString path) {
    while (path.size() > 1 && path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 || path.size() == 1 ? path : path.mid(slash + 1);
}

} // namespace

std::optional<CustomElement> CustomElement::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    CustomDecoding::FieldReader read(json.toObject());
    CustomElement element;
    const QJsonValue type = read.present(QLatin1String("type"));
    element.type = customElementTypeFromRawValue(type.toString()).value_or(CustomElementType::text);
    const QJsonValue style = read.present(QLatin1String("style"));
    element.style = customTextStyleFromRawValue(style.toString());
    element.rules = decodeRules(read.present(QLatin1String("rules")));
    element.text = read.string(QLatin1String("text"));
    element.path = read.string(QLatin1String("path"));
    element.symbol = read.string(QLatin1String("symbol"));
    element.color = read.string(QLatin1String("color"));
    element.decimals = read.integer(QLatin1String("decimals"));
    element.prefix = read.string(QLatin1String("prefix"));
    element.suffix = read.string(QLatin1String("suffix"));
    element.min = read.real(QLatin1String("min"));
    element.max = read.real(QLatin1String("max"));
    element.limit = read.integer(QLatin1String("limit"));
    if (read.failed()) {
        return std::nullopt;
    }
    return element;
}

QJsonObject CustomElement::toJson() const {
    QJsonObject json{{QLatin1String("type"), rawValue(type)}};
    const auto putString = [&json](const char* key, const std::optional<QString>& value) {
        if (value) {
            json.insert(QLatin1String(key), *value);
        }
    };
    putString("text", text);
    putString("path", path);
    putString("symbol", symbol);
    if (style) {
        json.insert(QLatin1String("style"), rawValue(*style));
    }
    putString("color", color);
    if (decimals) {
        json.insert(QLatin1String("decimals"), *decimals);
    }
    putString("prefix", prefix);
    putString("suffix", suffix);
    if (min) {
        json.insert(QLatin1String("min"), *min);
    }
    if (max) {
        json.insert(QLatin1String("max"), *max);
    }
    if (limit) {
        json.insert(QLatin1String("limit"), *limit);
    }
    if (rules) {
        QJsonArray array;
        for (const CustomColorRule& rule : *rules) {
            array.append(rule.toJson());
        }
        json.insert(QLatin1String("rules"), array);
    }
    return json;
}

QString CustomElement::summary() const {
    switch (type) {
    case CustomElementType::divider:
    case CustomElementType::spacer:
        return {};
    case CustomElementType::image:
        return lastPathComponent(nonEmpty(text));
    case CustomElementType::gauge:
    case CustomElementType::bar:
    case CustomElementType::sparkline:
        return path ? *path : nonEmpty(text);
    case CustomElementType::icon:
        return symbol ? *symbol : QStringLiteral("star");
    case CustomElementType::value:
        return path ? QLatin1Char('{') + *path + QLatin1Char('}') : nonEmpty(text);
    case CustomElementType::list:
    case CustomElementType::bars:
        return nonEmpty(path);
    case CustomElementType::text:
        break;
    }
    return nonEmpty(text);
}

bool CustomElement::readsSourceData() const {
    return (path && !path->isEmpty()) || (text && CustomTokens::referencesSourceData(*text));
}

QStringList CustomElement::namedSourceReferences() const {
    QStringList names;
    if (path) {
        if (const std::optional<QString> name = CustomPath::split(*path).source) {
            names.append(*name);
        }
    }
    if (text) {
        for (const CustomTokens::Match& match : CustomTokens::scan(*text)) {
            if (const std::optional<QString> name = CustomTokens::namedSource(match.token)) {
                names.append(*name);
            }
        }
    }
    return names;
}

} // namespace tw
