// The prompt a person pastes into any AI assistant with a wish, so that the assistant writes a
// custom widget's JSON, and the reading of the answer that comes back.
#pragma once

#include <QString>

#include <optional>

namespace tw {

class CustomAIPrompt {
public:
    CustomAIPrompt() = delete;

    static QString en();
    static QString de();
    // German for a language code that begins with "de", English for any other.
    static QString forLanguage(const QString& languageCode);

    // The widget's JSON out of an answer: the first fenced block if there is one, then the text
    // from its first "{" to its last "}"; nullopt when there are no such braces.
    static std::optional<QString> extractJSON(const QString& answer);
};

} // namespace tw
