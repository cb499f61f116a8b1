// The gallery lists the catalogue by category, searches it, and adds through its handler with a
// clear word when the host refuses.
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "config/GalleryView.h"
#include "faces/FaceRegistry.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"
#include "tick/TickCoordinator.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace tw;

namespace {

QStringList kindsOf(const QList<WidgetDefinition>& definitions) {
    QStringList kinds;
    for (const WidgetDefinition& definition : definitions) {
        kinds << definition.metadata.kind;
    }
    return kinds;
}

// The catalogue in the order the gallery shows it: by category, then catalogue order.
QStringList groupedKinds() {
    QStringList kinds;
    for (const WidgetRegistry::CategoryGroup& group : WidgetRegistry::grouped()) {
        kinds << kindsOf(group.widgets);
    }
    return kinds;
}

} // namespace

class TestGalleryView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsEveryKindGroupedByCategory();
    void searchFilters_data();
    void searchFilters();
    void typingInTheFieldSearches();
    void addCallsTheHandlerWithTheDefaultSize();
    void refusalsSayWhy_data();
    void refusalsSayWhy();
    void withoutAHandlerNothingCanBeAdded();
    void previewsFollowTheTicker();

private:
    FaceRegistry m_faces;
    NullSymbolProvider m_symbols;
    test::ManualClock m_clock;
};

void TestGalleryView::showsEveryKindGroupedByCategory() {
    GalleryView view(m_faces, m_symbols, m_clock);
    QCOMPARE(view.visibleKinds().size(), WidgetRegistry::all().size());
    QCOMPARE(view.visibleKinds(), groupedKinds());
    QVERIFY(view.message().isEmpty());
}

void TestGalleryView::searchFilters_data() {
    QTest::addColumn<QString>("query");
    QTest::newRow("blank") << QStringLiteral("   ");
    QTest::newRow("a name") << QStringLiteral("clock");
    QTest::newRow("a category title") << QStringLiteral("Ambient");
    QTest::newRow("upper case") << QStringLiteral("WEATHER");
    QTest::newRow("nothing") << QStringLiteral("zzzz");
}

void TestGalleryView::searchFilters() {
    QFETCH(QString, query);
    GalleryView view(m_faces, m_symbols, m_clock);
    view.setQuery(query);
    const QStringList found = kindsOf(WidgetRegistry::search(query));
    QStringList expected;
    for (const QString& kind : groupedKinds()) {
        if (found.contains(kind)) {
            expected << kind;
        }
    }
    QCOMPARE(view.visibleKinds(), expected);
    // Clearing the search brings everything back.
    view.setQuery(QString());
    QCOMPARE(view.visibleKinds().size(), WidgetRegistry::all().size());
}

void TestGalleryView::typingInTheFieldSearches() {
    GalleryView view(m_faces, m_symbols, m_clock);
    auto* field = view.findChild<QLineEdit*>(QStringLiteral("gallery-search"));
    QVERIFY(field);
    QTest::keyClicks(field, QStringLiteral("flip"));
    QCOMPARE(view.visibleKinds(), QStringList{QStringLiteral("flipclock")});
    QCOMPARE(view.query(), QStringLiteral("flip"));
}

void TestGalleryView::addCallsTheHandlerWithTheDefaultSize() {
    GalleryView view(m_faces, m_symbols, m_clock);
    QStringList calls;
    view.setAddHandler([&](const QString& kind, WidgetSize size) {
        calls << kind + QLatin1Char('/') + rawValue(size);
        return GalleryView::AddOutcome::Added;
    });
    QSignalSpy added(&view, &GalleryView::added);
    auto* button = view.findChild<QPushButton*>(QStringLiteral("add-worldmap"));
    QVERIFY(button && button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(calls, QStringList{QStringLiteral("worldmap/panorama")});
    QCOMPARE(added.count(), 1);
    QCOMPARE(added.first().first().toString(), QStringLiteral("worldmap"));
    QVERIFY(view.message().contains(QStringLiteral("World Map")));
}

void TestGalleryView::refusalsSayWhy_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<GalleryView::AddOutcome>("outcome");
    QTest::addColumn<QString>("expected");
    QTest::newRow("only one") << "battery" << GalleryView::AddOutcome::AtMaximum
                              << "Only one Battery can be on the desktop, and it is already there.";
    QTest::newRow("several") << "stocks" << GalleryView::AddOutcome::AtMaximum
                             << "Stocks: at most 6 can be on the desktop, and all 6 are there.";
    QTest::newRow("full screen") << "clock" << GalleryView::AddOutcome::NoRoom
                                 << "There is no free space for a Clock on the screen. Make room "
                                    "by moving or removing a widget.";
}

void TestGalleryView::refusalsSayWhy() {
    QFETCH(QString, kind);
    QFETCH(GalleryView::AddOutcome, outcome);
    GalleryView view(m_faces, m_symbols, m_clock);
    view.setAddHandler([&](const QString&, WidgetSize) { return outcome; });
    QSignalSpy added(&view, &GalleryView::added);
    QCOMPARE(view.add(kind), outcome);
    QTEST(view.message(), "expected");
    QCOMPARE(added.count(), 0);
}

void TestGalleryView::withoutAHandlerNothingCanBeAdded() {
    GalleryView view(m_faces, m_symbols, m_clock);
    for (const QPushButton* button : view.findChildren<QPushButton*>()) {
        QVERIFY(!button->isEnabled());
    }
    QCOMPARE(view.add(QStringLiteral("clock")), GalleryView::AddOutcome::NoRoom);
    QVERIFY(view.message().isEmpty());
}

void TestGalleryView::previewsFollowTheTicker() {
    test::ManualClock clock(m_clock.now().addDays(1));
    test::ManualScheduler scheduler(&clock);
    TickCoordinator ticker(scheduler, clock);
    GalleryView view(m_faces, m_symbols, m_clock);
    QCOMPARE(view.now(), m_clock.now());
    view.followTicker(ticker);
    QCOMPARE(view.now(), clock.now());
    ticker.setPreviewActive(true);
    scheduler.advance(std::chrono::milliseconds(3000));
    QCOMPARE(view.now(), clock.now());
    ticker.setPreviewActive(false);
    const QDateTime stopped = view.now();
    scheduler.advance(std::chrono::milliseconds(3000));
    QCOMPARE(view.now(), stopped);
}

QTEST_MAIN(TestGalleryView)
#include "tst_galleryview.moc"
