#include "TestRows.h"
#include "custom/CustomWidgetDefinition.h"

#include <QJsonDocument>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray notJSON = "notJSON";

// JSON written with ' for ", so that rows read as they stand.
QByteArray j(const char* text) {
    return QByteArray(text).replace('\'', '"');
}

// The decoded definition as compact JSON without its generated id, or "notJSON".
QByteArray decoded(const QByteArray& json) {
    const std::optional<CustomWidgetDefinition> definition = CustomWidgetDefinition::decode(json);
    if (!definition) {
        return notJSON;
    }
    QJsonObject object = definition->toJson(CustomWidgetDefinition::Secrets::included);
    object.remove(u"id"_s);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// The rows part of `decoded` for a document with one row holding `element`.
QByteArray decodedElement(const QByteArray& element) {
    const QByteArray whole = decoded(j("{'rows':[{'elements':[") + element + "]}]}");
    if (whole == notJSON) {
        return whole;
    }
    const QJsonObject object = QJsonDocument::fromJson(whole).object();
    const QJsonValue first = object[u"rows"_s][0][u"elements"_s][0];
    return QJsonDocument(first.toObject()).toJson(QJsonDocument::Compact);
}

// The sanitized definition as compact JSON without its id.
QByteArray sanitized(const QByteArray& json) {
    QJsonObject object = CustomWidgetDefinition::decode(json)->sanitized().toJson(
        CustomWidgetDefinition::Secrets::included);
    object.remove(u"id"_s);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

CustomSource source(const QString& url, std::optional<QMap<QString, QString>> headers = {}) {
    CustomSource s;
    s.url = url;
    s.headers = std::move(headers);
    return s;
}

} // namespace

class TestCustomWidgetDefinition : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decodesLeniently_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray empty =
            j("{'name':'','rows':[],'schema':2,'sizes':[],'symbol':'square.dashed'}");
        row("empty object", QByteArray("{}"), empty);
        row("nulls are missing keys", j("{'name':null,'sizes':null,'source':null}"), empty);
        row("unknown keys", j("{'colour':'red','rows':[{'height':3}]}"),
            j("{'name':'','rows':[{'elements':[]}],'schema':2,'sizes':[],'symbol':'square.dashed'"
              "}"));
        row("unknown sizes dropped, order and repeats kept",
            j("{'sizes':['small','gigantic','small','wide']}"),
            j("{'name':'','rows':[],'schema':2,'sizes':['small','small','wide'],'symbol':'square."
              "dashed'}"));
        row("empty sources become absent, an empty link is not written",
            j("{'sources':[],'link':'','schema':7,'accent':'#FF0000'}"),
            j("{'accent':'#FF0000','name':'','rows':[],'schema':7,'sizes':[],'symbol':'square."
              "dashed'}"));
        row("source defaults", j("{'source':{}}"),
            j("{'name':'','rows':[],'schema':2,'sizes':[],'source':{'refreshSeconds':900,'url':''},"
              "'symbol':'square.dashed'}"));
        row("extra sources keep their names and headers",
            j("{'sources':[{'name':'a','url':'u','headers':{'K':'v'},'refreshSeconds':5}]}"),
            j("{'name':'','rows':[],'schema':2,'sizes':[],'sources':[{'headers':{'K':'v'},'name':'"
              "a','refreshSeconds':5,'url':'u'}],'symbol':'square.dashed'}"));
        row("row fields", j("{'rows':[{'align':'center','spacing':4.5}]}"),
            j("{'name':'','rows':[{'align':'center','elements':[],'spacing':4.5}],'schema':2,'"
              "sizes':[],'symbol':'square.dashed'}"));

        row("not an object", QByteArray("[]"), notJSON);
        row("no text", QByteArray(""), notJSON);
        row("broken", j("{'name':'x'"), notJSON);
        row("invalid UTF-8", QByteArray("{\"name\":\"\xff\"}"), notJSON);
        row("a number for a size", j("{'sizes':['small',1]}"), notJSON);
        row("a string for sizes", j("{'sizes':'small'}"), notJSON);
        row("a number for the name", j("{'name':5}"), notJSON);
        row("a fractional schema", j("{'schema':1.5}"), notJSON);
        row("a malformed id", j("{'id':'not-a-uuid'}"), notJSON);
        row("an id in braces", j("{'id':'{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}'}"), notJSON);
        row("an unknown align", j("{'rows':[{'align':'middle'}]}"), notJSON);
        row("a row that is no object", j("{'rows':[1]}"), notJSON);
        row("a source that is no object", j("{'source':'https://x'}"), notJSON);
        row("a header that is no string", j("{'source':{'headers':{'K':1}}}"), notJSON);
        row("a string refresh", j("{'sources':[{'refreshSeconds':'60'}]}"), notJSON);
        row("above the size cap", "{\"name\":\"" + QByteArray(1024 * 1024, 'a') + "\"}", notJSON);
    }
    void decodesLeniently() {
        QFETCH(QByteArray, json);
        QTEST(decoded(json), "expected");
    }

    void decodesElements_data() {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QByteArray>("expected");
        row("unknown type is text", j("{'type':'hologram','text':'a'}"),
            j("{'text':'a','type':'text'}"));
        row("missing or mistyped type is text", j("{'type':3}"), j("{'type':'text'}"));
        row("unknown style is none", j("{'type':'value','style':'huge'}"), j("{'type':'value'}"));
        row("every field",
            j("{'type':'gauge','text':'t','path':'p','symbol':'s','style':'micro','color':'red','"
              "decimals':2.0,'prefix':'<','suffix':'>','min':-1.5,'max':3,'limit':4,'rules':[{'"
              "when':'above','value':1,'color':'negative'}]}"),
            j("{'color':'red','decimals':2,'limit':4,'max':3,'min':-1.5,'path':'p','prefix':'<','"
              "rules':[{'color':'negative','value':1,'when':'above'}],'style':'micro','suffix':'>',"
              "'symbol':'s','text':'t','type':'gauge'}"));
        row("a rule without colour drops all rules only",
            j("{'type':'bar','path':'p','rules':[{'when':'above','value':2,'color':'red'},{'when':'"
              "below','value':1}]}"),
            j("{'path':'p','type':'bar'}"));
        row("a rule with an unknown when drops all rules",
            j("{'rules':[{'when':'between','value':1,'color':'red'}]}"), j("{'type':'text'}"));
        row("empty or mistyped rules are none", j("{'rules':'red'}"), j("{'type':'text'}"));
        row("a number for text", j("{'type':'text','text':12}"), notJSON);
        row("a string for decimals", j("{'decimals':'2'}"), notJSON);
        row("fractional decimals", j("{'decimals':2.5}"), notJSON);
        row("a string for min", j("{'min':'0'}"), notJSON);
        row("an element that is no object", j("'text'"), notJSON);
    }
    void decodesElements() {
        QFETCH(QByteArray, element);
        QTEST(decodedElement(element), "expected");
    }

    void sanitizes_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QByteArray>("expected");
        row("empty object", QByteArray("{}"),
            j("{'name':'Untitled "
              "widget','rows':[],'schema':1,'sizes':['small','wide','large'],'symbol':'square."
              "dashed'}"));
        row("sizes sorted and unique, names trimmed, blank symbols replaced",
            j("{'name':' Tokyo \\n','symbol':'  ','sizes':['grand','small','gigantic','small']}"),
            j("{'name':'Tokyo','rows':[],'schema':1,'sizes':['small','grand'],'symbol':'square."
              "dashed'}"));
        row("long names cut at 48 characters without a trailing blank",
            j("{'name':'Ünïcode names are cut where a person counts: 48 characters','symbol':' s "
              "'}"),
            j("{'name':'Ünïcode names are cut where a person counts: "
              "48','rows':[],'schema':1,'sizes':['small','wide','large'],'symbol':' s '}"));
        row("elements clamped, empty rows dropped",
            j("{'rows':[{'elements':[]},{'align':'trailing','spacing':2,'elements':[{'type':'icon',"
              "'symbol':''},"
              "{'type':'value','path':'p','decimals':9},{'type':'value','path':'p','decimals':-2}]}"
              "]}"),
            j("{'name':'Untitled "
              "widget','rows':[{'align':'trailing','elements':[{'symbol':'star.fill','type':'icon'}"
              ","
              "{'decimals':6,'path':'p','type':'value'},{'decimals':0,'path':'p','type':'value'}],'"
              "spacing':2}],"
              "'schema':1,'sizes':['small','wide','large'],'symbol':'square.dashed'}"));
        row("limits and rules clamped",
            j("{'rows':[{'elements':[{'type':'list','limit':0},{'type':'list','limit':99},{'type':'"
              "bar','rules':["
              "{'when':'above','value':1,'color':'a'},{'when':'above','value':2,'color':'a'},"
              "{'when':'above','value':3,'color':'a'},{'when':'above','value':4,'color':'a'},"
              "{'when':'above','value':5,'color':'a'},{'when':'above','value':6,'color':'a'},"
              "{'when':'above','value':7,'color':'a'},{'when':'above','value':8,'color':'a'}]}]}]"
              "}"),
            j("{'name':'Untitled "
              "widget','rows':[{'elements':[{'limit':1,'type':'list'},{'limit':12,'type':'list'},"
              "{'rules':[{'color':'a','value':1,'when':'above'},{'color':'a','value':2,'when':'"
              "above'},"
              "{'color':'a','value':3,'when':'above'},{'color':'a','value':4,'when':'above'}],'"
              "type':'bar'}]}],"
              "'schema':2,'sizes':['small','wide','large'],'symbol':'square.dashed'}"));
        row("sources cleaned, extra ones named, unique and at most three",
            j("{'schema':1,'source':{'url':' https://x/ "
              "\\n','refreshSeconds':5,'headers':{}},'sources':["
              "{'name':'a','url':'https://a/'},{'name':'Tokyo'},{'url':'u'},{'name':'a'},"
              "{'name':'b','refreshSeconds':99999},{'name':'c'},{'name':'d'}]}"),
            j("{'name':'Untitled widget','rows':[],'schema':2,'sizes':['small','wide','large'],"
              "'source':{'refreshSeconds':60,'url':'https://x/"
              "'},'sources':[{'name':'a','refreshSeconds':900,"
              "'url':'https://a/"
              "'},{'name':'b','refreshSeconds':86400,'url':''},{'name':'c','refreshSeconds':900,"
              "'url':''}],'symbol':'square.dashed'}"));
        row("no valid extra source leaves none, a blank link none, level 1",
            j("{'sources':[{'name':'A'}],'link':' \\t '}"),
            j("{'name':'Untitled "
              "widget','rows':[],'schema':1,'sizes':['small','wide','large'],'symbol':'square."
              "dashed'}"));
        row("a newer schema stays", j("{'schema':7}"),
            j("{'name':'Untitled "
              "widget','rows':[],'schema':7,'sizes':['small','wide','large'],'symbol':'square."
              "dashed'}"));
    }
    void sanitizes() {
        QFETCH(QByteArray, json);
        QTEST(sanitized(json), "expected");
        // A second clean-up changes nothing.
        const CustomWidgetDefinition once = CustomWidgetDefinition::decode(json)->sanitized();
        QJsonObject twice = once.sanitized().toJson(CustomWidgetDefinition::Secrets::included);
        QCOMPARE(twice, once.toJson(CustomWidgetDefinition::Secrets::included));
    }

    void cutsLongLinks() {
        const QString link = u"https://x.example/"_s + QString(600, u'a');
        CustomWidgetDefinition definition;
        definition.link = link;
        QCOMPARE(definition.sanitized().link, link.left(500));
    }

    void requiresTheSchemaInUse_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("level");
        row("plain",
            j("{'source':{'url':'u'},'rows':[{'elements':[{'type':'value','path':'A b:c',"
              "'text':'{data:x} {data.Tokyo:y} {cpu}','rules':[]}]}]}"),
            1);
        row("extra sources", j("{'sources':[{'name':'a'}]}"), 2);
        row("a link", j("{'link':'https://x/'}"), 2);
        row("a list", j("{'rows':[{'elements':[{'type':'list'}]}]}"), 2);
        row("bars", j("{'rows':[{'elements':[{'type':'bars'}]}]}"), 2);
        row("a limit", j("{'rows':[{'elements':[{'type':'text','limit':3}]}]}"), 2);
        row("rules",
            j("{'rows':[{'elements':[{'rules':[{'when':'below','value':1,'color':'red'}]}]}]}"), 2);
        row("a named path", j("{'rows':[{'elements':[{'type':'value','path':'tokyo:x'}]}]}"), 2);
        row("an item token", j("{'rows':[{'elements':[{'text':'{item:title}'}]}]}"), 2);
        row("a named data token", j("{'rows':[{'elements':[{'text':'{data.tokyo:x}'}]}]}"), 2);
    }
    void requiresTheSchemaInUse() {
        QFETCH(QByteArray, json);
        QTEST(CustomWidgetDefinition::decode(json)->requiredSchema(), "level");
    }

    void needsSystemValues_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("needs");
        row("cpu", "Load {cpu}", true);
        row("a dotted reading", "{battery.state}", true);
        row("disk among others", "{data:x} {time} {disk}", true);
        row("a longer word", "{cpux} {ramp}", false);
        row("data only", "{data:cpu}", false);
        row("no tokens", "ram", false);
    }
    void needsSystemValues() {
        QFETCH(QString, text);
        CustomWidgetDefinition definition;
        definition.rows = {CustomRow()};
        definition.rows[0].elements = {CustomElement(), CustomElement()};
        definition.rows[0].elements[1].text = text;
        QTEST(definition.needsSystemValues(), "needs");
    }

    void keepsOrMakesIds() {
        const auto a = CustomWidgetDefinition::decode(QByteArray("{}"));
        const auto b = CustomWidgetDefinition::decode(QByteArray("{}"));
        QVERIFY(a && b);
        QVERIFY(!a->id.isNull());
        QVERIFY(a->id != b->id);
        const auto given =
            CustomWidgetDefinition::decode(j("{'id':'e621e1f8-c36c-495a-93fc-0c247a3e6e5f'}"));
        QVERIFY(given);
        QCOMPARE(given->kind(), u"custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F"_s);
        QCOMPARE(CustomWidgetDefinition::idFromKind(given->kind()), given->id);
    }

    void readsKinds_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("custom");
        QTest::addColumn<bool>("hasId");
        row("upper case", "custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F", true, true);
        row("lower case", "custom.e621e1f8-c36c-495a-93fc-0c247a3e6e5f", true, true);
        row("no UUID", "custom.not-a-uuid", true, false);
        row("prefix only", "custom.", true, false);
        row("no prefix", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", false, false);
        row("a built-in kind", "clock", false, false);
    }
    void readsKinds() {
        QFETCH(QString, kind);
        QTEST(CustomWidgetDefinition::isCustom(kind), "custom");
        QTEST(CustomWidgetDefinition::idFromKind(kind).has_value(), "hasId");
    }

    void encodesWithAndWithoutSecrets() {
        CustomWidgetDefinition definition;
        definition.name = u"Prices/EU"_s;
        definition.source =
            source(u"https://x.example/a"_s, QMap<QString, QString>{{u"K"_s, u"v"_s}});
        definition.extraSources =
            QList{source(u"https://y.example/"_s, QMap<QString, QString>{{u"Auth"_s, u"s"_s}})};
        QVERIFY(definition.hasHeaders());

        const QString secret = definition.fileJSON(CustomWidgetDefinition::Secrets::included);
        const QString shared = definition.fileJSON(CustomWidgetDefinition::Secrets::omitted);
        QVERIFY(secret.contains(u"\"Auth\""_s));
        QVERIFY(!shared.contains(u"headers"_s));
        QVERIFY(shared.contains(u"\"Prices/EU\""_s));
        QVERIFY(shared.contains(u"\n    \"name\""_s));

        const auto back = CustomWidgetDefinition::decode(secret);
        QVERIFY(back);
        QCOMPARE(*back, definition);
        QCOMPARE(back->fileJSON(CustomWidgetDefinition::Secrets::included), secret);
        QVERIFY(!CustomWidgetDefinition::decode(shared)->hasHeaders());
    }

    void sharesFetchesByCacheKey_data() {
        QTest::addColumn<CustomSource>("a");
        QTest::addColumn<CustomSource>("b");
        QTest::addColumn<bool>("same");
        QTest::addColumn<QString>("keyOfA");
        const QString url = u"https://x.example/q"_s;
        CustomSource slow = source(url);
        slow.refreshSeconds = 3600;
        CustomSource named = source(url);
        named.name = u"a"_s;
        row("refresh and name are not part of the key", source(url), slow, true, url);
        row("named the same", source(url), named, true, url);
        row("an empty header map is none", source(url, QMap<QString, QString>{}), source(url), true,
            url);
        row("headers in any order",
            source(url, QMap<QString, QString>{{u"b"_s, u"2"_s}, {u"a"_s, u"1"_s}}),
            source(url, QMap<QString, QString>{{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}}), true,
            url + u"#a=1&b=2"_s);
        row("another header value", source(url, QMap<QString, QString>{{u"a"_s, u"1"_s}}),
            source(url, QMap<QString, QString>{{u"a"_s, u"9"_s}}), false, url + u"#a=1"_s);
    }
    void sharesFetchesByCacheKey() {
        QFETCH(CustomSource, a);
        QFETCH(CustomSource, b);
        QTEST(a.cacheKey() == b.cacheKey(), "same");
        QTEST(a.cacheKey(), "keyOfA");
    }

    void clampsTheInterval_data() {
        QTest::addColumn<int>("refresh");
        QTest::addColumn<double>("seconds");
        row("too often", 5, 60.0);
        row("in range", 900, 900.0);
        row("too rarely", 100000, 86400.0);
    }
    void clampsTheInterval() {
        QFETCH(int, refresh);
        QFETCH(double, seconds);
        CustomSource s;
        s.refreshSeconds = refresh;
        QCOMPARE(s.interval().count(), seconds);
        QCOMPARE(s.sanitized().refreshSeconds, int(seconds));
    }

    void picksTheLargestSize_data() {
        QTest::addColumn<QList<WidgetSize>>("sizes");
        QTest::addColumn<WidgetSize>("largest");
        row("none", QList<WidgetSize>{}, WidgetSize::large);
        row("most cells", QList{WidgetSize::small, WidgetSize::grand, WidgetSize::wide},
            WidgetSize::grand);
        row("the earlier of a tie", QList{WidgetSize::tall, WidgetSize::wide}, WidgetSize::tall);
    }
    void picksTheLargestSize() {
        QFETCH(QList<WidgetSize>, sizes);
        CustomWidgetDefinition definition;
        definition.sizes = sizes;
        QTEST(definition.largestSize(), "largest");
    }

    void namesExportFiles_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        row("plain", "Bitcoin price", "Bitcoin price.twkwidget");
        row("punctuation dropped, blanks trimmed", " Tokyo: weather / now! ",
            "Tokyo weather  now.twkwidget");
        row("dash and underscore dropped, letters of any script kept", "Café_Zürich-東京 2",
            "CaféZürich東京 2.twkwidget");
        row("nothing left", "?!/", "widget.twkwidget");
    }
    void namesExportFiles() {
        QFETCH(QString, name);
        CustomWidgetDefinition definition;
        definition.name = name;
        QTEST(definition.exportFilename(), "file");
    }

    void summarizesElements_data() {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QString>("summary");
        row("divider", j("{'type':'divider','text':'x'}"), "");
        row("image", j("{'type':'image','text':'/home/me/pics/cat.png'}"), "cat.png");
        row("gauge path", j("{'type':'gauge','path':'a.b','text':'t'}"), "a.b");
        row("gauge text", j("{'type':'gauge','text':'{cpu}'}"), "{cpu}");
        row("icon default", j("{'type':'icon'}"), "star");
        row("value path", j("{'type':'value','path':'price'}"), "{price}");
        row("list", j("{'type':'list','text':'{item:title}'}"), "");
        row("text", j("{'type':'text','text':'Hi'}"), "Hi");
    }
    void summarizesElements() {
        QFETCH(QByteArray, element);
        QFETCH(QString, summary);
        QCOMPARE(CustomElement::fromJson(QJsonDocument::fromJson(element).object())->summary(),
                 summary);
    }
};

QTEST_GUILESS_MAIN(TestCustomWidgetDefinition)
#include "tst_customwidgetdefinition.moc"
