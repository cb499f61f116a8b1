#include "TestRows.h"
#include "custom/CustomJSON.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray sample = R"({
  "price": 1234.5, "count": 1234, "big": 1e16, "flag": true, "off": false, "none": null,
  "comma": "3,5", "text": "65000.12", "unit": "12 kg", "spaced": " 5", "nan": "nan",
  "list": [{"name": "a"}, {"name": "b"}, {"name": "c", "v": "2"}],
  "nested": {"deep": {"er": -0.004}}, "empty": [], "a b:c": "colon key", "obj": {}
})";

CustomJSON document() {
    return *CustomJSON::parse(sample);
}

QByteArray nested(int depth) {
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

} // namespace

class TestCustomJSON : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void parse_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("root"); // compact JSON of the root, or "refused"
        row("object", QByteArray(R"( {"a": [1, "x"]} )"), R"({"a":[1,"x"]})");
        row("bare number", QByteArray("42"), "42");
        row("bare string", QByteArray("\"hi\""), R"("hi")");
        row("bare null", QByteArray("null"), "null");
        row("byte order mark", QByteArray("\xEF\xBB\xBF{\"a\": 1}"), R"({"a":1})");
        row("two values", QByteArray("1 2"), "refused");
        row("two members", QByteArray("1, 2"), "refused");
        row("escape out of the wrapper", QByteArray("1],[2"), "refused");
        row("empty", QByteArray(""), "refused");
        row("garbage", QByteArray("<html>"), "refused");
        row("bad UTF-8", QByteArray("\"\xff\""), "refused");
        row("at the depth cap", nested(CustomJSON::maximumDepth), "nested");
        row("past the depth cap", nested(CustomJSON::maximumDepth + 1), "refused");
        row("brackets inside strings", QByteArray("[\"" + QByteArray(500, '[') + "\\\"\"]"),
            "nested");
        row("past the size cap",
            QByteArray("\"" + QByteArray(CustomJSON::maximumBytes, 'x') + "\""), "refused");
    }
    void parse() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, root);
        const std::optional<CustomJSON> json = CustomJSON::parse(bytes);
        if (root == u"refused") {
            QVERIFY(!json);
        } else if (root == u"nested") {
            QVERIFY(json && json->root.isArray());
        } else {
            QVERIFY(json);
            const QByteArray wrapped =
                QJsonDocument(QJsonArray{json->root}).toJson(QJsonDocument::Compact);
            QCOMPARE(QString::fromUtf8(wrapped.sliced(1, wrapped.size() - 2)), root);
        }
    }

    // What a path reads as text and as a number; "-" where it gives nothing.
    void paths_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("number");
        row("decimal", "price", "1,234.50", "1234.5");
        row("whole", "count", "1,234", "1234");
        row("huge keeps decimals", "big", "10,000,000,000,000,000.00", "1e+16");
        row("true", "flag", "Yes", "1");
        row("false", "off", "No", "0");
        row("null", "none", "-", "-");
        row("comma as point", "comma", "3,5", "3.5");
        row("number as string", "text", "65000.12", "65000.12");
        row("unit in string", "unit", "12 kg", "-");
        row("blank in string", "spaced", " 5", "-");
        row("not a number", "nan", "nan", "-");
        row("index", "list.2.name", "c", "-");
        row("string number in array", "list.2.v", "2", "2");
        row("negative index", "list.-1.name", "-", "-");
        row("index past the end", "list.9.name", "-", "-");
        row("key on an array", "list.name", "-", "-");
        row("through a scalar", "price.x", "-", "-");
        row("double dots", "nested..deep.er", "0.00", "-0.004");
        row("missing key", "nested.nope", "-", "-");
        row("case matters", "Price", "-", "-");
        row("array is its count", "list", "3", "-");
        row("empty array", "empty", "0", "-");
        row("object", "obj", "-", "-");
        row("key with colon", "a b:c", "colon key", "-");
    }
    void paths() {
        QFETCH(QString, path);
        QFETCH(QString, number);
        const CustomJSON json = document();
        QTEST(json.string(path).value_or(u"-"_s), "text");
        const std::optional<double> value = json.number(path);
        QCOMPARE(value ? QString::number(*value, 'g', 12) : u"-"_s, number);
    }

    void rootPaths() {
        const CustomJSON bare = *CustomJSON::parse("7");
        for (const QString& path : {u""_s, u"."_s, u"..."_s}) {
            QCOMPARE(bare.number(path), 7.0);
        }
        QVERIFY(!CustomJSON::parse("null")->value({}));
    }

    void collections() {
        const CustomJSON json = *CustomJSON::parse(
            R"({"rows": [{"n": 1}, {"n": "x"}, {"m": 2}, {"n": "2,5"}], "plain": [1, true, "3"]})");
        QCOMPARE(json.numbers(u"rows"_s, u"n"_s), (QList<double>{1, 2.5}));
        QCOMPARE(json.numbers(u"plain"_s, {}), (QList<double>{1, 1, 3}));
        QCOMPARE(json.numbers(u"rows.0"_s, u"n"_s), QList<double>{});
        QCOMPARE(json.entries(u"rows"_s)->size(), 4);
        QCOMPARE(json.entries(u"rows"_s)->at(1).string(u"n"_s), u"x"_s);
        QVERIFY(!json.entries(u"rows.0"_s));
    }

    void walk() {
        QStringList all;
        document().walk({}, all, 1000);
        QCOMPARE(all.first(), u"a b:c"_s);
        QVERIFY(all.contains(u"list.2.v"_s));
        QVERIFY(!all.contains(u"obj"_s) && !all.contains(u"empty"_s));

        const CustomJSON long_ = *CustomJSON::parse(QByteArray(
            "{\"z\": [" + QByteArray("0,").repeated(20) + "0], \"a\": {\"b\": 1, \"a\": 2}}"));
        QStringList some;
        long_.walk(u"root"_s, some, 5);
        QCOMPARE(some, (QStringList{u"root.a.a"_s, u"root.a.b"_s, u"root.z.0"_s, u"root.z.1"_s,
                                    u"root.z.2"_s}));
        QStringList capped;
        long_.walk({}, capped, 100);
        QCOMPARE(capped.size(), 2 + 10); // an array shows its first ten members

        QStringList scalar;
        CustomJSON::parse("3")->walk({}, scalar, 10);
        QVERIFY(scalar.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCustomJSON)
#include "tst_customjson.moc"
