// The gallery lists the catalogue by category, searches it, and adds through its handler with a
// clear word when the host refuses.
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "config/GalleryView.h"
#include "faces/FaceRegistry.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"
#include "tick/TickCoordinator.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace tw;

class TestGalleryView : public QObject {
    Q_OBJECT

    FaceRegistry m_faces;
    NullSymbolProvider m_symbols;
    test::ManualClock m_clock;

private Q_SLOTS:
    // Every kind the registry's search finds, category after category, each category in
    // catalogue order; a blank query finds everything, and clearing the search brings it back.
    void searchFilters_data() {
        QTest::addColumn<QString>("query");
        QTest::newRow("blank") << "   ";
        QTest::newRow("a category and names across categories") << "time";
        QTest::newRow("nothing") << "zzzz";
    }
    void searchFilters() {
        QFETCH(QString, query);
        QStringList grouped;
        for (const WidgetRegistry::CategoryGroup& group : WidgetRegistry::grouped()) {
            for (const WidgetDefinition& definition : group.widgets) {
                grouped << definition.metadata.kind;
            }
        }
        QStringList expected;
        for (const WidgetDefinition& definition : WidgetRegistry::search(query)) {
            expected << definition.metadata.kind;
        }
        std::sort(expected.begin(), expected.end(), [&grouped](const QString& a, const QString& b) {
            return grouped.indexOf(a) < grouped.indexOf(b);
        });
        GalleryView view(m_faces, m_symbols, m_clock);
        QCOMPARE(view.visibleKinds(), grouped);
        auto* field = view.findChild<QLineEdit*>(QStringLiteral("gallery-search"));
        QVERIFY(field);
        QTest::keyClicks(field, query);
        QCOMPARE(view.query(), query);
        QCOMPARE(view.visibleKinds(), expected);
        view.setQuery(QString());
        QCOMPARE(view.visibleKinds(), grouped);
    }

    // A click on a card's button asks the handler for the kind's default size and says what came of
    // it; without a handler the buttons are off and nothing is added.
    void addSaysWhatHappened_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("outcome"); // an AddOutcome, or -1 for no handler
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, const char* kind, int outcome, const char* message) {
            QTest::newRow(name) << QString::fromLatin1(kind) << outcome
                                << QString::fromLatin1(message);
        };
        using O = GalleryView::AddOutcome;
        row("added", "worldmap", int(O::Added), "World Map is on your desktop now.");
        row("only one", "battery", int(O::AtMaximum),
            "Only one Battery can be on the desktop, and it is already there.");
        row("several", "stocks", int(O::AtMaximum),
            "Stocks: at most 6 can be on the desktop, and all 6 are there.");
        row("full screen", "clock", int(O::NoRoom),
            "There is no free space for a Clock on the screen. Make room by moving or removing a "
            "widget.");
        row("no handler", "clock", -1, "");
    }

    void addSaysWhatHappened() {
        QFETCH(QString, kind);
        QFETCH(int, outcome);
        GalleryView view(m_faces, m_symbols, m_clock);
        QStringList asked;
        if (outcome >= 0) {
            view.setAddHandler([&](const QString& k, WidgetSize size) {
                asked << k + QLatin1Char('/') + rawValue(size);
                return GalleryView::AddOutcome(outcome);
            });
        }
        QSignalSpy added(&view, &GalleryView::added);
        auto* button = view.findChild<QPushButton*>(QStringLiteral("add-") + kind);
        QVERIFY(button);
        QCOMPARE(button->isEnabled(), outcome >= 0);
        QTest::mouseClick(button, Qt::LeftButton);
        const WidgetSize size = WidgetRegistry::builtInDefinition(kind)->metadata.defaultSize;
        QCOMPARE(asked, outcome < 0 ? QStringList() : QStringList(kind + u'/' + rawValue(size)));
        QTEST(view.message(), "message");
        QCOMPARE(added.size(), outcome == int(GalleryView::AddOutcome::Added) ? 1 : 0);
        const auto expected =
            outcome >= 0 ? GalleryView::AddOutcome(outcome) : GalleryView::AddOutcome::NoRoom;
        QCOMPARE(view.add(kind), expected);
    }

    void previewsFollowTheTicker() {
        test::ManualClock clock(m_clock.now().addDays(1));
        test::ManualScheduler scheduler(&clock);
        TickCoordinator ticker(scheduler, clock, clock);
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
};

QTEST_MAIN(TestGalleryView)
#include "tst_galleryview.moc"
