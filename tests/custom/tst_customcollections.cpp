#include "TestRows.h"
#include "custom/CustomCollections.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

QByteArray countTo(int n) {
    QByteArray list = "[";
    for (int i = 1; i <= n; ++i) {
        list += (i > 1 ? "," : "") + QByteArray::number(i);
    }
    return list + "]";
}

CustomValueBag bag() {
    CustomValueBag values;
    values.data =
        CustomJSON::parse(QByteArray(R"({"hits": [{"title": "One", "points": 3}, {"points": "x"},
        {"title": "Three", "points": "2,5"}, {"title": "Four"}, {"title": "Five"},
        {"title": "Six"}, {"title": "Seven"}, {"title": "Eight"}, {"title": "Nine"},
        {"title": "Ten"}, {"title": "Eleven"}, {"title": "Twelve"}, {"title": "Thirteen"}],
        "thirty": )" + countTo(30) + R"(, "twentyfour": )" +
                                     countTo(24) + R"(, "flat": 3})"));
    values.named.insert(u"other"_s, *CustomJSON::parse(R"({"rows": [{"title": "Elsewhere"}]})"));
    return values;
}

CustomElement element(const char* path, std::optional<QString> text = {},
                      std::optional<int> limit = {}) {
    CustomElement e;
    e.type = CustomElementType::list;
    e.path = QString::fromUtf8(path);
    e.text = std::move(text);
    e.limit = limit;
    return e;
}

} // namespace

class TestCustomCollections : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines_data() {
        QTest::addColumn<CustomElement>("list");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("lines");
        row("title by default, dash without", element("hits"), WidgetSize::wide, "One|—|Three");
        row("own template", element("hits", u"{item:title}: {item:points}"_s), WidgetSize::small,
            "One: 3|—: x");
        row("large shows five", element("hits"), WidgetSize::large, "One|—|Three|Four|Five");
        row("huge shows six", element("hits"), WidgetSize::huge, "One|—|Three|Four|Five|Six");
        row("limit wins over size", element("hits", {}, 1), WidgetSize::huge, "One");
        row("limit held to twelve", element("hits", {}, 50), WidgetSize::small,
            "One|—|Three|Four|Five|Six|Seven|Eight|Nine|Ten|Eleven|Twelve");
        row("limit held to one", element("hits", {}, 0), WidgetSize::large, "One");
        row("named source", element("other:rows"), WidgetSize::large, "Elsewhere");
        row("missing source", element("nowhere:rows"), WidgetSize::large, "");
        row("no array", element("flat"), WidgetSize::large, "");
        row("no path", element(""), WidgetSize::large, "");
    }
    void lines() {
        QFETCH(CustomElement, list);
        QFETCH(WidgetSize, size);
        QFETCH(QString, lines);
        QCOMPARE(CustomCollections::lines(list, bag(), size).join(u'|'), lines);
    }

    void series_data() {
        QTest::addColumn<CustomElement>("bars");
        QTest::addColumn<QString>("numbers");
        row("field, entries without a number skipped", element("hits", u"points"_s), "3|2.5");
        row("the last 24 of 30", element("thirty"),
            "7|8|9|10|11|12|13|14|15|16|17|18|19|20|21|22|23|24|25|26|27|28|29|30");
        row("24 stay whole", element("twentyfour"),
            "1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16|17|18|19|20|21|22|23|24");
        row("missing source", element("nowhere:thirty"), "");
        row("no path", element(""), "");
    }
    void series() {
        QFETCH(CustomElement, bars);
        QStringList text;
        for (const double n : CustomCollections::series(bars, bag())) {
            text << QString::number(n);
        }
        QTEST(text.join(u'|'), "numbers");
    }
};

QTEST_GUILESS_MAIN(TestCustomCollections)
#include "tst_customcollections.moc"
