// The `{token}`s of a custom widget's texts: finding them, telling the known from the unknown,
// and replacing them with the readings and document values of one `CustomValueBag`.
#pragma once

#include "custom/CustomValueBag.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <chrono>
#include <optional>

namespace tw {

class CustomTokens {
public:
    CustomTokens() = delete;

    // A token the editor offers, with what it shows.
    struct Info {
        QString token;
        QString detail;
        bool operator==(const Info&) const = default;
    };

    // A token as it stands in a text: without its braces, and the range of the braces included.
    struct Match {
        QString token;
        qsizetype start = 0;
        qsizetype length = 0;
        bool operator==(const Match&) const = default;
    };

    // Where a document token reads: the document (nullptr when it has none yet) and the path.
    struct DocumentPath {
        const CustomJSON* document = nullptr;
        QString path;
    };

    // The 17 tokens that stand alone.
    static const QStringList& plainNames();
    // The heads that take an argument after a colon.
    static const QStringList& prefixed();
    // The tokens the editor lists, in order.
    static QList<Info> systemTokens();

    // Every "{...}" in order, without nesting or escapes; a "{" with no "}" after it ends the scan.
    static QList<Match> scan(QStringView text);
    // `text` with each token that resolves replaced; the others stay as written, braces included.
    static QString render(QStringView text, const CustomValueBag& values);
    static std::optional<QString> resolveString(const QString& token, const CustomValueBag& values);
    static std::optional<double> number(const QString& token, const CustomValueBag& values);
    // The number an element stands for: its `path` if it has one, else the first token of `text`.
    static std::optional<double> number(const QString& path, const std::optional<QString>& text,
                                        const CustomValueBag& values);
    // For "item:..." and "data.NAME:..." tokens; nullopt for every other token.
    static std::optional<DocumentPath> document(const QString& token, const CustomValueBag& values);
    // NAME of a "data.NAME:..." token when NAME is a valid source name.
    static std::optional<QString> namedSource(QStringView token);
    // The tokens of `text` that the language doesn't know, in the order of the text.
    static QStringList unknownTokens(QStringView text);
    // Some token is "data" or begins with "data:" or "data.".
    static bool referencesSourceData(QStringView text);
    // "45m", "7h 12m", "3d 5h".
    static QString uptimeText(std::chrono::duration<double> uptime);
};

} // namespace tw
