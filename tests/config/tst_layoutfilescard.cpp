#include "Files.h"
#include "ManualClock.h"
#include "backup/AutoBackup.h"
#include "config/BoardOfferDialog.h"
#include "config/ConfigContext.h"
#include "config/LayoutFilesCard.h"
#include "look/ThemeStore.h"
#include "platform/null/MemoryDefaults.h"
#include "settings/AppSettings.h"

#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

QPushButton* buttonNamed(const QWidget& parent, const QString& text) {
    for (QPushButton* button : parent.findChildren<QPushButton*>()) {
        if (button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

} // namespace

class TestLayoutFilesCard : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // "Back Up Now" writes even when nothing changed; the list shows the newest first.
    void backsUpOnRequestAndListsNewestFirst() {
        QTemporaryDir dir;
        MemoryDefaults defaults;
        test::ManualClock clock;
        AppSettings settings(defaults);
        ThemeStore theme(defaults, clock, dir.filePath(QStringLiteral("theme.json")));
        ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
        context.dataDirectory = dir.path();
        context.clock = &clock;
        test::writeFile(dir.filePath(QStringLiteral("grid.json")), R"({"instances":[]})");
        LayoutFilesCard card(context);
        QVERIFY(card.entries().isEmpty());
        QPushButton* now = buttonNamed(card, QStringLiteral("Back Up Now"));
        QVERIFY(now);
        now->click();
        clock.advance(std::chrono::minutes(1));
        now->click();
        QCOMPARE(card.entries().size(), 2);
        QVERIFY(card.entries().at(0).date > card.entries().at(1).date);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const QList<QPushButton*> buttons = card.findChildren<QPushButton*>();
        QCOMPARE(std::count_if(
                     buttons.cbegin(), buttons.cend(),
                     [](const QPushButton* b) { return b->text() == QStringLiteral("Restore…"); }),
                 2);
    }

    void offerDrawsEveryTileAndTellsTheChoice_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("choice");
        QTest::newRow("add") << "Add to Desktop" << int(BoardOfferDialog::Choice::add);
        QTest::newRow("replace") << "Replace Desktop" << int(BoardOfferDialog::Choice::replace);
        QTest::newRow("cancel") << "Cancel" << int(BoardOfferDialog::Choice::cancel);
    }
    void offerDrawsEveryTileAndTellsTheChoice() {
        QFETCH(QString, button);
        QFETCH(int, choice);
        Board board;
        board.items = {{.kind = QStringLiteral("clock"),
                        .size = WidgetSize::small,
                        .dx = 0,
                        .dy = 0,
                        .settings = std::nullopt},
                       {.kind = QStringLiteral("weather"),
                        .size = WidgetSize::wide,
                        .dx = 108,
                        .dy = 0,
                        .settings = std::nullopt}};
        QStringList drawn;
        BoardOfferDialog offer(
            board,
            [&drawn](QPainter&, const QRectF&, const WidgetInstance& instance) {
                drawn.append(instance.kind);
            },
            QImage());
        QCOMPARE(drawn, (QStringList{QStringLiteral("clock"), QStringLiteral("weather")}));
        QCOMPARE(offer.windowTitle(), QStringLiteral("Add this board?"));
        buttonNamed(offer, button)->click();
        QCOMPARE(int(offer.choice()), choice);
    }
};

QTEST_MAIN(TestLayoutFilesCard)
#include "tst_layoutfilescard.moc"
