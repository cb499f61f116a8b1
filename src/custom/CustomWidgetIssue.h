// One thing wrong with a custom widget definition, the words the editor shows for it and
// whether it keeps the widget from being imported or drawn.
#pragma once

#include <QString>

namespace tw {

struct CustomWidgetIssue {
    enum class Kind {
        unsupportedSchema,
        badURL,
        badScheme,
        insecureURL,
        valueWithoutPath,
        emptyElement,
        badRange,
        unknownToken,
        badSourceName,
        duplicateSource,
        unknownSource,
        badLink,
        notJSON,
        missingName,
        noSizes,
        noElements,
        missingURL,
        dataWithoutSource,
        tooManySources
    };

    Kind kind = Kind::notJSON;
    // The address, scheme, host, token or source name the message quotes.
    QString text;
    // The schema of `unsupportedSchema`.
    int schema = 0;
    // Counted from 0; the message counts from 1.
    int row = 0;
    int index = 0;

    static CustomWidgetIssue unsupportedSchema(int schema);
    static CustomWidgetIssue badURL(const QString& text);
    static CustomWidgetIssue badScheme(const QString& scheme);
    static CustomWidgetIssue insecureURL(const QString& host);
    static CustomWidgetIssue valueWithoutPath(int row, int index);
    static CustomWidgetIssue emptyElement(int row, int index);
    static CustomWidgetIssue badRange(int row, int index);
    static CustomWidgetIssue unknownToken(const QString& token, int row, int index);
    static CustomWidgetIssue badSourceName(const QString& name);
    static CustomWidgetIssue duplicateSource(const QString& name);
    static CustomWidgetIssue unknownSource(const QString& name, int row, int index);
    static CustomWidgetIssue badLink(const QString& text);
    static CustomWidgetIssue of(Kind kind);

    bool isBlocking() const;
    // The localized words with the payload filled in.
    QString message() const;
    // Two issues with the same words are one entry of a list.
    QString id() const { return message(); }

    bool operator==(const CustomWidgetIssue&) const = default;
};

} // namespace tw
