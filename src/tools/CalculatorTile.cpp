#include "tools/CalculatorTile.h"

#include "tools/CalcParser.h"

namespace tw {

CalculatorTile CalculatorTile::fromSettings(const WidgetSettings& settings) {
    CalculatorTile tile;
    tile.state.tape = CalcTape::fromText(settings.value(QStringLiteral("tape")));
    // Typed again key by key, so that a hand-edited entry can hold nothing a key could not.
    const QString entry = settings.value(QStringLiteral("entry"));
    if (entry.size() <= CalculatorState::maxEntry) {
        tile.state.paste(entry);
    }
    return tile;
}

int CalculatorTile::decimals(const WidgetSettings& settings) {
    bool ok = false;
    const int places = settings.value(QStringLiteral("decimals")).toInt(&ok);
    return ok && places >= 0 && places <= 10 ? places : -1;
}

CalculatorTile CalculatorTile::sample() {
    CalculatorTile tile;
    tile.state.tape = CalcTape::fromText(
        QStringLiteral("1280*15%=192\n49.99+12.5+8=70.49\n2^10=1024\n1088/4=272"));
    tile.state.entry = QStringLiteral("(1280-192)*1.2");
    return tile;
}

} // namespace tw
