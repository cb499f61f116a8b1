#include "custom/CustomCollections.h"

#include "custom/CustomPath.h"
#include "custom/CustomTokens.h"

#include <algorithm>

namespace tw {

namespace {

// The document and path an element's `path` reads; no document for an empty path.
CustomTokens::DocumentPath sourceOf(const CustomElement& element, const CustomValueBag& values) {
    if (!element.path || element.path->isEmpty()) {
        return {};
    }
    const CustomPath path = CustomPath::split(*element.path);
    return {values.document(path.source), path.path};
}

} // namespace

int CustomCollections::defaultLines(WidgetSize size) {
    switch (size) {
    case WidgetSize::small:
    case WidgetSize::tall:
    case WidgetSize::banner:
        return 2;
    case WidgetSize::wide:
        return 3;
    case WidgetSize::large:
        return 5;
    default:
        return 6;
    }
}

QStringList CustomCollections::lines(const CustomElement& element, const CustomValueBag& values,
                                     WidgetSize size) {
    const CustomTokens::DocumentPath source = sourceOf(element, values);
    const std::optional<QList<CustomJSON>> entries =
        source.document != nullptr ? source.document->entries(source.path) : std::nullopt;
    if (!entries) {
        return {};
    }
    const QString line =
        element.text && !element.text->isEmpty() ? *element.text : QStringLiteral("{item:title}");
    const int count = std::clamp(element.limit.value_or(defaultLines(size)), 1, maximumLines);
    QStringList lines;
    CustomValueBag entryValues = values;
    for (const CustomJSON& entry : entries->first(std::min<qsizetype>(count, entries->size()))) {
        entryValues.item = entry;
        lines.append(CustomTokens::render(line, entryValues));
    }
    return lines;
}

QList<double> CustomCollections::series(const CustomElement& element,
                                        const CustomValueBag& values) {
    const CustomTokens::DocumentPath source = sourceOf(element, values);
    if (source.document == nullptr) {
        return {};
    }
    const QList<double> numbers =
        source.document->numbers(source.path, element.text.value_or(QString()));
    return numbers.size() > maximumBars ? numbers.last(maximumBars) : numbers;
}

} // namespace tw
