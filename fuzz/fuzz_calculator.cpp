// Whatever is typed, pasted or found in a calculator's settings: the parser answers with a finite
// number or a reason, a shown result reads back as the same number, the entry keeps to its cap,
// and a tape read back from the settings keeps to its own and round-trips.
#include "Require.h"
#include "tools/CalcParser.h"
#include "tools/CalculatorTile.h"
#include "tools/ConverterState.h"

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::CalcResult result = tw::CalcParser::evaluate(text);
    if (result.ok()) {
        require(std::isfinite(result.value), "a result that is no finite number");
        const QString shown = tw::CalcNumber::format(result.value);
        const tw::CalcResult back = tw::CalcParser::evaluate(shown);
        require(back.ok(), "a shown result that does not read back");
        require(tw::CalcNumber::format(back.value) == shown, "a shown result that changes");
    }

    tw::CalculatorState state;
    for (const QChar c : text.left(2000)) {
        if (c == QLatin1Char('=')) {
            state.equals();
        } else if (c == QLatin1Char('\b')) {
            state.backspace();
        } else if (c == QLatin1Char('(')) {
            state.parenthesis();
        } else {
            state.type(c);
        }
        require(state.entry.size() <= tw::CalculatorState::maxEntry, "an entry past its cap");
    }
    state.equals();
    require(state.tape.size() <= tw::CalcTape::maxLines, "a tape past its cap");

    const tw::CalculatorTile tile = tw::CalculatorTile::fromSettings(
        {{QStringLiteral("tape"), text}, {QStringLiteral("entry"), text}});
    require(tile.state.tape.size() <= tw::CalcTape::maxLines, "a read tape past its cap");
    require(tw::CalcTape::fromText(tw::CalcTape::toText(tile.state.tape)) == tile.state.tape,
            "a tape that does not round-trip");

    const tw::ConverterState converter =
        tw::ConverterState::fromSettings({{QStringLiteral("category"), text},
                                          {QStringLiteral("from"), text},
                                          {QStringLiteral("to"), text},
                                          {QStringLiteral("amount"), text}});
    require(tw::UnitCatalog::unit(converter.unitCategory(), converter.from).has_value(),
            "a converter without its unit");
    if (const auto value = converter.result(nullptr)) {
        require(!std::isnan(*value), "a conversion that is no number");
    }
    return 0;
}
