#include "../grid/GridFixture.h"
#include "TestRows.h"
#include "platform/null/MemoryClipboard.h"
#include "tools/CalculatorBehaviour.h"
#include "tools/PasswordBehaviour.h"
#include "tools/UnitConverterBehaviour.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

TileBehaviour::Key keyOf(const QString& text) {
    if (text == QLatin1String("\n")) {
        return {.key = Qt::Key_Return, .modifiers = {}, .text = text};
    }
    return {.key = 0, .modifiers = {}, .text = text};
}

} // namespace

class TestToolBehaviours : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Keys typed and clicked reach the tile; a result joins the tape in the grid's file at once,
    // so a quit after "=" loses nothing, and the unfinished sum when the tile loses the keys.
    void calculatorKeepsItsTape() {
        GridFixture fixture;
        auto grid = fixture.appStore();
        const WidgetInstance tile = *grid->addFree(QStringLiteral("calculator"));
        MemoryClipboard clipboard;
        CalculatorBehaviour calculator(*grid, fixture.scheduler, clipboard);
        calculator.setTiles({{tile, true}});
        QSignalSpy changed(&calculator, &TileBehaviour::changed);
        for (const QChar c : QStringLiteral("12*3")) {
            QVERIFY(calculator.key(tile, keyOf(c)));
        }
        QVERIFY(calculator.press(tile, QStringLiteral("type:+")));
        QVERIFY(calculator.press(tile, QStringLiteral("type:4")));
        QVERIFY(calculator.key(tile, keyOf(QStringLiteral("\n"))));
        QCOMPARE(changed.size(), 7);
        QCOMPARE(calculator.tile(tile.id)->state.entry, QStringLiteral("40"));
        QVERIFY(fixture.readGrid().contains("12*3+4=40"));

        QVERIFY(calculator.press(tile, QStringLiteral("copy")));
        QCOMPARE(clipboard.text(), QStringLiteral("40"));
        QVERIFY(calculator.tile(tile.id)->copied);
        fixture.scheduler.advance(CopiedFlash::shown);
        QVERIFY(!calculator.tile(tile.id)->copied);

        QVERIFY(calculator.key(tile, keyOf(QStringLiteral("-"))));
        QVERIFY(calculator.key(tile, keyOf(QStringLiteral("1"))));
        calculator.focusChanged(tile, false);
        // A new start reads the tile back as it was left.
        auto reopened = fixture.appStore();
        CalculatorBehaviour again(*reopened, fixture.scheduler, clipboard);
        again.setTiles({{*reopened->instance(tile.id), true}});
        QCOMPARE(again.tile(tile.id)->state.entry, QStringLiteral("40-1"));
        QCOMPARE(again.tile(tile.id)->state.tape.size(), 1);
        // Keys the calculator has no use for are left to the desktop.
        QVERIFY(!again.key(*reopened->instance(tile.id), keyOf(QStringLiteral("q"))));
        QVERIFY(!again.press(*reopened->instance(tile.id), QString()));
    }

    void converterChoosesOnTheTile() {
        GridFixture fixture;
        auto grid = fixture.appStore();
        const WidgetInstance tile = *grid->addFree(QStringLiteral("unitconverter"));
        MemoryClipboard clipboard;
        CurrencyBoard rates;
        rates.latest.insert(QStringLiteral("EUR"),
                            {QStringLiteral("EUR"), {{QStringLiteral("USD"), 1.25}}, {}, {}});
        UnitConverterBehaviour converter(*grid, fixture.scheduler, clipboard,
                                         [&rates] { return &rates; });
        converter.setTiles({{tile, true}});
        QVERIFY(converter.press(tile, QStringLiteral("pick:category")));
        QCOMPARE(converter.tile(tile.id)->state.picking, ConverterState::Picking::category);
        QVERIFY(converter.press(tile, QStringLiteral("choose:currency")));
        QCOMPARE(grid->instance(tile.id)->settings->value(QStringLiteral("category")),
                 QStringLiteral("currency"));
        clipboard.copyText(QStringLiteral(" 80 "));
        QVERIFY(
            converter.key(tile, {.key = Qt::Key_V, .modifiers = Qt::ControlModifier, .text = {}}));
        QVERIFY(converter.press(tile, QStringLiteral("copy")));
        QCOMPARE(clipboard.text(), QStringLiteral("100.00"));
        // The amount typed is kept once the tile lets the keys go.
        converter.focusChanged(tile, false);
        QCOMPARE(grid->instance(tile.id)->settings->value(QStringLiteral("amount")),
                 QStringLiteral("80"));
        // Settings changed elsewhere (an undo, a layout) win over what the tile held.
        grid->setSetting(tile.id, QStringLiteral("category"), QStringLiteral("mass"));
        converter.setTiles({{*grid->instance(tile.id), true}});
        QCOMPARE(converter.tile(tile.id)->state.from, QStringLiteral("kg"));
    }

    void passwordSettings_data() {
        QTest::addColumn<QString>("settings"); // key=value pairs
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("written");
        row("longer", "", "longer", "length=21");
        row("no longer than 64", "length=64", "longer", "length=64");
        row("fewer words", "mode=words words=3", "shorter", "words=3");
        row("a set off", "", "toggle:symbols", "symbols=false");
        row("the last set stays", "lower=false upper=false digits=false", "toggle:symbols", "");
        row("look-alikes are no set", "lower=false upper=false digits=false", "toggle:similar",
            "similar=false");
        row("to words", "", "toggle:mode", "mode=words");
        row("copy writes nothing", "", "copy", "");
    }
    void passwordSettings() {
        QFETCH(QString, settings);
        QFETCH(QString, command);
        QFETCH(QString, written);
        WidgetSettings given;
        for (const QString& pair : settings.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            given.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
        }
        QStringList out;
        const WidgetSettings changes = PasswordBehaviour::settingsFor(command, given);
        for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
            out.append(it.key() + QLatin1Char('=') + it.value());
        }
        QCOMPARE(out.join(QLatin1Char(' ')), written);
    }

    // A password lives in memory only, is copied as a secret, and is made anew for a new recipe
    // but not for a tile that only moved.
    void passwordsStayInMemory() {
        GridFixture fixture;
        auto grid = fixture.appStore();
        const WidgetInstance tile = *grid->addFree(QStringLiteral("passwordgenerator"));
        MemoryClipboard clipboard;
        PasswordBehaviour passwords(*grid, fixture.scheduler, clipboard, RandomPick::system());
        // As the desktop does: each change of the grid hands the tiles over again, at once.
        connect(grid.get(), &GridStore::layoutChanged, &passwords, [&] {
            QList<BehaviourTile> tiles;
            for (const WidgetInstance& instance : grid->layout().instances) {
                tiles.append({instance, true});
            }
            passwords.setTiles(tiles);
        });
        passwords.setTiles({{tile, true}});
        const QString first = passwords.tile(tile.id)->password;
        QCOMPARE(first.size(), 20);
        passwords.setTiles({{tile, false}});
        QCOMPARE(passwords.tile(tile.id)->password, first);
        QVERIFY(passwords.press(tile, QStringLiteral("copy")));
        QCOMPARE(clipboard.text(), first);
        QCOMPARE(clipboard.contents()->data(Clipboard::secretHint), QByteArray("secret"));
        QVERIFY(passwords.press(tile, QStringLiteral("longer")));
        QCOMPARE(passwords.tile(tile.id)->password.size(), 21);
        QVERIFY(passwords.press(*grid->instance(tile.id), QStringLiteral("toggle:mode")));
        QCOMPARE(passwords.tile(tile.id)->recipe.mode, PasswordRecipe::Mode::words);
        QCOMPARE(passwords.tile(tile.id)->password.count(QLatin1Char('-')), 5);
        QVERIFY(!fixture.readGrid().contains(first.toUtf8()));
        QVERIFY(!fixture.readGrid().contains(passwords.tile(tile.id)->password.toUtf8()));
    }
};

QTEST_GUILESS_MAIN(TestToolBehaviours)
#include "tst_toolbehaviours.moc"
