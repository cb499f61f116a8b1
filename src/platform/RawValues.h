// An enumeration stored as words keeps them in one table, in the order of its cases; this reads
// the table both ways.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>

namespace tw {

template <typename Enum, std::size_t N>
class RawValues {
public:
    // A table shorter than its enumeration does not compile where it is constexpr.
    constexpr explicit RawValues(std::array<const char*, N> words)
        : m_words(words) {
        for (const char* word : words) {
            if (word == nullptr) {
                throw std::logic_error("a case without a raw value");
            }
        }
    }

    QString of(Enum value) const {
        return QLatin1String(m_words.at(static_cast<std::size_t>(value)));
    }
    // nullopt for anything but one of the words.
    std::optional<Enum> parse(QStringView raw,
                              Qt::CaseSensitivity sensitivity = Qt::CaseSensitive) const {
        for (std::size_t i = 0; i < N; ++i) {
            if (raw.compare(QLatin1String(m_words[i]), sensitivity) == 0) {
                return static_cast<Enum>(i);
            }
        }
        return std::nullopt;
    }

private:
    std::array<const char*, N> m_words;
};

} // namespace tw
