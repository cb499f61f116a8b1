#include "TestRows.h"
#include "tools/CalculatorState.h"

#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

// Types `keys`: "B" is backspace, "C" clear, "P" the parenthesis key, "=" equals.
CalculatorState typed(const QString& keys, CalculatorState state = {}) {
    for (const QChar key : keys) {
        if (key == QLatin1Char('B')) {
            state.backspace();
        } else if (key == QLatin1Char('C')) {
            state.clear();
        } else if (key == QLatin1Char('P')) {
            state.parenthesis();
        } else if (key == QLatin1Char('=')) {
            state.equals();
        } else {
            state.type(key);
        }
    }
    return state;
}

} // namespace

class TestCalculatorState : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void keys_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("tape"); // as CalcTape::toText
        row("a sum", "12+30=", "42", "12+30=42");
        row("an operator carries on from the result", "2*3=+1=", "7", "2*3=6\n6+1=7");
        row("a digit after a result starts afresh", "2*3=5", "5", "2*3=6");
        row("an operator on an empty entry takes the last result", "9-4=C*2=", "10",
            "9-4=5\n5*2=10");
        row("the last operator wins", "5+*-3", "5*-3", "");
        row("a second minus is refused", "5*--3", "5*-3", "");
        row("no second point in a number", "1.2.3+4.5.", "1.23+4.5", "");
        row("a point alone gets its zero", ".5+.", "0.5+0.", "");
        row("no leading zeros", "007", "7", "");
        row("percent only after an operand", "%50%%", "50%%", "");
        row("the parenthesis key opens and closes", "P2+3P*P4", "(2+3)*(4", "");
        row("a closing one only where one is open", "2)", "2", "");
        row("backspace", "12+3B4", "12+4", "");
        row("typographic keys", "6×7÷2−1", "6*7/2-1", "");
        row("a failure keeps the entry", "1/0=", "1/0", "");
    }
    void keys() {
        QFETCH(QString, keys);
        QFETCH(QString, entry);
        QFETCH(QString, tape);
        const CalculatorState state = typed(keys);
        QCOMPARE(state.entry, entry);
        QCOMPARE(CalcTape::toText(state.tape), tape);
    }

    void failureShowsUntilTheNextKey() {
        CalculatorState state = typed(QStringLiteral("1/0="));
        QCOMPARE(state.failure, CalcResult::Status::divisionByZero);
        state.backspace();
        QVERIFY(!state.failure);
        QCOMPARE(state.entry, QStringLiteral("1/"));
    }

    void previewAndCopy() {
        CalculatorState state = typed(QStringLiteral("12"));
        QVERIFY(!state.preview());
        QCOMPARE(state.copyText(), QStringLiteral("12"));
        state = typed(QStringLiteral("+0.5*2"), state);
        QCOMPARE(state.preview(), 13.0);
        QCOMPARE(state.copyText(), QStringLiteral("13"));
        state = typed(QStringLiteral("="), state);
        QVERIFY(!state.preview());
        QCOMPARE(state.copyText(), QStringLiteral("13"));
    }

    void paste() {
        CalculatorState state;
        QVERIFY(state.paste(QStringLiteral("1,234.5 × 2")));
        QCOMPARE(state.entry, QStringLiteral("1234.5*2"));
        QVERIFY(!state.paste(QStringLiteral("hello")));
    }

    void tapeKeepsTheNewest() {
        CalculatorState state;
        for (int i = 0; i < CalcTape::maxLines + 5; ++i) {
            state = typed(QString::number(i) + QStringLiteral("+1="), state);
        }
        QCOMPARE(state.tape.size(), CalcTape::maxLines);
        QCOMPARE(state.tape.back().result, QString::number(CalcTape::maxLines + 5));
    }

    void tapeDecoding_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kept");
        row("round trip", "2+2=4\n1.5e+20*2=3e+20", "2+2=4\n1.5e+20*2=3e+20");
        row("bad lines left out", "2+2=4\nrm -rf=1\n=5\n3*3=nine\n\n9=9", "2+2=4\n9=9");
        row("no equals", "12", "");
    }
    void tapeDecoding() {
        QFETCH(QString, text);
        QFETCH(QString, kept);
        QCOMPARE(CalcTape::toText(CalcTape::fromText(text)), kept);
    }
};

QTEST_GUILESS_MAIN(TestCalculatorState)
#include "tst_calculatorstate.moc"
