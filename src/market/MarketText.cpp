#include "market/MarketText.h"

#include "text/L.h"

#include <QHash>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

const QChar minus(0x2212);

QString sign(const QString& currency) {
    static const QHash<QString, QString> signs{
        {QStringLiteral("USD"), QStringLiteral("$")},  {QStringLiteral("EUR"), QStringLiteral("€")},
        {QStringLiteral("GBP"), QStringLiteral("£")},  {QStringLiteral("JPY"), QStringLiteral("¥")},
        {QStringLiteral("INR"), QStringLiteral("₹")},  {QStringLiteral("KRW"), QStringLiteral("₩")},
        {QStringLiteral("CNY"), QStringLiteral("CN¥")}};
    return signs.value(currency.toUpper());
}

// Below `significantBelow`, four significant figures rather than cents.
QString number(double value, double significantBelow = 1) {
    const double size = std::abs(value);
    const QLocale locale;
    if (size >= 1'000) {
        return locale.toString(value, 'f', 0);
    }
    if (size >= significantBelow || size == 0) {
        return locale.toString(value, 'f', 2);
    }
    // Four significant figures: 0.08123, 0.00001234.
    const int decimals = std::clamp(3 - static_cast<int>(std::floor(std::log10(size))), 2, 12);
    return locale.toString(value, 'f', decimals);
}

QString withCurrency(const QString& figure, const QString& currency) {
    if (currency.isEmpty()) {
        return figure;
    }
    const QString mark = sign(currency);
    if (mark.isEmpty()) {
        return figure + QLatin1Char(' ') + currency.toUpper();
    }
    return mark + figure;
}

QString signedText(double value, const QString& magnitude) {
    if (value > 0) {
        return QLatin1Char('+') + magnitude;
    }
    if (value < 0) {
        return minus + magnitude;
    }
    return magnitude;
}

} // namespace

QString MarketText::price(double value, const QString& currency) {
    const QString figure = number(std::abs(value));
    return (value < 0 ? QString(minus) : QString()) + withCurrency(figure, currency);
}

QString MarketText::change(double value, const QString& currency) {
    // A change of cents reads as cents; only a coin worth fractions of a cent needs more.
    return signedText(value, withCurrency(number(std::abs(value), 0.01), currency));
}

QString MarketText::percent(double value) {
    return signedText(value, QLocale().toString(std::abs(value), 'f', 2) + QLatin1Char('%'));
}

QString MarketText::rate(double value) {
    const double size = std::abs(value);
    if (size >= 100) {
        return QLocale().toString(value, 'f', 2);
    }
    if (size >= 1 || size == 0) {
        return QLocale().toString(value, 'f', 4);
    }
    return number(value);
}

QString MarketText::age(const QDateTime& since, const QDateTime& now) {
    const qint64 seconds = since.isValid() ? std::max<qint64>(0, since.secsTo(now)) : 0;
    if (seconds < 60) {
        return L("market.age.now", QStringLiteral("just now"));
    }
    if (seconds < 3600) {
        return L("market.age.minutes", QStringLiteral("%1 min ago")).arg(seconds / 60);
    }
    if (seconds < 86400) {
        return L("market.age.hours", QStringLiteral("%1 h ago")).arg(seconds / 3600);
    }
    return L("market.age.days", QStringLiteral("%1 d ago")).arg(seconds / 86400);
}

} // namespace tw
