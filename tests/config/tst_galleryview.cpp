// The gallery lists the catalogue by category, filters it by chip and search, adds at the size
// chosen on each card through its handler, and says why a kind cannot be added.
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedReadings.h"
#include "config/GalleryCard.h"
#include "config/GalleryView.h"
#include "custom/CustomBoard.h"
#include "custom/CustomWidgetStore.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceRegistry.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"
#include "readings/Readings.h"
#include "tick/TickCoordinator.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace tw;

namespace {

class OneCustomWidget final : public CustomWidgetDefinitions {
public:
    explicit OneCustomWidget(const CustomWidgetDefinition& widget)
        : m_entry(CustomWidgetStore::makeWidgetDefinition(widget)) {}
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override {
        return kind == m_entry.metadata.kind ? std::optional(m_entry) : std::nullopt;
    }
    QList<WidgetDefinition> widgetDefinitions() const override { return {m_entry}; }

private:
    WidgetDefinition m_entry;
};

} // namespace

class TestGalleryView : public QObject {
    Q_OBJECT

    FaceRegistry m_faces;
    NullSymbolProvider m_symbols;
    test::ManualClock m_clock;

private Q_SLOTS:
    // The previews ask for the readings of the kinds shown, and only while on screen.
    void asksForTheReadingsOfTheKindsShown() {
        test::ScriptedSystemSource system;
        test::InlineRunner runner;
        Readings readings({.system = &system}, m_clock, &runner);
        {
            GalleryView view(m_faces, m_symbols, m_clock);
            view.setReadings(&readings);
            QCOMPARE(readings.demand(), ReadingFeeds());
            view.show();
            QVERIFY(readings.demand().testFlag(ReadingFeed::system));
            view.setQuery(QStringLiteral("countdown"));
            QCOMPARE(readings.demand(), ReadingFeeds());
            view.setQuery(QStringLiteral("cpu"));
            QCOMPARE(readings.demand(), ReadingFeeds(ReadingFeed::system));
            view.hide();
            QCOMPARE(readings.demand(), ReadingFeeds());
            view.show();
        }
        QCOMPARE(readings.demand(), ReadingFeeds());
    }

    // A custom kind's card draws its widget with sample values once it knows the person's
    // widgets, not only its symbol.
    void customCardsDrawWithSampleValues() {
        const CustomWidgetDefinition widget = CustomWidgetTemplates::apiValue();
        OneCustomWidget custom(widget);
        WidgetRegistry registry(&custom);
        GalleryView view(m_faces, m_symbols, m_clock, nullptr, &registry);
        view.setTheme(Theme::defaultTheme());
        GalleryCard* card = view.card(widget.kind());
        QVERIFY(card);
        card->resize(260, card->heightForWidth(260));
        const QImage symbolOnly = card->grab().toImage();
        CustomBoard board;
        board.definitions.insert(widget.kind(), widget);
        view.setCustomBoard(&board);
        QVERIFY(card->grab().toImage() != symbolOnly);
    }

