#include "TestRows.h"
#include "tools/ToolInput.h"

#include <QTest>

using namespace tw;
using tw::test::row;
using Outcome = ToolInput::Outcome;

Q_DECLARE_METATYPE(ToolInput::Outcome)

class TestToolInput : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A key on a calculator whose entry is "12+3", and what the entry is after it.
    void calculatorKeys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("entry");
        row("a digit", 0, 0, "4", Outcome::changed, "12+34");
        row("x multiplies", 0, 0, "x", Outcome::changed, "12+3*");
        row("Return works it out", int(Qt::Key_Return), 0, "\r", Outcome::changed, "15");
        row("Backspace", int(Qt::Key_Backspace), 0, "\b", Outcome::changed, "12+");
        row("Escape clears", int(Qt::Key_Escape), 0, "\x1b", Outcome::changed, "");
        row("a letter is the desktop's", 0, 0, "q", Outcome::ignored, "12+3");
        row("a point", 0, 0, ".", Outcome::changed, "12+3.");
        row("a closing parenthesis with none open does nothing", 0, 0, ")", Outcome::unchanged,
            "12+3");
        row("Ctrl+C copies", int(Qt::Key_C), int(Qt::ControlModifier), "", Outcome::copy, "12+3");
        row("Ctrl+V pastes", int(Qt::Key_V), int(Qt::ControlModifier), "", Outcome::paste, "12+3");
        row("other shortcuts are the desktop's", int(Qt::Key_Z), int(Qt::ControlModifier), "",
            Outcome::ignored, "12+3");
    }
    void calculatorKeys() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QFETCH(Outcome, outcome);
        QFETCH(QString, entry);
        CalculatorState state;
        state.entry = QStringLiteral("12+3");
        QCOMPARE(ToolInput::calculatorKey(state, key, Qt::KeyboardModifiers(modifiers), text, -1),
                 outcome);
        QCOMPARE(state.entry, entry);
    }

    // A key or command on a converter from km to mi, and the units and amount after it.
    void converterInput_data() {
        QTest::addColumn<int>("key"); // 0: `text` is a command
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("after"); // category from to amount
        row("Down: the next target", int(Qt::Key_Down), 0, "", Outcome::changed, "length km nmi 1");
        row("Shift+Up: the source before", int(Qt::Key_Up), int(Qt::ShiftModifier), "",
            Outcome::changed, "length m mi 1");
        row("Page Down: the next category", int(Qt::Key_PageDown), 0, "", Outcome::changed,
            "mass kg lb 1");
        row("Tab swaps", int(Qt::Key_Tab), 0, "", Outcome::changed, "length mi km 1");
        row("Return copies", int(Qt::Key_Return), 0, "", Outcome::copy, "length km mi 1");
        row("a digit replaces", int(Qt::Key_5), 0, "5", Outcome::changed, "length km mi 5");
        row("a letter is the desktop's", int(Qt::Key_Q), 0, "q", Outcome::ignored,
            "length km mi 1");
        row("a unit chosen", 0, 0, "pick:to choose:ft", Outcome::changed, "length km ft 1");
        row("a unit of another category", 0, 0, "pick:to choose:kg", Outcome::changed,
            "length km mi 1");
        row("a category chosen", 0, 0, "pick:category choose:speed", Outcome::changed,
            "speed kmh mph 1");
        row("a key on the pad", 0, 0, "type:7 type:.", Outcome::changed, "length km mi 7.");
        row("an unknown command", 0, 0, "launch", Outcome::ignored, "length km mi 1");
    }
    void converterInput() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QFETCH(Outcome, outcome);
        QFETCH(QString, after);
        ConverterState state;
        Outcome last = Outcome::ignored;
        if (key == 0) {
            for (const QString& command : text.split(QLatin1Char(' '))) {
                last = ToolInput::converterCommand(state, command);
            }
        } else {
            last = ToolInput::converterKey(state, key, Qt::KeyboardModifiers(modifiers), text);
        }
        QCOMPARE(last, outcome);
        QCOMPARE(QStringList({state.category, state.from, state.to, state.amount})
                     .join(QLatin1Char(' ')),
                 after);
        QCOMPARE(state.picking, ConverterState::Picking::none);
    }
};

QTEST_GUILESS_MAIN(TestToolInput)
#include "tst_toolinput.moc"
