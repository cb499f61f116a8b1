#include "TestRows.h"
#include "workspace/QuoteBook.h"

#include <QSet>
#include <QTest>

using namespace tw;
using tw::test::row;

class TestQuoteBook : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void shippedCollection() {
        const QList<Quote>& quotes = QuoteBook::shipped();
        QVERIFY2(quotes.size() >= 150, qPrintable(QString::number(quotes.size())));
        QSet<QString> texts;
        for (const Quote& quote : quotes) {
            QVERIFY2(!quote.author.isEmpty(), qPrintable(quote.text));
            QVERIFY2(!texts.contains(quote.text), qPrintable(quote.text));
            texts.insert(quote.text);
        }
    }

    void parse_data() {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("expected"); // "text|author" per quote, "/" between
        row("em dash", "Be brief. — Me", "Be brief.|Me");
        row("two hyphens and a tab", "One -- A\nTwo\tB", "One|A/Two|B");
        row("the last dash names the author", "Half - and half - Anon", "Half - and half|Anon");
        row("a hyphen inside a word stays", "Well-made things", "Well-made things|");
        row("marks around the words go", "“Quoted” — Q", "Quoted|Q");
        row("blank and markless lines are skipped", "\n  \n---\n— \nreal", "real|");
        row("windows line ends", "a — b\r\nc", "a|b/c|");
    }
    void parse() {
        QFETCH(QString, lines);
        QFETCH(QString, expected);
        QStringList got;
        for (const Quote& quote : QuoteBook::parse(lines)) {
            got.append(quote.text + u'|' + quote.author);
        }
        QCOMPARE(got.join(u'/'), expected);
    }

    void ownListIsCapped() {
        QStringList many;
        for (int i = 0; i < QuoteBook::mostOwn + 50; ++i) {
            many.append(QStringLiteral("q%1").arg(i));
        }
        QCOMPARE(QuoteBook::parse(many.join(u'\n')).size(), QuoteBook::mostOwn);
    }

    void collection_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("own");
        QTest::addColumn<int>("extra"); // own quotes on top of the shipped ones; -1: own alone
        row("shipped ignores the own list", "shipped", "a\nb", 0);
        row("own alone", "own", "a\nb", -1);
        row("own and empty falls back", "own", "  ", 0);
        row("both", "both", "a\nb", 2);
    }
    void collection() {
        QFETCH(QString, source);
        QFETCH(QString, own);
        QFETCH(int, extra);
        const qsizetype shipped = QuoteBook::shipped().size();
        QCOMPARE(QuoteBook::collection(source, own).size(), extra < 0 ? 2 : shipped + extra);
    }

    // Stable through a day, a new one the next, and no quote again before all have shown.
    void pickWalksEveryQuote() {
        const QUuid tile = QUuid::createUuid();
        const QDate start(2026, 3, 1);
        const qsizetype count = 37;
        QSet<qsizetype> seen;
        for (int d = 0; d < count; ++d) {
            const qsizetype index = QuoteBook::pick(count, start.addDays(d), tile, 0);
            QVERIFY(index >= 0 && index < count);
            QCOMPARE(QuoteBook::pick(count, start.addDays(d), tile, 0), index);
            seen.insert(index);
        }
        QCOMPARE(seen.size(), count);
        // A click steps to the next day's quote; another tile has its own order.
        QCOMPARE(QuoteBook::pick(count, start, tile, 1),
                 QuoteBook::pick(count, start.addDays(1), tile, 0));
        QCOMPARE(QuoteBook::pick(count, start, tile, -1),
                 QuoteBook::pick(count, start.addDays(-1), tile, 0));
        int differ = 0;
        for (int d = 0; d < 10; ++d) {
            differ += QuoteBook::pick(count, start.addDays(d), tile, 0) !=
                      QuoteBook::pick(count, start.addDays(d), QUuid::createUuid(), 0);
        }
        QVERIFY(differ > 5);
        QCOMPARE(QuoteBook::pick(0, start, tile, 0), -1);
    }
};

QTEST_GUILESS_MAIN(TestQuoteBook)
#include "tst_quotebook.moc"