    // Every kind once, category after category, each category in catalogue order.
    void showsEveryKindGroupedByCategory() {
        GalleryView view(m_faces, m_symbols, m_clock);
        const QStringList shown = view.visibleKinds();
        QStringList catalogue;
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            catalogue << definition.metadata.kind;
        }
        QList<std::pair<qsizetype, qsizetype>> places;
        for (const QString& kind : shown) {
            const auto category = std::find(allWidgetCategories.cbegin(),
                                            allWidgetCategories.cend(), widgetCategoryOf(kind));
            places.append({category - allWidgetCategories.cbegin(), catalogue.indexOf(kind)});
        }
        QCOMPARE(QSet<QString>(shown.cbegin(), shown.cend()),
                 QSet<QString>(catalogue.cbegin(), catalogue.cend()));
        QCOMPARE(shown.size(), catalogue.size());
        QVERIFY(std::is_sorted(places.cbegin(), places.cend()));
        QCOMPARE(shown.mid(0, 3), (QStringList{QStringLiteral("clock"), QStringLiteral("weather"),
                                               QStringLiteral("airquality")}));
        QVERIFY(view.message().isEmpty());
    }

    // The chip picks a category ("" is All), the query narrows it; All shows a heading per
    // category with matches, one category none.
    void chipsAndSearchFilter_data() {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("kinds");
        QTest::addColumn<int>("headings");
        const auto row = [](const char* name, const char* chip, const char* query,
                            const char* kinds, int headings) {
            QTest::newRow(name) << QString::fromLatin1(chip) << QString::fromUtf8(query)
                                << QString::fromLatin1(kinds) << headings;
        };
        row("keyword", "", "cpu", "system", 1);
        row("across categories", "", "temperature", "weather,sensors", 2);
        row("name", "", "Music", "nowplaying", 1);
        row("one category", "time", "",
            "simpleclock,flipclock,wordclock,worldclock,timer,stopwatch,pomodoro,countdown,"
            "yearprogress,dayprogress",
            0);
        row("one category and a query", "time", "clock",
            "simpleclock,flipclock,wordclock,worldclock", 0);
        row("nothing in the category", "system", "music", "", 0);
        row("nothing at all", "", "zzz", "", 0);
    }

    void chipsAndSearchFilter() {
        QFETCH(QString, chip);
        QFETCH(QString, query);
        QFETCH(QString, kinds);
        GalleryView view(m_faces, m_symbols, m_clock);
        const QStringList everything = view.visibleKinds();
        QAbstractButton* chosen = nullptr;
        for (auto* button : view.findChildren<QAbstractButton*>(QStringLiteral("chip"))) {
            if (button->property("category").toString() ==
                (chip.isEmpty() ? QStringLiteral("all") : chip)) {
                chosen = button;
            }
        }
        QVERIFY(chosen);
        QTest::mouseClick(chosen, Qt::LeftButton);
        QTest::keyClicks(view.findChild<QLineEdit*>(QStringLiteral("gallery-search")), query);
        QCOMPARE(view.visibleKinds().join(QLatin1Char(',')), kinds);
        QCOMPARE(view.isEmptyStateShown(), kinds.isEmpty());
        int headings = 0;
        for (const QLabel* heading : view.findChildren<QLabel*>(QStringLiteral("sectionHeading"))) {
            headings += heading->isHidden() ? 0 : 1;
        }
        QTEST(headings, "headings");
        // All and an empty query bring everything back.
        view.setCategory(std::nullopt);
        view.setQuery(QString());
        QVERIFY(view.findChildren<QAbstractButton*>(QStringLiteral("chip")).first()->isChecked());
        QCOMPARE(view.visibleKinds(), everything);
    }

    // The keyboard reaches the chips and the search: the arrow keys move the chosen chip, and
    // focusSearch() hands the search field the keys with its text selected.
    void keyboardReachesChipsAndSearch() {
        GalleryView view(m_faces, m_symbols, m_clock);
        view.show();
        QApplication::setActiveWindow(&view);
        QVERIFY(QTest::qWaitForWindowActive(&view));
        const QList<QAbstractButton*> chips =
            view.findChildren<QAbstractButton*>(QStringLiteral("chip"));
        chips.first()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QCOMPARE(view.category(), std::optional(WidgetCategory::system));
        view.setQuery(QStringLiteral("cpu"));
        view.focusSearch();
        auto* field = view.findChild<QLineEdit*>(QStringLiteral("gallery-search"));
        QVERIFY(field->hasFocus());
        QTest::keyClicks(field, QStringLiteral("music"));
        QCOMPARE(view.query(), QStringLiteral("music"));
    }

    // The chosen segment is the only one checked, the preview takes that size's proportions and
    // Add asks for it.
    void sizeChoiceDrivesPreviewAndAdd_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("size"); // "": left at the default
        QTest::addColumn<QString>("asked");
        QTest::addColumn<double>("aspect"); // width over height
        QTest::newRow("default") << "clock"
                                 << ""
                                 << "clock/wide" << 204.0 / 96;
        QTest::newRow("square") << "worldmap"
                                << "large"
                                << "worldmap/large" << 1.0;
        QTest::newRow("largest") << "apps"
                                 << "grand"
                                 << "apps/grand" << 420.0 / 312;
        QTest::newRow("tall") << "clipboard"
                              << "tall"
                              << "clipboard/tall" << 96.0 / 204;
    }

    void sizeChoiceDrivesPreviewAndAdd() {
        QFETCH(QString, kind);
        QFETCH(QString, size);
        QFETCH(double, aspect);
        GalleryView view(m_faces, m_symbols, m_clock);
        QStringList asked;
        view.setAddHandler([&](const QString& k, WidgetSize s) {
            asked << k + QLatin1Char('/') + rawValue(s);
            return GalleryView::AddOutcome::Added;
        });
        GalleryCard* card = view.card(kind);
        QVERIFY(card);
        card->resize(260, card->heightForWidth(260));
        const QList<QPushButton*> segments =
            card->findChildren<QPushButton*>(QStringLiteral("segment"));
        for (QPushButton* segment : segments) {
            if (segment->property("widgetSize").toString() == size) {
                QTest::mouseClick(segment, Qt::LeftButton);
            }
        }
        const auto checked = std::count_if(segments.cbegin(), segments.cend(),
                                           [](const QPushButton* b) { return b->isChecked(); });
        QCOMPARE(checked, 1);
        const QRectF preview = card->previewRect();
        QVERIFY(qAbs(preview.width() / preview.height() - aspect) < 0.01);
        QVERIFY(QRectF(card->rect()).contains(preview));
        QTest::mouseClick(card->addButton(), Qt::LeftButton);
        QTEST(asked.join(QLatin1Char(',')), "asked");
    }

    // The card tells how many may stand on the desktop and turns Add off at the limit; Add says
    // what came of it, and the limit follows a tile added.
    void addAndLimits_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("placed");
        QTest::addColumn<int>("outcome"); // an AddOutcome, or -1 for no handler
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("note"); // after the click
        QTest::addColumn<bool>("enabled"); // Add, after the click
        const auto row = [](const char* name, const char* kind, int placed, int outcome,
                            const char* asked, const char* message, const char* note,
                            bool enabled) {
            QTest::newRow(name) << QString::fromLatin1(kind) << placed << outcome
                                << QString::fromLatin1(asked) << QString::fromUtf8(message)
                                << QString::fromLatin1(note) << enabled;
        };
        using O = GalleryView::AddOutcome;
        row("added, now at the limit", "worldmap", 0, int(O::Added), "worldmap/panorama",
            "World Map is on your desktop now.", "Only one can be on the desktop", false);
        row("added, below the limit", "stocks", 1, int(O::Added), "stocks/wide",
            "Stocks is on your desktop now.", "2 of 6 on the desktop", true);
        row("at the limit of one", "battery", 1, int(O::Added), "", "",
            "Only one can be on the desktop", false);
        row("at the limit of several", "stocks", 6, int(O::Added), "", "", "Up to 6 on the desktop",
            false);
        row("the host refuses", "stocks", 0, int(O::AtMaximum), "stocks/wide",
            "Stocks: at most 6 can be on the desktop, and all 6 are there.", "", true);
        row("full screen", "clock", 0, int(O::NoRoom), "clock/wide",
            "There is no free space for a Clock at Wide (2×1) on the screen. Make room by moving "
            "or removing a widget, or choose a smaller size.",
            "", true);
        row("no handler", "clock", 0, -1, "", "", "", false);
    }

    void addAndLimits() {
        QFETCH(QString, kind);
        QFETCH(int, placed);
        QFETCH(int, outcome);
        GalleryView view(m_faces, m_symbols, m_clock);
        QStringList asked;
        if (outcome >= 0) {
            view.setAddHandler([&](const QString& k, WidgetSize size) {
                asked << k + QLatin1Char('/') + rawValue(size);
                placed += outcome == int(GalleryView::AddOutcome::Added) ? 1 : 0;
                return GalleryView::AddOutcome(outcome);
            });
        }
        view.setPlacedCount([&](const QString& k) { return k == kind ? placed : 0; });
        QSignalSpy added(&view, &GalleryView::added);
        QTest::mouseClick(view.card(kind)->addButton(), Qt::LeftButton);
        QTEST(asked.join(QLatin1Char(',')), "asked");
        QTEST(view.message(), "message");
        const bool addedOne = !asked.isEmpty() && outcome == int(GalleryView::AddOutcome::Added);
        QCOMPARE(added.size(), addedOne ? 1 : 0);
        QTEST(view.card(kind)->limitNote(), "note");
        QTEST(view.card(kind)->addButton()->isEnabled(), "enabled");
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
