#include "ManualClock.h"
#include "ManualScheduler.h"
#include "config/NoticeSheet.h"
#include "config/NoticeSlot.h"
#include "net/QtHttpClient.h"
#include "notices/NoticeService.h"
#include "platform/null/MemoryDefaults.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

struct Rig {
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    MemoryDefaults defaults;
    NoticeService service{NoticeService::Services{.http = http,
                                                  .clock = clock,
                                                  .scheduler = scheduler,
                                                  .defaults = defaults,
                                                  .registry = nullptr,
                                                  .workspace = nullptr},
                          NoticeService::Setup{.feedUrl = {},
                                               .testing = false,
                                               .cachePath = {},
                                               .dataDirectory = {},
                                               .version = QStringLiteral("1.0"),
                                               .language = QStringLiteral("en")}};
};

} // namespace

class TestNoticeSlot : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A notice counts as shown when a person can see it, and a button carries out its action.
    void showsCountsAndActs_data() {
        QTest::addColumn<QString>("press");
        QTest::addColumn<bool>("dismissed");
        QTest::newRow("close") << QStringLiteral("Close") << true;
        QTest::newRow("the first action") << QStringLiteral("Not now") << true;
        QTest::newRow("copy keeps it") << QStringLiteral("Copy code") << false;
    }
    void showsCountsAndActs() {
        QFETCH(QString, press);
        QFETCH(bool, dismissed);
        Rig rig;
        NoticeService& service = rig.service;
        const ManualClock& clock = rig.clock;
        service.apply("{\"notices\":[{\"id\":\"n\",\"code\":\"C0DE\",\"title\":{\"en\":\"Hello\"}, "
                      "\"actions\":[{\"kind\":\"dismiss\"},{\"kind\":\"copy\"}]}, "
                      "{\"id\":\"menu-only\",\"placements\":[\"menu\"]}]}",
                      clock.now());
        QStringList copied;
        service.copyToClipboard = [&copied](const QString& text) { copied.append(text); };

        QWidget window;
        auto* slot = new NoticeSlot(service, Notice::Placement::banner, NoticeCard::Style::banner,
                                    nullptr, &window);
        QCOMPARE(slot->notice()->id, QStringLiteral("n"));
        QCOMPARE(service.state().record(QStringLiteral("n")).count, 0);
        window.show();
        QVERIFY(slot->isVisible());
        QCOMPARE(service.state().record(QStringLiteral("n")).count, 1);
        QVERIFY(!service.state().records.contains(QStringLiteral("menu-only")));

        QSignalSpy occupied(slot, &NoticeSlot::occupiedChanged);
        QPushButton* button = nullptr;
        for (QPushButton* b : slot->findChildren<QPushButton*>()) {
            if (b->text() == press || b->accessibleName() == press) {
                button = b;
            }
        }
        QVERIFY(button);
        button->click();
        QCOMPARE(service.state().record(QStringLiteral("n")).dismissed, dismissed);
        QCOMPARE(slot->isVisible(), !dismissed);
        QCOMPARE(occupied.size(), dismissed ? 1 : 0);
        QCOMPARE(copied, dismissed ? QStringList() : QStringList{QStringLiteral("C0DE")});
    }

    // A sheet notice stands over the window until it is put away; without one nothing does.
    void presentsASheetWhenDue() {
        Rig rig;
        QWidget window;
        window.resize(600, 400);
        window.show();
        QVERIFY(!NoticeSheet::presentIfDue(rig.service, nullptr, window));
        rig.service.apply("{\"notices\":[{\"id\":\"s\",\"placements\":[\"sheet\"]}]}",
                          rig.clock.now());
        QPointer<NoticeSheet> sheet = NoticeSheet::presentIfDue(rig.service, nullptr, window);
        QVERIFY(sheet);
        QCOMPARE(sheet->geometry(), window.rect());
        window.resize(700, 500);
        QCOMPARE(sheet->geometry(), window.rect());
        rig.service.dismiss(*rig.service.top(Notice::Placement::sheet));
        QVERIFY(sheet->isHidden());
        QTRY_VERIFY(!sheet);
    }
};

QTEST_MAIN(TestNoticeSlot)
#include "tst_noticeslot.moc"
