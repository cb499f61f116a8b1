// How a typed query finds widget kinds: every word of the query must begin a word a kind is known
// by, with case and accents ignored.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace tw {

namespace WidgetSearch {

// The words of `text`, case-folded and stripped of accents; anything but letters and digits
// separates words.
QStringList words(QStringView text);
// Whether each of `query` (folded words) begins one of `known` (folded words). No query words
// match everything.
bool matches(const QStringList& query, const QStringList& known);

} // namespace WidgetSearch

} // namespace tw
