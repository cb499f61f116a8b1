// Reads an arithmetic expression as typed into the calculator and works it out.
#pragma once

#include "tools/CalcResult.h"

#include <QString>
#include <QStringView>

namespace tw {

namespace CalcParser {

// Longer input is refused whole rather than read in part.
inline constexpr qsizetype maxLength = 1000;
// Parentheses and signs deeper than this are refused, so that no input exhausts the stack.
inline constexpr int maxDepth = 100;

// Works out `text`: + − × ÷ ^ with the usual precedence (^ binds tightest and to the right, a
// sign binds looser than ^, so −2^2 is −4), parentheses (those left open close at the end),
// implicit multiplication before a parenthesis, and percent: x% is x/100, except as the right
// side of + or −, where it is that share of the left side (200 + 10% is 220). Accepts × ÷ −
// and * / -, decimal points or commas, and exponents ("1.5e3").
CalcResult evaluate(QStringView text);

} // namespace CalcParser

namespace CalcNumber {

// A result as the calculator shows and copies it: up to 15 significant digits, no trailing zeros,
// exponent form ("1.5e+20") beyond 1e15 or below 1e-9; `decimals` from 0 fixes the places.
QString format(double value, int decimals = -1);

// `text` with its integer digits grouped by thin spaces ("1 234 567.5"), for display only.
QString grouped(const QString& text);

} // namespace CalcNumber

} // namespace tw
