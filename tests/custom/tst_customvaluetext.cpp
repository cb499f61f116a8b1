#include "TestRows.h"
#include "custom/CustomValueText.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

class TestCustomValueText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void number_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals"); // -99: none given
        QTest::addColumn<QString>("text");
        row("small fraction, one decimal", 3.14159, -99, "3.1");
        row("whole, none", 42.0, -99, "42");
        row("fraction of 100 or more, none", 1234.56, -99, "1,235");
        row("negative fraction", -99.94, -99, "-99.9");
        row("rounds to zero without a sign", -0.04, -99, "0.0");
        row("given decimals", 2.0, 2, "2.00");
        row("rounding", 0.125, 2, "0.13");
        row("more than six held", 1.23456789, 9, "1.234568");
        row("negative held to none", 2.7, -2, "3");
        row("huge", 1e20, -99, "100,000,000,000,000,000,000");
        row("not a number", qQNaN(), 1, "—");
        row("infinite", qInf(), -99, "—");
    }
    void number() {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QTEST(CustomValueText::number(value,
                                      decimals == -99 ? std::nullopt : std::optional(decimals)),
              "text");
    }

    void text_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("elementText");
        QTest::addColumn<QString>("shown");
        row("prefix, number, suffix", "price", "", "$1,234.50 USD");
        row("number from the text's token", "", "{data:price} now", "$1,234.50 USD");
        row("no number shows the text", "", "{data:name}", "Example");
        row("a reading not there yet", "", "{cpu}%", "{cpu}%");
        row("nothing at all", "missing", "", "—");
    }
    void text() {
        QFETCH(QString, path);
        QFETCH(QString, elementText);
        CustomValueBag values;
        values.data = CustomJSON::parse(R"({"price": 1234.5, "name": "Example"})");
        CustomElement element;
        element.type = CustomElementType::value;
        element.path = path;
        element.text = elementText.isEmpty() ? std::nullopt : std::optional(elementText);
        element.decimals = 2;
        element.prefix = u"$"_s;
        element.suffix = u" USD"_s;
        QTEST(CustomValueText::text(element, values), "shown");
    }

    void fraction_data() {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("fraction");
        const double none = qQNaN(); // the end is not given
        row("no ends: 0 to 100", none, none, 25.0, 0.25);
        row("own ends", 10.0, 20.0, 15.0, 0.5);
        row("above the top", 10.0, 20.0, 25.0, 1.0);
        row("below the bottom", none, 20.0, -5.0, 0.0);
        row("ends meet", 5.0, 5.0, 5.0, 0.0);
        row("ends backwards", 20.0, 10.0, 15.0, 0.0);
    }
    void fraction() {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(double, value);
        QFETCH(double, fraction);
        CustomElement element;
        element.type = CustomElementType::gauge;
        element.min = std::isnan(min) ? std::nullopt : std::optional(min);
        element.max = std::isnan(max) ? std::nullopt : std::optional(max);
        QCOMPARE(CustomValueText::fraction(element, value), fraction);
    }
};

QTEST_GUILESS_MAIN(TestCustomValueText)
#include "tst_customvaluetext.moc"
