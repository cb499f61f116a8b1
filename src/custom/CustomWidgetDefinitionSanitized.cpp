#include "custom/CustomPath.h"
#include "custom/CustomTokens.h"
#include "custom/CustomWidgetDefinition.h"
#include "text/L.h"

#include <QSet>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace tw {

namespace {

constexpr qsizetype maximumNameLength = 48;
constexpr qsizetype maximumLinkLength = 500;
constexpr int maximumDecimals = 6;
constexpr int maximumLimit = 12;
constexpr qsizetype maximumRules = 4;

// The first `count` characters as a person counts them, so that no accent or emoji is split.
// Blanks the cut leaves at the end go too, or a second clean-up would change the text again.
QString firstCharacters(const QString& text, qsizetype count) {
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    qsizetype seen = 0;
    while (seen < count && graphemes.toNextBoundary() != -1) {
        ++seen;
    }
    if (seen < count || graphemes.position() >= text.size()) {
        return text;
    }
    QString cut = text.left(graphemes.position());
    while (!cut.isEmpty() && cut.back().isSpace()) {
        cut.chop(1);
    }
    return cut;
}

CustomElement sanitizedElement(CustomElement element) {
    if (element.type == CustomElementType::icon && element.symbol.value_or(QString()).isEmpty()) {
        element.symbol = QStringLiteral("star.fill");
    }
    if (element.decimals) {
        element.decimals = std::clamp(*element.decimals, 0, maximumDecimals);
    }
    if (element.limit) {
        element.limit = std::clamp(*element.limit, 1, maximumLimit);
    }
    if (element.rules && element.rules->size() > maximumRules) {
        element.rules->resize(maximumRules);
    }
    return element;
}

bool needsLevelTwo(const CustomElement& element) {
    if (schemaLevel(element.type) >= 2 || element.limit ||
        (element.rules && !element.rules->isEmpty())) {
        return true;
    }
    if (element.path && CustomPath::split(*element.path).source) {
        return true;
    }
    if (!element.text) {
        return false;
    }
    const QList<CustomTokens::Match> tokens = CustomTokens::scan(*element.text);
    return std::any_of(tokens.begin(), tokens.end(), [](const CustomTokens::Match& match) {
        return match.token.startsWith(QLatin1String("item:")) ||
               CustomTokens::namedSource(match.token).has_value();
    });
}

} // namespace

int CustomWidgetDefinition::requiredSchema() const {
    if ((extraSources && !extraSources->isEmpty()) || (link && !link->isEmpty())) {
        return 2;
    }
    for (const CustomRow& row : rows) {
        if (std::any_of(row.elements.begin(), row.elements.end(), needsLevelTwo)) {
            return 2;
        }
    }
    return 1;
}

CustomWidgetDefinition CustomWidgetDefinition::sanitized() const {
    CustomWidgetDefinition clean = *this;

    clean.name = name.trimmed();
    clean.name = clean.name.isEmpty() ? L("custom.untitled", QStringLiteral("Untitled widget"))
                                      : firstCharacters(clean.name, maximumNameLength);
    if (symbol.trimmed().isEmpty()) {
        clean.symbol = QStringLiteral("square.dashed");
    }

    const QList<WidgetSize> offered =
        sizes.isEmpty() ? QList{WidgetSize::small, WidgetSize::wide, WidgetSize::large} : sizes;
    clean.sizes.clear();
    for (WidgetSize size : allWidgetSizes) {
        if (offered.contains(size)) {
            clean.sizes.append(size);
        }
    }

    clean.rows.clear();
    for (const CustomRow& row : rows) {
        CustomRow rebuilt;
        rebuilt.align = row.align;
        rebuilt.spacing = row.spacing;
        for (const CustomElement& element : row.elements) {
            rebuilt.elements.append(sanitizedElement(element));
        }
        if (!rebuilt.elements.isEmpty()) {
            clean.rows.append(rebuilt);
        }
    }

    if (source) {
        clean.source = source->sanitized();
    }
    clean.extraSources.reset();
    if (extraSources) {
        QSet<QString> seen;
        QList<CustomSource> kept;
        for (const CustomSource& extra : *extraSources) {
            const QString extraName = extra.name.value_or(QString());
            if (kept.size() == maximumExtraSources || !CustomSource::isValidName(extraName) ||
                seen.contains(extraName)) {
                continue;
            }
            seen.insert(extraName);
            kept.append(extra.sanitized());
        }
        if (!kept.isEmpty()) {
            clean.extraSources = kept;
        }
    }

    clean.link.reset();
    if (link) {
        const QString trimmed = link->trimmed();
        if (!trimmed.isEmpty()) {
            clean.link = firstCharacters(trimmed, maximumLinkLength);
        }
    }

    if (schema <= currentSchema) {
        clean.schema = clean.requiredSchema();
    }
    return clean;
}

} // namespace tw
