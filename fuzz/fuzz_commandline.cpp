// Whatever a person types as a command: it is split or refused with a reason, never run through
// a shell, and what the tile shows of it reads back as the same command.
#include "Require.h"
#include "launch/CommandLine.h"

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::ParsedCommand parsed = tw::CommandLine::parse(text, QStringLiteral("/home/p"));
    require(parsed.error.isEmpty() != parsed.command.isEmpty(), "neither a command nor a reason");
    if (parsed.error.isEmpty()) {
        const tw::ParsedCommand again =
            tw::CommandLine::parse(parsed.command.text(), QStringLiteral("/elsewhere"));
        require(again.error.isEmpty() && again.command == parsed.command, "no round trip");
    }
    return 0;
}
