#include "TestRows.h"
#include "tools/CalcParser.h"

#include <QTest>

using namespace tw;
using tw::test::row;
using Status = CalcResult::Status;

Q_DECLARE_METATYPE(CalcResult::Status)

class TestCalcParser : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void evaluate_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Status>("status");
        QTest::addColumn<double>("value");
        row("precedence", "2+3*4", Status::ok, 14.0);
        row("left to right", "10-4-3", Status::ok, 3.0);
        row("division before subtraction", "20-8/4/2", Status::ok, 19.0);
        row("parentheses", "(2+3)*4", Status::ok, 20.0);
        row("nested", "((1+2)*(3+4))/7", Status::ok, 3.0);
        row("open parentheses close at the end", "(2+3)*(4", Status::ok, 20.0);
        row("implicit multiplication", "2(3+4)", Status::ok, 14.0);
        row("typographic operators", "6×7−2÷4", Status::ok, 41.5);
        row("unary minus", "-3+5", Status::ok, 2.0);
        row("minus after an operator", "4*-2", Status::ok, -8.0);
        row("double negation", "--3", Status::ok, 3.0);
        row("power is right-associative", "2^3^2", Status::ok, 512.0);
        row("sign binds looser than power", "-2^2", Status::ok, -4.0);
        row("negative exponent", "2^-1", Status::ok, 0.5);
        row("decimals and a comma", "1.5+2,25", Status::ok, 3.75);
        row("leading point", ".5*4", Status::ok, 2.0);
        row("exponent", "1.5e3+1", Status::ok, 1501.0);
        row("an e without digits is no exponent", "2e", Status::invalid, 0.0);
        row("percent alone", "50%", Status::ok, 0.5);
        row("percent added", "200+10%", Status::ok, 220.0);
        row("percent taken off", "80-25%", Status::ok, 60.0);
        row("percent of a product", "200*10%", Status::ok, 20.0);
        row("percent in parentheses is plain", "200+(10%)", Status::ok, 200.1);
        row("spaces", "  7 *  6 ", Status::ok, 42.0);
        row("empty", "   ", Status::empty, 0.0);
        row("trailing operator", "2+", Status::incomplete, 0.0);
        row("open parenthesis at the end", "3*(", Status::incomplete, 0.0);
        row("division by zero", "1/0", Status::divisionByZero, 0.0);
        row("division by a zero sum", "5/(2-2)", Status::divisionByZero, 0.0);
        row("zero to a negative power", "0^-2", Status::divisionByZero, 0.0);
        row("overflow in a product", "1e300*1e300", Status::overflow, 0.0);
        row("overflow in a power", "10^400", Status::overflow, 0.0);
        row("a literal too large", "1e999", Status::overflow, 0.0);
        row("no real root", "(-8)^0.5", Status::undefined, 0.0);
        row("stray closing parenthesis", "2)+3", Status::invalid, 0.0);
        row("two operators", "2*/3", Status::invalid, 0.0);
        row("letters", "2+abc", Status::invalid, 0.0);
        row("two points", "1.2.3", Status::invalid, 0.0);
        row("too deep", QString(500, QLatin1Char('(')) + QLatin1Char('1'), Status::invalid, 0.0);
        row("too long", QString(1001, QLatin1Char('1')), Status::invalid, 0.0);
    }
    void evaluate() {
        QFETCH(QString, text);
        QFETCH(Status, status);
        QFETCH(double, value);
        const CalcResult result = CalcParser::evaluate(text);
        QCOMPARE(result.status, status);
        if (status == Status::ok) {
            QCOMPARE(result.value, value);
        }
    }

    void format_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<QString>("text");
        row("binary noise hidden", 0.1 + 0.2, -1, "0.3");
        row("whole", 42.0, -1, "42");
        row("negative zero", -0.0, -1, "0");
        row("fifteen digits", 2.0 / 3.0, -1, "0.666666666666667");
        row("large stays plain", 123456789012345.0, -1, "123456789012345");
        row("very large", 1.5e20, -1, "1.5e+20");
        row("rounded up into the exponent form", 999999999999999.9, -1, "1e+15");
        row("very small", 2.5e-12, -1, "2.5e-12");
        row("fixed places", 2.0 / 3.0, 2, "0.67");
        row("fixed places drop a sign of nothing", -0.001, 2, "0.00");
    }
    void format() {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(QString, text);
        QCOMPARE(CalcNumber::format(value, decimals), text);
        // What the calculator shows reads back as the same number.
        if (decimals < 0) {
            const CalcResult back = CalcParser::evaluate(text);
            QVERIFY(back.ok());
            QCOMPARE(CalcNumber::format(back.value), text);
        }
    }

    void grouped() {
        QCOMPARE(CalcNumber::grouped(QStringLiteral("1234")), QStringLiteral("1234"));
        QCOMPARE(CalcNumber::grouped(QStringLiteral("-1234567.891")),
                 QStringLiteral("-1\u2009234\u2009567.891"));
    }
};

QTEST_GUILESS_MAIN(TestCalcParser)
#include "tst_calcparser.moc"
