// One unit converter: its category, the two units, the amount typed, and how keys and clicks
// change them. Kept in the tile's settings, so a converter opens as it was left.
#pragma once

#include "market/MarketBoard.h"
#include "model/WidgetInstance.h"
#include "tools/UnitCatalog.h"

#include <QString>

#include <optional>

namespace tw {

struct ConverterState {
    // What a list drawn over the tile offers to choose from, if any.
    enum class Picking { none, category, from, to };

    static constexpr qsizetype maxAmount = 40;

    QString category = QStringLiteral("length");
    QString from = QStringLiteral("km");
    QString to = QStringLiteral("mi");
    // As typed: a number, or a sum the calculator works out ("12*3").
    QString amount = QStringLiteral("1");
    Picking picking = Picking::none;
    // The next digit replaces the amount rather than extending it (after a unit or a swap).
    bool fresh = true;

    // From "category", "from", "to" and "amount"; what is unknown or unreadable takes the
    // category's own defaults.
    static ConverterState fromSettings(const WidgetSettings& settings);
    WidgetSettings toSettings() const;

    const UnitCategory& unitCategory() const { return UnitCatalog::category(category); }

    // Digits, a point, operators, "-" (the sign when the amount is a plain number); false for a
    // key that changes nothing.
    bool type(QChar key);
    bool backspace();
    // Closes the list first; then empties the amount.
    bool escape();
    void swap();
    // The next (`step` 1) or previous (−1) unit of the field, round the category.
    void cycle(Picking field, int step);
    // Another category with its own default units.
    void setCategory(const QString& id);
    // Takes `id` for what is being picked, and closes the list.
    bool pick(const QString& id);

    std::optional<double> amountValue() const;
    std::optional<double> result(const CurrencyBoard* rates) const;

    bool operator==(const ConverterState&) const = default;
};

} // namespace tw
