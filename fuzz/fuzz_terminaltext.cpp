// Whatever a command writes: the screen read from it holds lines no wider than the cap, no
// control characters, and every span says something.
#include "Require.h"
#include "launch/TerminalText.h"

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::TerminalText text = tw::TerminalText::decode(bytes);
    for (const tw::TerminalLine& line : text.lines) {
        require(line.text().toUcs4().size() <= tw::TerminalText::maxColumns, "a line too wide");
        for (const tw::TerminalSpan& span : line.spans) {
            require(!span.text.isEmpty(), "an empty span");
            for (const char32_t c : span.text.toUcs4()) {
                require(c >= 0x20 && c != 0x7f && !(c >= 0x80 && c < 0xa0), "a control character");
            }
            require(span.color.kind != tw::TerminalColor::Kind::palette || span.color.value < 256,
                    "a palette index out of range");
        }
    }
    return 0;
}
