// Where the quote tile's quotes come from: the collection shipped with the program, the
// person's own list, or both; and which one a tile shows on a day.
#pragma once

#include "workspace/Quote.h"

#include <QDate>
#include <QList>
#include <QUuid>

namespace tw {

namespace QuoteBook {

// A list of own quotes holds at most this many; the rest of a longer one is left out.
inline constexpr qsizetype mostOwn = 500;

// The shipped collection, read once from the program's resources.
const QList<Quote>& shipped();

// The person's own quotes, one a line: the words, then the author after " — ", " -- ", " - "
// or a tab (the last one on the line); quotation marks around the words go. Blank lines and
// lines of marks alone are skipped.
QList<Quote> parse(const QString& lines);

// The quotes a tile draws from: "source" is "shipped", "own" or "both"; own quotes alone when
// there are none fall back to the shipped ones.
QList<Quote> collection(const QString& source, const QString& own);

// The index into a collection of `count` that a tile shows on `day`, `shift` clicks on: each
// tile walks its own order of the collection, a step a day, so that no quote comes back
// before all the others have been shown. -1 for an empty collection.
qsizetype pick(qsizetype count, const QDate& day, const QUuid& tile, int shift);

// The "pick" setting of a tile clicked `shift` times on `day`, and the clicks it holds for `day`
// (none from another day, so that each day starts on its own quote).
QString pickSetting(const QDate& day, int shift);
int shiftOn(const QString& pick, const QDate& day);

} // namespace QuoteBook

} // namespace tw
