// Unbiased choice from a source of random 32-bit words: the password generator's only dice.
#pragma once

#include <QtGlobal>

#include <functional>

namespace tw {

// The system's cryptographic source in the program; a seeded one in tests.
using RandomSource = std::function<quint32()>;

namespace RandomPick {

// QRandomGenerator::system(): the operating system's cryptographic source.
RandomSource system();

// A number in [0, n), every one equally likely: words from the top of the range that would
// favour the low numbers are drawn again rather than folded in. `n` must be at least 1.
quint32 below(const RandomSource& source, quint32 n);

} // namespace RandomPick

} // namespace tw
