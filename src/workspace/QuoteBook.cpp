#include "workspace/QuoteBook.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <numeric>
#include <vector>

namespace tw::QuoteBook {

namespace {

QList<Quote> readShipped() {
    QFile file(QStringLiteral(":/quotes/quotes.tsv"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<Quote> quotes;
    const QString all = QString::fromUtf8(file.readAll());
    for (const QString& line : all.split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab > 0) {
            quotes.append({line.left(tab).trimmed(), line.mid(tab + 1).trimmed()});
        }
    }
    return quotes;
}

QString unquoted(QString text) {
    static const QString open = QStringLiteral("\"'\u201C\u2018\u00AB");
    static const QString close = QStringLiteral("\"'\u201D\u2019\u00BB");
    text = text.trimmed();
    while (text.size() >= 2 && open.contains(text.front()) && close.contains(text.back())) {
        text = text.mid(1, text.size() - 2).trimmed();
    }
    return text;
}

// splitmix64: a small, well-mixed step that is the same on every machine and run.
quint64 mix(quint64& state) {
    quint64 z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

} // namespace

const QList<Quote>& shipped() {
    static const QList<Quote> quotes = readShipped();
    return quotes;
}

QList<Quote> parse(const QString& lines) {
    static const QRegularExpression separator(QStringLiteral("\\t|\\s+(?:\u2014|--|-|\u2013)\\s+"));
    QList<Quote> quotes;
    for (const QString& raw : lines.split(u'\n')) {
        if (quotes.size() >= mostOwn) {
            break;
        }
        const QString line = raw.trimmed();
        qsizetype at = -1;
        qsizetype length = 0;
        for (auto found = separator.globalMatch(line); found.hasNext();) {
            const auto match = found.next();
            at = match.capturedStart();
            length = match.capturedLength();
        }
        Quote quote;
        if (at > 0) {
            quote = {unquoted(line.left(at)), line.mid(at + length).trimmed()};
        } else {
            quote = {unquoted(line), {}};
        }
        const bool words = std::any_of(quote.text.cbegin(), quote.text.cend(),
                                       [](QChar c) { return c.isLetterOrNumber(); });
        if (words) {
            quotes.append(quote);
        }
    }
    return quotes;
}

QList<Quote> collection(const QString& source, const QString& own) {
    const QList<Quote> mine = source == QLatin1String("shipped") ? QList<Quote>() : parse(own);
    if (source == QLatin1String("own") && !mine.isEmpty()) {
        return mine;
    }
    return mine + shipped();
}

qsizetype pick(qsizetype count, const QDate& day, const QUuid& tile, int shift) {
    if (count <= 0) {
        return -1;
    }
    const QByteArray id = tile.toRfc4122();
    quint64 state = 0;
    for (const char byte : id) {
        state = state * 131 + static_cast<unsigned char>(byte);
    }
    // Each tile shuffles the collection once, by its id, and walks that order day by day.
    std::vector<qsizetype> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = order.size() - 1; i > 0; --i) {
        std::swap(order[i], order[mix(state) % (i + 1)]);
    }
    const qint64 step = (day.isValid() ? day.toJulianDay() : 0) + shift;
    const qint64 slot = ((step % count) + count) % count;
    return order[static_cast<std::size_t>(slot)];
}

QString pickSetting(const QDate& day, int shift) {
    return day.toString(Qt::ISODate) + u' ' + QString::number(shift);
}

int shiftOn(const QString& pick, const QDate& day) {
    const QStringList parts = pick.split(u' ');
    if (parts.size() != 2 || QDate::fromString(parts[0], Qt::ISODate) != day) {
        return 0;
    }
    bool ok = false;
    const int shift = parts[1].toInt(&ok);
    return ok ? shift : 0;
}

} // namespace tw::QuoteBook
