#include "tools/ConverterState.h"

#include "tools/CalcParser.h"

namespace tw {

namespace {

bool isOperatorKey(QChar c) {
    return c == QLatin1Char('+') || c == QLatin1Char('*') || c == QLatin1Char('/') ||
           c == QLatin1Char('(') || c == QLatin1Char(')') || c == QLatin1Char('%');
}

QString unitOr(const UnitCategory& category, const QString& id, const QString& fallback) {
    return UnitCatalog::unit(category, id) ? id : fallback;
}

} // namespace

ConverterState ConverterState::fromSettings(const WidgetSettings& settings) {
    ConverterState state;
    const UnitCategory& category =
        UnitCatalog::category(settings.value(QStringLiteral("category")));
    state.category = category.id;
    state.from = unitOr(category, settings.value(QStringLiteral("from")), category.from);
    state.to = unitOr(category, settings.value(QStringLiteral("to")), category.to);
    const QString amount = settings.value(QStringLiteral("amount"), QStringLiteral("1"));
    if (amount.size() <= maxAmount) {
        state.amount = amount;
    }
    return state;
}

WidgetSettings ConverterState::toSettings() const {
    WidgetSettings settings;
    settings.insert(QStringLiteral("category"), category);
    settings.insert(QStringLiteral("from"), from);
    settings.insert(QStringLiteral("to"), to);
    settings.insert(QStringLiteral("amount"), amount);
    return settings;
}

bool ConverterState::type(QChar key) {
    if (key == QChar(0x2212)) {
        key = QLatin1Char('-');
    } else if (key == QLatin1Char(',')) {
        key = QLatin1Char('.');
    } else if (key == QChar(0x00D7) || key == QLatin1Char('x')) {
        key = QLatin1Char('*');
    } else if (key == QChar(0x00F7)) {
        key = QLatin1Char('/');
    }
    const bool digit = key.isDigit() && key.unicode() < 128;
    if (!digit && key != QLatin1Char('.') && key != QLatin1Char('-') && !isOperatorKey(key)) {
        return false;
    }
    picking = Picking::none;
    bool plain = true;
    for (const QChar c : amount.mid(1)) {
        plain = plain && (c.isDigit() || c == QLatin1Char('.'));
    }
    if (key == QLatin1Char('-') && plain) {
        // On a plain number "-" is its sign, as temperatures below zero want.
        amount = amount.startsWith(QLatin1Char('-')) ? amount.mid(1) : QLatin1Char('-') + amount;
        fresh = false;
        return true;
    }
    if (fresh) {
        amount.clear();
        fresh = false;
    }
    if (amount.size() >= maxAmount) {
        return false;
    }
    if (key == QLatin1Char('.') && amount.isEmpty()) {
        amount = QStringLiteral("0");
    }
    amount += key;
    return true;
}

bool ConverterState::backspace() {
    picking = Picking::none;
    fresh = false;
    if (amount.isEmpty()) {
        return false;
    }
    amount.chop(1);
    return true;
}

bool ConverterState::escape() {
    if (picking != Picking::none) {
        picking = Picking::none;
        return true;
    }
    if (amount.isEmpty()) {
        return false;
    }
    amount.clear();
    fresh = false;
    return true;
}

void ConverterState::swap() {
    std::swap(from, to);
    picking = Picking::none;
    fresh = true;
}

void ConverterState::cycle(Picking field, int step) {
    if (field == Picking::category) {
        const QList<UnitCategory>& all = UnitCatalog::categories();
        qsizetype at = 0;
        while (at < all.size() && all[at].id != category) {
            ++at;
        }
        setCategory(all[(at + all.size() + step) % all.size()].id);
        return;
    }
    const QList<Unit>& units = unitCategory().units;
    QString& id = field == Picking::from ? from : to;
    qsizetype at = 0;
    while (at < units.size() && units[at].id != id) {
        ++at;
    }
    id = units[(at + units.size() + step) % units.size()].id;
    fresh = true;
}

void ConverterState::setCategory(const QString& id) {
    const UnitCategory& chosen = UnitCatalog::category(id);
    if (chosen.id == category) {
        return;
    }
    category = chosen.id;
    from = chosen.from;
    to = chosen.to;
    fresh = true;
}

bool ConverterState::pick(const QString& id) {
    const Picking field = picking;
    picking = Picking::none;
    if (field == Picking::category) {
        setCategory(id);
        return true;
    }
    if (field == Picking::none || !UnitCatalog::unit(unitCategory(), id)) {
        return field != Picking::none;
    }
    (field == Picking::from ? from : to) = id;
    fresh = true;
    return true;
}

std::optional<double> ConverterState::amountValue() const {
    const CalcResult value = CalcParser::evaluate(amount);
    return value.ok() ? std::optional<double>(value.value) : std::nullopt;
}

std::optional<double> ConverterState::result(const CurrencyBoard* rates) const {
    const std::optional<double> value = amountValue();
    if (!value) {
        return std::nullopt;
    }
    return UnitCatalog::convert(unitCategory(), *value, from, to, rates);
}

} // namespace tw
