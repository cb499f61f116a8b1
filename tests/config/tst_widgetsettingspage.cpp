#include "../grid/GridFixture.h"
#include "../market/MarketAnswers.h"
#include "../weather/WeatherRig.h"
#include "Files.h"
#include "HomeAssistantServer.h"
#include "TestRows.h"
#include "config/CalendarSourcesView.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/DesktopWidgetsPage.h"
#include "config/GitHubTokenField.h"
#include "config/PlaceField.h"
#include "config/QuoteField.h"
#include "config/SizePicker.h"
#include "config/SmartHomeAccountView.h"
#include "config/SwitchButton.h"
#include "config/WidgetSettingsPage.h"
#include "connected/ConnectedTiles.h"
#include "desk/CalendarSetup.h"
#include "desk/CalendarSubscriptions.h"
#include "look/ThemeStore.h"
#include "market/MarketServices.h"
#include "net/QtHttpClient.h"
#include "platform/linux/VdirCalendarStore.h"
#include "platform/null/MemorySecretStore.h"
#include "settings/AppSettings.h"
#include "weather/WeatherServices.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace {

// A tile's page over a real store in a temporary directory; resizing goes straight to the store,
// and displays hold tiles up to `widest` points wide.
struct Rig {
    GridFixture grid;
    std::unique_ptr<GridStore> store = grid.fileStore(QStringLiteral("grid.json"));
    AppSettings settings{grid.defaults};
    ThemeStore theme{grid.defaults, grid.clock, QString()};
    double widest = 1000;
    ConfigContext context{.settings = settings, .theme = theme, .defaults = grid.defaults};

    Rig() {
        context.grid = store.get();
        context.registry = &grid.registry;
        context.resizeWidget = [this](const QUuid& id, WidgetSize size) {
            store->setSize({id}, size);
        };
        context.tileFits = [this](const QSizeF& tile) { return tile.width() <= widest; };
    }
    QUuid add(const QString& kind, WidgetSize size) {
        grid.pause();
        return store->addFree(kind, size)->id;
    }
    WidgetInstance tile(const QUuid& id) const { return *store->instance(id); }
    QString setting(const QUuid& id, const QString& key) const {
        return tile(id).settings.value_or(WidgetSettings()).value(key);
    }
    // Each change a step of history of its own.
    bool undo() {
        grid.pause();
        return store->undo();
    }
};

// As a person picks from the list: the box moves, then tells.
void choose(QComboBox* box, int index) {
    box->setCurrentIndex(index);
    box->activated(index);
}

void pickSize(WidgetSettingsPage& page, WidgetSize size) {
    const auto index = page.sizePicker()->sizes().indexOf(size);
    page.sizePicker()->findChildren<QAbstractButton*>().at(index)->click();
}

} // namespace

