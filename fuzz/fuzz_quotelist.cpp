// A person's own list of quotes, whatever they typed: at most the list's length, each quote with
// words, nothing of the separators left at the ends, and a pick that stays inside the list.
#include "Require.h"
#include "workspace/QuoteBook.h"

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString input =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QList<Quote> quotes = QuoteBook::parse(input);
    require(quotes.size() <= QuoteBook::mostOwn, "a list over its length");
    for (const Quote& quote : quotes) {
        require(!quote.text.isEmpty(), "a quote without words");
        require(quote.text == quote.text.trimmed() && quote.author == quote.author.trimmed(),
                "blanks left at the ends");
    }
    const qsizetype index =
        QuoteBook::pick(quotes.size(), QDate(2026, 1, 1), QUuid(), static_cast<int>(size) - 50);
    require(quotes.isEmpty() ? index == -1 : (index >= 0 && index < quotes.size()),
            "a pick outside the list");
    return 0;
}
