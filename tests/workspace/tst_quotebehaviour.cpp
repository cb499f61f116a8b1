// A click on a quote tile steps it on for the rest of the day, without a step of undo.
#include "ManualScheduler.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "workspace/QuoteBehaviour.h"
#include "workspace/QuoteBook.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;

class TestQuoteBehaviour : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void clicksStepOnForTheDay() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        WidgetRegistry registry;
        GridStore grid({.clock = clock, .scheduler = scheduler, .registry = registry},
                       dir.filePath(QStringLiteral("grid.json")));
        QuoteBehaviour quotes(grid, clock);
        const QUuid id = grid.addFree(QStringLiteral("quote"), std::nullopt, {})->id;
        const auto pick = [&] {
            return grid.instance(id)->setting(QStringLiteral("pick")).value_or(QString());
        };
        QVERIFY(quotes.press(*grid.instance(id), QString()));
        QVERIFY(quotes.press(*grid.instance(id), QStringLiteral("next")));
        const QDate today = clock.now().date();
        QCOMPARE(QuoteBook::shiftOn(pick(), today), 2);
        // The next day starts on its own quote, and a click there counts from there.
        clock.advance(std::chrono::hours(24));
        QCOMPARE(QuoteBook::shiftOn(pick(), clock.now().date()), 0);
        QVERIFY(quotes.press(*grid.instance(id), QString()));
        QCOMPARE(QuoteBook::shiftOn(pick(), clock.now().date()), 1);
        QVERIFY(!quotes.press(*grid.instance(id), QStringLiteral("other")));
        // The one step to undo is the tile's arrival, not a quote.
        grid.undo();
        QVERIFY(!grid.instance(id));
    }
};

QTEST_GUILESS_MAIN(TestQuoteBehaviour)
#include "tst_quotebehaviour.moc"