class tst_WidgetSettingsPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Size, scale and the kind's own options reach the store, and undo takes each back one by
    // one, the page following.
    void changesReachTheStoreAndUndo() {
        Rig rig;
        const QUuid id = rig.add(QStringLiteral("clock"), WidgetSize::large);
        WidgetSettingsPage page(rig.context, id);

        rig.grid.pause();
        pickSize(page, WidgetSize::wide);
        QCOMPARE(rig.tile(id).size, WidgetSize::wide);

        rig.grid.pause();
        page.scaleSlider()->setValue(10);
        QCOMPARE(rig.setting(id, QStringLiteral("tileScale")), QStringLiteral("1.50"));

        rig.grid.pause();
        auto* style = qobject_cast<QComboBox*>(page.optionControl(QStringLiteral("style")));
        QVERIFY(style);
        QCOMPARE(style->currentData().toString(), QStringLiteral("digital"));
        style->activated(style->findData(QStringLiteral("analog")));
        QCOMPARE(rig.setting(id, QStringLiteral("style")), QStringLiteral("analog"));

        rig.grid.pause();
        auto* seconds = qobject_cast<SwitchButton*>(page.optionControl(QStringLiteral("seconds")));
        QVERIFY(seconds && seconds->isChecked());
        seconds->click();
        QCOMPARE(rig.setting(id, QStringLiteral("seconds")), QStringLiteral("false"));

        rig.grid.pause();
        auto* zone = qobject_cast<QLineEdit*>(page.optionControl(QStringLiteral("zone")));
        zone->setText(QStringLiteral("  Europe/Paris "));
        zone->editingFinished();
        QCOMPARE(rig.setting(id, QStringLiteral("zone")), QStringLiteral("Europe/Paris"));
        QVERIFY(rig.grid.savedAsLive(*rig.store));

        QVERIFY(rig.undo());
        QVERIFY(rig.undo());
        QVERIFY(seconds->isChecked());
        QVERIFY(rig.undo());
        QCOMPARE(style->currentData().toString(), QStringLiteral("digital"));
        QVERIFY(rig.undo());
        QCOMPARE(page.scaleSlider()->value(), 0);
        QVERIFY(rig.undo());
        QCOMPARE(rig.tile(id).size, WidgetSize::large);
        QCOMPARE(page.sizePicker()->size(), WidgetSize::large);
        QVERIFY(!rig.tile(id).settings);
    }

    // The countdown's day is picked on a calendar and kept as an ISO day the face reads.
    void dayOptionShowsAndKeepsAnIsoDay() {
        Rig rig;
        const QUuid id = rig.add(QStringLiteral("countdown"), WidgetSize::small);
        rig.grid.pause();
        WidgetSettingsPage page(rig.context, id);
        auto* day = qobject_cast<QDateEdit*>(page.optionControl(QStringLiteral("target")));
        QVERIFY(day);
        day->setDate(QDate(2027, 3, 14));
        day->editingFinished();
        QCOMPARE(rig.setting(id, QStringLiteral("target")), QStringLiteral("2027-03-14"));
        QVERIFY(rig.undo());
        QVERIFY(rig.setting(id, QStringLiteral("target")).isEmpty());
        QVERIFY(day->date() != QDate(2027, 3, 14));
    }

    // A wide tile is 204 points wide at 1×; the displays here hold 300. One change each, kept or
    // refused with the reason and the controls back where the store has them.
    void unfitChangeSaysWhyAndStays_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<int>("scaleStep");
        QTest::addColumn<bool>("refused");
        QTest::newRow("large is as wide") << WidgetSize::large << 0 << false;
        QTest::newRow("banner is 312") << WidgetSize::banner << 0 << true;
        QTest::newRow("1.45x is 295.8") << WidgetSize::wide << 9 << false;
        QTest::newRow("1.5x is 306") << WidgetSize::wide << 10 << true;
    }
    void unfitChangeSaysWhyAndStays() {
        QFETCH(WidgetSize, size);
        QFETCH(int, scaleStep);
        QFETCH(bool, refused);
        Rig rig;
        rig.widest = 300;
        const QUuid id = rig.add(QStringLiteral("clock"), WidgetSize::wide);
        WidgetSettingsPage page(rig.context, id);
        if (scaleStep == 0) {
            pickSize(page, size);
        } else {
            page.scaleSlider()->setValue(scaleStep);
        }
        QCOMPARE(!page.report().isEmpty(), refused);
        QCOMPARE(rig.tile(id).size, refused ? WidgetSize::wide : size);
        QCOMPARE(rig.tile(id).scale(), refused ? 1.0 : 1.0 + scaleStep * 0.05);
        QCOMPARE(page.sizePicker()->size(), rig.tile(id).size);
        QCOMPARE(page.scaleSlider()->value(), refused ? 0 : scaleStep);
    }

    // The weather tile's place: "A city" writes nothing until one is picked; a search goes out a
    // moment after the last key, through the real city search against a loopback server.
    // A symbol is kept only once the service knows it; until then the field says why not. While
    // the person types, the service's matches show a moment after the last key; a click on one
    // checks and keeps it.
    void quoteIsSuggestedAndCheckedBeforeItIsKept() {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Rig rig;
        WeatherRig web;
        web.server.route("/stocks/v8/finance/chart/AAPL", LoopbackHttpServer::ok(chartAnswer()));
        web.server.route("/stocks/v8/finance/chart/APC.F", LoopbackHttpServer::ok(chartAnswer()));
        web.server.route("/stocks/v8/finance/chart/NOPE",
                         LoopbackHttpServer::status(404, chartNotFound));
        web.server.route("/stocks/v1/finance/search", LoopbackHttpServer::ok(R"({"quotes":[
            {"symbol":"AAPL","shortname":"Apple Inc.","typeDisp":"Equity","exchDisp":"NASDAQ"},
            {"symbol":"APC.F","shortname":"Apple Inc.","typeDisp":"Equity","exchDisp":"Frankfurt"}]})"));
        MarketServices market({.http = web.http, .endpoints = web.endpoints, .clock = web.clock});
        rig.context.scheduler = &web.scheduler;
        rig.context.checkQuote = [&](const QString& kind, const QString& key, const QString& text,
                                     const WidgetSettings& settings, const QObject* requester,
                                     std::function<void(const QuoteCheck&)> done) {
            market.check(kind, key, text, settings, web.clock.now(), requester, std::move(done));
        };
        rig.context.suggestQuotes = [&](const QString& kind, const QString& text,
                                        const QObject* requester, ConfigContext::QuotesFound done) {
            market.suggest(kind, text, requester, std::move(done));
        };
        const QUuid id = rig.add(QStringLiteral("stocks"), WidgetSize::wide);
        WidgetSettingsPage page(rig.context, id);
        auto* quote = qobject_cast<QuoteField*>(page.optionControl(QStringLiteral("symbol")));
        QVERIFY(quote);
        QCOMPARE(quote->field()->text(), u"AAPL"_s);
        const auto enter = [&](const QString& text) {
            quote->field()->setText(text);
            Q_EMIT quote->field()->editingFinished();
            return QTest::qWaitFor([&] { return quote->status() != u"Checking…"_s; }, 10'000);
        };
        QVERIFY(enter(u"nope"_s));
        QVERIFY2(quote->status().contains(u"Indices start with a caret"_s),
                 qPrintable(quote->status()));
        QVERIFY(!rig.tile(id).settings);

        quote->field()->clear();
        QTest::keyClicks(quote->field(), u"S&P"_s);
        web.scheduler.advance(QuoteField::debounce - std::chrono::milliseconds(1));
        QCOMPARE(web.requestsTo("/stocks/v1/finance/search"), 0);
        web.scheduler.advance(std::chrono::milliseconds(1));
        QVERIFY(QTest::qWaitFor([&] { return quote->suggestions().size() == 2; }, 10'000));
        QCOMPARE(web.requestsTo("/stocks/v1/finance/search?q=S%26P&"), 1);
        QCOMPARE(quote->suggestions().first()->accessibleName(),
                 u"AAPL · Apple Inc., Equity · NASDAQ"_s);
        quote->suggestions().last()->click();
        QVERIFY(QTest::qWaitFor([&] { return quote->status() != u"Checking…"_s; }, 10'000));
        QCOMPARE(quote->status(), u"Apple Inc. · $189.84"_s);
        QCOMPARE(rig.setting(id, u"symbol"_s), u"APC.F"_s);
        QVERIFY(quote->suggestions().isEmpty());
        QVERIFY(enter(u" aapl "_s));
        QCOMPARE(rig.setting(id, u"symbol"_s), u"AAPL"_s);
    }

    void citySearch_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QString>("status");
        row("places found", LoopbackHttpServer::ok(R"({"results":[
                {"id":2867714,"name":"Munich","latitude":48.137,"longitude":11.575,
                 "country":"Germany","country_code":"DE","admin1":"Bavaria"},
                {"id":4,"name":"Munich","latitude":48.7,"longitude":-99.8,"country":"United States"}]})"),
            QStringList{u"Munich, Bavaria, Germany"_s, u"Munich, United States"_s}, QString());
        row("none found", LoopbackHttpServer::ok(R"({"generationtime_ms":0.4})"), QStringList{},
            "No city called “Mun” was found.");
        row("offline", LoopbackHttpServer::drop(R"({"results":[)"), QStringList{},
            "You’re offline");
        row("server error", LoopbackHttpServer::status(500), QStringList{},
            "Weather data unavailable");
    }
    void citySearch() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        QFETCH(QStringList, shown);
        Rig rig;
        WeatherRig weather;
        weather.server.route("/geocoding/v1/search", answer);
        WeatherServices services(weather.services(nullptr));
        rig.context.scheduler = &weather.scheduler;
        rig.context.searchCities = [&](const QString& text, const QObject* requester,
                                       ConfigContext::CitiesFound done) {
            services.searchCities(text, requester, std::move(done));
        };
        const QUuid id = rig.add(QStringLiteral("weather"), WidgetSize::wide);
        WidgetSettingsPage page(rig.context, id);
        auto* place = qobject_cast<PlaceField*>(page.optionControl(QStringLiteral("location")));
        QVERIFY(place);
        QCOMPARE(place->modeBox()->currentIndex(), 0);
        QVERIFY(place->searchField()->isHidden());

        choose(place->modeBox(), 1);
        QVERIFY(!rig.tile(id).settings);
        QVERIFY(!place->searchField()->isHidden());
        // Going back to where the machine is drops a search not yet sent.
        QTest::keyClicks(place->searchField(), QStringLiteral("Ber"));
        choose(place->modeBox(), 0);
        weather.scheduler.advance(PlaceField::debounce);
        QCOMPARE(place->status(), QString());
        choose(place->modeBox(), 1);
        QVERIFY(place->searchField()->text().isEmpty());

        QTest::keyClicks(place->searchField(), QStringLiteral("Mun"));
        weather.scheduler.advance(PlaceField::debounce - std::chrono::milliseconds(1));
        QCOMPARE(weather.requestsTo("/geocoding/"), 0);
        weather.scheduler.advance(std::chrono::milliseconds(1));
        QVERIFY(QTest::qWaitFor(
            [&] { return !place->results().isEmpty() || place->status() != u"Searching…"_s; },
            10'000));
        QCOMPARE(weather.requestsTo("/geocoding/v1/search?name=Mun&"), 1);
        QStringList names;
        for (QWidget* result : place->results()) {
            names << result->accessibleName();
        }
        QCOMPARE(names, shown);
        QTEST(place->status(), "status");
        if (shown.isEmpty()) {
            QVERIFY(!rig.tile(id).settings);
            return;
        }

        rig.grid.pause();
        qobject_cast<QAbstractButton*>(place->results().first())->click();
        const WidgetSettings munich{{u"location"_s, u"custom"_s},
                                    {u"locName"_s, u"Munich"_s},
                                    {u"locLat"_s, u"48.137000"_s},
                                    {u"locLon"_s, u"11.575000"_s},
                                    {u"locCountry"_s, u"DE"_s}};
        QCOMPARE(*rig.tile(id).settings, munich);
        QVERIFY(place->results().isEmpty());
        QCOMPARE(place->modeBox()->currentIndex(), 1);

        // Where the machine is keeps the city for "A city" to bring back.
        rig.grid.pause();
        choose(place->modeBox(), 0);
        QVERIFY(!rig.tile(id).settings->contains(u"location"_s));
        QVERIFY(place->searchField()->isHidden());
        rig.grid.pause();
        choose(place->modeBox(), 1);
        QCOMPARE(*rig.tile(id).settings, munich);
        QVERIFY(rig.undo());
        QVERIFY(rig.undo());
        QCOMPARE(*rig.tile(id).settings, munich);
        QVERIFY(rig.undo());
        QVERIFY(!rig.tile(id).settings);
        QCOMPARE(place->modeBox()->currentIndex(), 0);
    }

    // A calendar tile's page over a real store and subscriptions from a loopback server: a folder
    // of the person's own, then addresses, each one's fetch deciding whether it is listed; what
    // is added can be chosen at once, and Remove takes it away again.
    void calendarSources_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("status");
        row("not a web address", "ftp://example.org/c.ics",
            "Use an address that begins with webcal:// or https://.");
        row("no such page", "/missing.ics", "The calendar could not be fetched");
        row("a page, no calendar", "/page", "That address gives no calendar.");
        row("a calendar", "/holidays.ics", "");
    }
    void calendarSources() {
        QFETCH(QString, address);
        Rig rig;
        WeatherRig web;
        web.server.route("/page", LoopbackHttpServer::ok("<html>hello</html>"));
        web.server.route("/missing.ics", LoopbackHttpServer::status(404));
        web.server.route("/holidays.ics",
                         LoopbackHttpServer::ok("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
                                                "X-WR-CALNAME:Holidays\r\nEND:VCALENDAR\r\n"));
        QTemporaryDir home;
        const QString mine = home.filePath(u"mine"_s);
        QVERIFY(writeFile(mine + u"/work/displayname"_s, "Work"));
        VdirCalendarStore store({{}, {home.filePath(u"Subscriptions"_s)}});
        CalendarSubscriptions subscriptions(web.http, home.filePath(u"Subscriptions"_s));
        CalendarSetup setup(rig.grid.defaults, store, subscriptions);
        rig.context.calendarSetup = &setup;
        rig.context.clock = &rig.grid.clock;
        rig.context.pickFolder = [&mine](QWidget*) { return mine; };
        rig.context.calendarSources = [&store](const QString&) {
            QList<WidgetOption::Choice> choices;
            for (const CalendarList& list : store.calendars()) {
                choices.append({list.id, list.title});
            }
            return choices;
        };
        WidgetSettingsPage page(rig.context, rig.add(u"calendar"_s, WidgetSize::large));
        auto* box = qobject_cast<QComboBox*>(page.optionControl(u"calendar"_s));
        CalendarSourcesView* sources = page.sources();
        QVERIFY(box && sources);
        QCOMPARE(box->count(), 2);

        sources->addFolderButton()->click();
        QCOMPARE(box->itemText(2), u"Work"_s);
        QCOMPARE(rig.grid.defaults.value(u"tarnwick.calendar.folders"_s).toStringList(),
                 QStringList{QFileInfo(mine).canonicalFilePath()});
        sources->addFolderButton()->click();
        QCOMPARE(sources->status(), u"That folder is already read."_s);

        QTest::keyClicks(sources->addressField(),
                         address.startsWith(u'/') ? web.server.url(address).toString() : address);
        sources->subscribeButton()->click();
        QVERIFY(QTest::qWaitFor([&] { return sources->subscribeButton()->isEnabled(); }, 10'000));
        QFETCH(QString, status);
        QVERIFY2(status.isEmpty() ? sources->status().isEmpty()
                                  : sources->status().startsWith(status),
                 qPrintable(sources->status()));
        const QStringList listed =
            rig.grid.defaults.value(u"tarnwick.calendar.subscriptions"_s).toStringList();
        QCOMPARE(listed.size(), status.isEmpty() ? 1 : 0);
        QCOMPARE(box->count(), status.isEmpty() ? 4 : 3);
        if (status.isEmpty()) {
            QVERIFY(sources->addressField()->text().isEmpty());
            QCOMPARE(box->findText(u"Holidays"_s), 2);
            setup.unsubscribe(listed.first());
            QCOMPARE(box->count(), 3);
        }
        const auto removes = sources->findChildren<QPushButton*>();
        const auto remove = std::find_if(removes.cbegin(), removes.cend(),
                                         [](QPushButton* b) { return b->text() == u"Remove"_s; });
        QVERIFY(remove != removes.cend());
        (*remove)->click();
        QCOMPARE(box->count(), 2);
        QVERIFY(rig.grid.defaults.value(u"tarnwick.calendar.folders"_s).toStringList().isEmpty());
    }

    // A reminders tile's page offers folders but no subscriptions: lists cannot be subscribed to.
    void reminderListsTakeNoAddresses() {
        Rig rig;
        WeatherRig web;
        VdirCalendarStore store({{}, {}});
        QTemporaryDir home;
        CalendarSubscriptions subscriptions(web.http, home.path());
        CalendarSetup setup(rig.grid.defaults, store, subscriptions);
        rig.context.calendarSetup = &setup;
        rig.context.clock = &rig.grid.clock;
        WidgetSettingsPage page(rig.context, rig.add(u"reminders"_s, WidgetSize::large));
        QVERIFY(page.sources() && page.sources()->addFolderButton());
        QVERIFY(!page.sources()->addressField());
    }

    // The hand-picked weather counts only in manual mode, the scene's level only while animated.
    void weatherOptionsDimWhatDoesNotCount() {
        Rig rig;
        const QUuid id = rig.add(QStringLiteral("weather"), WidgetSize::wide);
        WidgetSettingsPage page(rig.context, id);
        QWidget* condition = page.optionControl(QStringLiteral("condition"));
        QWidget* level = page.optionControl(QStringLiteral("sceneLevel"));
        QVERIFY(!condition->isEnabled() && level->isEnabled());
        auto* mode = qobject_cast<QComboBox*>(page.optionControl(QStringLiteral("mode")));
        mode->activated(mode->findData(QStringLiteral("manual")));
        qobject_cast<SwitchButton*>(page.optionControl(QStringLiteral("animate")))->click();
        QCOMPARE(rig.setting(id, QStringLiteral("animate")), QStringLiteral("false"));
        QVERIFY(condition->isEnabled() && !level->isEnabled());
    }

    // The sidebar's list names each tile, opens its page, and follows removals; the page of a
    // removed tile says it is gone.
    // The accounts of the connected tiles go to the keychain, never to the grid; the smart home
    // picker lists what Home Assistant has and keeps the checked entities in the tile's settings.
    void connectedAccounts() {
        Rig rig;
        HomeAssistantServer home;
        home.entities.insert(u"light.kitchen"_s, {u"on"_s, u"Kitchen"_s, {}});
        home.entities.insert(u"sensor.outside"_s, {u"4"_s, u"Outside"_s, u"°C"_s});
        QtHttpClient http(rig.grid.scheduler);
        MemorySecretStore secrets;
        const Endpoints endpoints = Endpoints::fromEnvironment();
        ConnectedTiles connected({.http = http,
                                  .endpoints = endpoints,
                                  .clock = rig.grid.clock,
                                  .scheduler = rig.grid.scheduler,
                                  .secrets = secrets});
        rig.context.connected = &connected;

        const QUuid github = rig.add(u"github"_s, WidgetSize::large);
        {
            WidgetSettingsPage page(rig.context, github);
            auto* token = qobject_cast<GitHubTokenField*>(page.optionControl(u"token"_s));
            QVERIFY(token != nullptr);
            token->field()->setText(u" ghp_typed "_s);
            QTest::keyClick(token->field(), Qt::Key_Return);
            QCOMPARE(secrets.values().value(u"github.token"_s), u"ghp_typed"_s);
            QVERIFY(token->field()->text().isEmpty());
            QVERIFY(connected.github().hasToken());
        }

        const QUuid id = rig.add(u"smarthome"_s, WidgetSize::large);
        WidgetSettingsPage page(rig.context, id);
        auto* account = qobject_cast<SmartHomeAccountView*>(page.optionControl(u"account"_s));
        QVERIFY(account != nullptr);
        account->address()->setText(home.address());
        account->token()->setText(u"expired"_s);
        account->connectButton()->click();
        QTRY_COMPARE(connected.smartHome().board().status, SmartHomeStatus::unauthorised);
        QVERIFY(!account->status()->text().isEmpty());

        account->token()->setText(u"good-token"_s);
        account->connectButton()->click();
        QCOMPARE(secrets.values().value(u"smarthome.token"_s), u"good-token"_s);
        QCOMPARE(secrets.values().value(u"smarthome.address"_s), home.address());
        QTRY_COMPARE(account->entities()->count(), 2);
        const auto check = [&](const QString& entity) {
            for (int row = 0; row < account->entities()->count(); ++row) {
                QListWidgetItem* item = account->entities()->item(row);
                if (item->text().endsWith(entity)) {
                    item->setCheckState(Qt::Checked);
                }
            }
        };
        check(u"sensor.outside"_s);
        check(u"light.kitchen"_s);
        QCOMPARE(rig.setting(id, u"entities"_s), u"sensor.outside,light.kitchen"_s);
        QVERIFY(rig.grid.readGrid().contains("light.kitchen"));
        QVERIFY(!rig.grid.readGrid().contains("good-token"));
    }

    void desktopListOpensPages() {
        Rig rig;
        const QUuid clock = rig.add(QStringLiteral("clock"), WidgetSize::large);
        rig.add(QStringLiteral("trash"), WidgetSize::small);
        ConfigRoot root(rig.context, ColorScheme::Dark);
        auto* sidebar = root.findChild<QListWidget*>();
        QCOMPARE(sidebar->item(1)->text(), QStringLiteral("On the desktop"));
        sidebar->setCurrentRow(1);
        auto* list = root.findChild<DesktopWidgetsPage*>();
        QCOMPARE(list->rowTitles(),
                 (QStringList{QStringLiteral("Clock"), QStringLiteral("Trash")}));

        root.select({.widget = clock});
        auto* stack = root.findChild<QStackedWidget*>();
        auto* page = qobject_cast<WidgetSettingsPage*>(stack->currentWidget());
        QVERIFY(page && page->widgetID() == clock);
        QCOMPARE(root.selection().widget, clock);

        rig.store->remove(clock);
        QCOMPARE(list->rowTitles(), QStringList{QStringLiteral("Trash")});
        QVERIFY(!page->report().isEmpty());
    }
};

QTEST_MAIN(tst_WidgetSettingsPage)
#include "tst_widgetsettingspage.moc"
