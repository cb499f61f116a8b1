#include "TestRows.h"
#include "platform/JsonRepair.h"

#include <QJsonDocument>
#include <QTest>

using tw::test::row;

namespace {

QByteArray nested(int depth, const QByteArray& inner) {
    return QByteArray(depth, '[') + inner + QByteArray(depth, ']');
}

} // namespace

class TestJsonRepair : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void mendsWhatTheParserRefuses_data() {
        QTest::addColumn<QByteArray>("in");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QString>("summary");
        const QByteArray fffd("\xEF\xBF\xBD");
        const QByteArray sound("{\"a\":[1e308,-2.5E-3,\"\\\"1e400\\\"\"]}");
        row("sound", sound, sound, "");
        row("numbers out of range", QByteArray(R"({"a":1e400,"b":[-1E999,2e-400],"c":3})"),
            QByteArray(R"({"a":null,"b":[null,null],"c":3})"), "3 numbers out of range made null");
        row("a stray byte in a key and a value", QByteArray("{\"k\xff\":\"v\xfe\"}"),
            "{\"k" + fffd + "\":\"v" + fffd + "\"}", "2 invalid UTF-8 sequences replaced");
        row("valid sequences stay", QByteArray("[\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"]"),
            QByteArray("[\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"]"), "");
        row("overlong, surrogate, cut short: one each",
            QByteArray("[\"\xC0\x80|\xED\xA0\x80|\xE2\x82\"]"),
            "[\"" + fffd + fffd + "|" + fffd + fffd + fffd + "|" + fffd + "\"]",
            "6 invalid UTF-8 sequences replaced");
        row("an escape takes one byte, whatever it is",
            QByteArray("[\"\\\"\xff\\\xde\xd3\x84\xda\"]"),
            "[\"\\\"" + fffd + "\\\xde\xd3\x84" + fffd + "\"]",
            "2 invalid UTF-8 sequences replaced");
        row("nesting at the limit stays", nested(tw::JsonRepair::maxDepth, "1"),
            nested(tw::JsonRepair::maxDepth, "1"), "");
        row("one level more is cut, its neighbour stays",
            "[" + nested(tw::JsonRepair::maxDepth, "\"]]\"") + ",2]",
            "[" + nested(tw::JsonRepair::maxDepth - 1, "null") + ",2]",
            "1 branch nested too deep cut");
    }
    void mendsWhatTheParserRefuses() {
        QFETCH(QByteArray, in);
        QFETCH(QString, summary);
        const tw::JsonRepair repair = tw::repairJson(in);
        QTEST(repair.bytes, "out");
        QCOMPARE(repair.summary(), summary);
        QCOMPARE(repair.changed(), !summary.isEmpty());
        QJsonParseError error{};
        QJsonDocument::fromJson(repair.bytes, &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
    }
};

QTEST_GUILESS_MAIN(TestJsonRepair)
#include "tst_jsonrepair.moc"
