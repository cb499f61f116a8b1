#include "custom/CustomWidgetIssue.h"

#include "custom/CustomWidgetDefinition.h"
#include "text/L.h"

namespace tw {

namespace {

using Kind = CustomWidgetIssue::Kind;

CustomWidgetIssue quoting(Kind kind, const QString& text) {
    CustomWidgetIssue issue;
    issue.kind = kind;
    issue.text = text;
    return issue;
}

CustomWidgetIssue at(Kind kind, int row, int index, const QString& text = {}) {
    CustomWidgetIssue issue = quoting(kind, text);
    issue.row = row;
    issue.index = index;
    return issue;
}

QString rowAndElement(const char* key, const QString& english, const CustomWidgetIssue& issue) {
    return L(key, english).arg(QString::number(issue.row + 1), QString::number(issue.index + 1));
}

} // namespace

CustomWidgetIssue CustomWidgetIssue::unsupportedSchema(int schema) {
    CustomWidgetIssue issue = of(Kind::unsupportedSchema);
    issue.schema = schema;
    return issue;
}

CustomWidgetIssue CustomWidgetIssue::badURL(const QString& text) {
    return quoting(Kind::badURL, text);
}

CustomWidgetIssue CustomWidgetIssue::badScheme(const QString& scheme) {
    return quoting(Kind::badScheme, scheme);
}

CustomWidgetIssue CustomWidgetIssue::insecureURL(const QString& host) {
    return quoting(Kind::insecureURL, host);
}

CustomWidgetIssue CustomWidgetIssue::valueWithoutPath(int row, int index) {
    return at(Kind::valueWithoutPath, row, index);
}

CustomWidgetIssue CustomWidgetIssue::emptyElement(int row, int index) {
    return at(Kind::emptyElement, row, index);
}

CustomWidgetIssue CustomWidgetIssue::badRange(int row, int index) {
    return at(Kind::badRange, row, index);
}

CustomWidgetIssue CustomWidgetIssue::unknownToken(const QString& token, int row, int index) {
    return at(Kind::unknownToken, row, index, token);
}

CustomWidgetIssue CustomWidgetIssue::badSourceName(const QString& name) {
    return quoting(Kind::badSourceName, name);
}

CustomWidgetIssue CustomWidgetIssue::duplicateSource(const QString& name) {
    return quoting(Kind::duplicateSource, name);
}

CustomWidgetIssue CustomWidgetIssue::unknownSource(const QString& name, int row, int index) {
    return at(Kind::unknownSource, row, index, name);
}

CustomWidgetIssue CustomWidgetIssue::badLink(const QString& text) {
    return quoting(Kind::badLink, text);
}

CustomWidgetIssue CustomWidgetIssue::of(Kind kind) {
    CustomWidgetIssue issue;
    issue.kind = kind;
    return issue;
}

bool CustomWidgetIssue::isBlocking() const {
    switch (kind) {
    case Kind::valueWithoutPath:
    case Kind::emptyElement:
    case Kind::badRange:
    case Kind::unknownToken:
    case Kind::unknownSource:
    case Kind::badLink:
        return false;
    default:
        return true;
    }
}

QString CustomWidgetIssue::message() const {
    switch (kind) {
    case Kind::unsupportedSchema:
        return L("custom.issue.schema",
                 QStringLiteral("This widget was made with a newer version (schema %1)."))
            .arg(schema);
    case Kind::badURL:
        return L("custom.issue.url.bad", QStringLiteral("“%1” isn’t a valid web address."))
            .arg(text);
    case Kind::badScheme:
        return L("custom.issue.url.scheme", QStringLiteral("%1:// isn’t supported, use https."))
            .arg(text);
    case Kind::insecureURL:
        return L("custom.issue.url.insecure",
                 QStringLiteral("%1 would be contacted over plain http. Use https, or an address "
                                "on your own network."))
            .arg(text);
    case Kind::valueWithoutPath:
        return rowAndElement("custom.issue.path",
                             QStringLiteral("Row %1, element %2 has nothing to show."), *this);
    case Kind::emptyElement:
        return rowAndElement("custom.issue.empty", QStringLiteral("Row %1, element %2 is empty."),
                             *this);
    case Kind::badRange:
        return rowAndElement("custom.issue.range",
                             QStringLiteral("Row %1, element %2 has a range that goes backwards."),
                             *this);
    case Kind::unknownToken:
        return L("custom.issue.token",
                 QStringLiteral("Row %1, element %2 uses {%3}, which doesn’t exist."))
            .arg(QString::number(row + 1), QString::number(index + 1), text);
    case Kind::badSourceName:
        return L("custom.issue.sourceName",
                 QStringLiteral("“%1” isn’t a usable source name. Use 1 to 16 lower-case letters, "
                                "digits or _."))
            .arg(text);
    case Kind::duplicateSource:
        return L("custom.issue.sourceDuplicate",
                 QStringLiteral("Two sources are both called “%1”."))
            .arg(text);
    case Kind::unknownSource:
        return L("custom.issue.sourceUnknown",
                 QStringLiteral("Row %1, element %2 reads the source “%3”, which doesn’t exist."))
            .arg(QString::number(row + 1), QString::number(index + 1), text);
    case Kind::badLink:
        return L("custom.issue.link",
                 QStringLiteral("“%1” isn’t a web link (https:// or http://)."))
            .arg(text);
    case Kind::notJSON:
        return L("custom.issue.notJSON", QStringLiteral("That isn’t valid JSON."));
    case Kind::missingName:
        return L("custom.issue.name", QStringLiteral("The widget needs a name."));
    case Kind::noSizes:
        return L("custom.issue.sizes", QStringLiteral("Pick at least one size."));
    case Kind::noElements:
        return L("custom.issue.elements",
                 QStringLiteral("The widget is empty. Add something to show."));
    case Kind::missingURL:
        return L("custom.issue.url.missing", QStringLiteral("The data source has no address."));
    case Kind::dataWithoutSource:
        return L("custom.issue.noSource",
                 QStringLiteral("This widget reads data, but no data source is set."));
    case Kind::tooManySources:
        return L("custom.issue.manySources",
                 QStringLiteral("A widget can read at most %1 extra sources."))
            .arg(CustomWidgetDefinition::maximumExtraSources);
    }
    return {};
}

} // namespace tw
