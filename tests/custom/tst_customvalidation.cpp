#include "TestRows.h"
#include "custom/CustomValueBag.h"
#include "custom/CustomWidgetDefinition.h"

#include <QJsonDocument>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

// JSON written with ' for ", so that rows read as they stand.
QByteArray j(const char* text) {
    return QByteArray(text).replace('\'', '"');
}

// A widget with nothing wrong, with the keys of `patch` put over its own.
CustomWidgetDefinition widget(const QByteArray& patch) {
    QJsonObject json =
        QJsonDocument::fromJson(
            j("{'name':'N','sizes':['small'],'rows':[{'elements':[{'type':'text','text':'hi'}]}]}"))
            .object();
    const QJsonObject over = QJsonDocument::fromJson(patch).object();
    for (auto it = over.begin(); it != over.end(); ++it) {
        json.insert(it.key(), it.value());
    }
    return *CustomWidgetDefinition::fromJson(json);
}

QStringList messages(const QList<CustomWidgetIssue>& issues) {
    QStringList all;
    for (const CustomWidgetIssue& issue : issues) {
        all.append(issue.message());
    }
    return all;
}

} // namespace

class TestCustomValidation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsIssuesInOrder_data() {
        QTest::addColumn<QByteArray>("patch");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("renderable");
        const auto oneElement = [](const char* element) -> QByteArray {
            return j("{'source':{'url':'https://x.example/'},'rows':[{'elements':[") + j(element) +
                   "]}]}";
        };
        row("nothing wrong", QByteArray("{}"), QStringList{}, true);
        row("newer schema", j("{'schema':3}"),
            QStringList{u"This widget was made with a newer version (schema 3)."_s}, false);
        row("blank name, no sizes, no rows", j("{'name':' \\n','sizes':[],'rows':[]}"),
            QStringList{u"The widget needs a name."_s, u"Pick at least one size."_s,
                        u"The widget is empty. Add something to show."_s},
            false);
        row("only empty rows", j("{'rows':[{'elements':[]}]}"),
            QStringList{u"The widget is empty. Add something to show."_s}, false);
        row("source without an address", j("{'source':{'url':'  '}}"),
            QStringList{u"The data source has no address."_s}, false);
        row("source that is no address", j("{'source':{'url':'mailto:a@b'}}"),
            QStringList{u"“mailto:a@b” isn’t a valid web address."_s}, false);
        row("source over ftp", j("{'source':{'url':'ftp://host/x'}}"),
            QStringList{u"ftp:// isn’t supported, use https."_s}, false);
        row("source over plain http", j("{'source':{'url':'http://192.169.1.20/'}}"),
            QStringList{u"192.169.1.20 would be contacted over plain http. Use https, or an "
                        u"address on your own network."_s},
            false);
        row("four extra sources are all examined",
            j("{'sources':[{'name':'a','url':'https://a/'},{'name':'Tokyo','url':'https://b/'},"
              "{'url':''},{'name':'a','url':'ftp://c/'}]}"),
            QStringList{u"A widget can read at most 3 extra sources."_s,
                        u"“Tokyo” isn’t a usable source name. Use 1 to 16 lower-case letters, "
                        u"digits or _."_s,
                        u"“” isn’t a usable source name. Use 1 to 16 lower-case letters, digits "
                        u"or _."_s,
                        u"The data source has no address."_s, u"Two sources are both called “a”."_s,
                        u"ftp:// isn’t supported, use https."_s},
            false);
        row("a link that is none", j("{'link':' not a link '}"),
            QStringList{u"“not a link” isn’t a web link (https:// or http://)."_s}, true);
        row("links with tokens are not tested", j("{'link':'ftp://x/{data:id}'}"), QStringList{},
            true);
        row("a plain http link anywhere", j("{'link':'http://example.com/'}"), QStringList{}, true);
        row("data without a source",
            j("{'rows':[{'elements':[{'type':'text','text':'{data:price}'},{'type':'value','path':'"
              "p'}]}]}"),
            QStringList{u"This widget reads data, but no data source is set."_s}, false);
        row("item tokens are no data",
            j("{'rows':[{'elements':[{'type':'text','text':'{item:title}'}]}]}"), QStringList{},
            true);
        row("empty text", oneElement("{'type':'text','text':''}"),
            QStringList{u"Row 1, element 1 is empty."_s}, true);
        row("empty picture", oneElement("{'type':'image'}"),
            QStringList{u"Row 1, element 1 is empty."_s}, true);
        row("symbol without a symbol", oneElement("{'type':'icon','symbol':''}"),
            QStringList{u"Row 1, element 1 is empty."_s}, true);
        row("number with nothing to show", oneElement("{'type':'value','text':''}"),
            QStringList{u"Row 1, element 1 has nothing to show."_s}, true);
        row("list without a path", oneElement("{'type':'list','text':'{item:title}'}"),
            QStringList{u"Row 1, element 1 has nothing to show."_s}, true);
        row("ring with nothing and an empty range", oneElement("{'type':'gauge','min':0,'max':0}"),
            QStringList{u"Row 1, element 1 has nothing to show."_s,
                        u"Row 1, element 1 has a range that goes backwards."_s},
            true);
        row("dividers and spaces need nothing",
            oneElement("{'type':'divider'},{'type':'spacer'},{'type':'bar','text':'{cpu}','min':1,'"
                       "max':2}"),
            QStringList{}, true);
        row("unknown tokens in the order of the text, counted from 1",
            j("{'source':{'url':'https://x/'},'rows':[{'elements':[{'type':'divider'}]},"
              "{'elements':[{'type':'spacer'},{'type':'text','text':'{cpu} {bogus} {data} "
              "{data:}'}]}]}"),
            QStringList{u"Row 2, element 2 uses {bogus}, which doesn’t exist."_s,
                        u"Row 2, element 2 uses {data}, which doesn’t exist."_s,
                        u"Row 2, element 2 uses {data:}, which doesn’t exist."_s},
            true);
        row("an unknown source and no source at all",
            j("{'rows':[{'elements':[{'type':'value','path':'tokyo:current.temperature_2m'}]}]}"),
            QStringList{u"This widget reads data, but no data source is set."_s,
                        u"Row 1, element 1 reads the source “tokyo”, which doesn’t exist."_s},
            false);
        row("named sources from path and tokens",
            j("{'sources':[{'name':'a','url':'https://a/'}],'rows':[{'elements':[{'type':'value',"
              "'path':'b:x','text':'{data.a:y} {data.c:z}'}]}]}"),
            QStringList{u"Row 1, element 1 reads the source “b”, which doesn’t exist."_s,
                        u"Row 1, element 1 reads the source “c”, which doesn’t exist."_s},
            true);
    }
    void listsIssuesInOrder() {
        QFETCH(QByteArray, patch);
        const CustomWidgetDefinition definition = widget(patch);
        QTEST(messages(definition.issues()), "expected");
        QTEST(definition.isRenderable(), "renderable");
    }

    // A click opens only a web page, filled from the values of the moment.
    void opensOnlyWebLinks_data() {
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("opened");
        row("plain, trimmed", " https://news.example/ \n", "https://news.example/");
        row("filled from the document", "{data:html_url}", "https://example.com/r/1");
        row("http anywhere", "http://example.com/a b", "http://example.com/a%20b");
        row("a missing value", "{data:nothing}", "");
        row("a file", "file:///etc/passwd", "");
        row("a file from the document", "{data:file}", "");
        row("a command", "sh -c 'rm -rf ~'", "");
        row("no link", "", "");
    }
    void opensOnlyWebLinks() {
        QFETCH(QString, link);
        CustomWidgetDefinition definition;
        if (!link.isEmpty()) {
            definition.link = link;
        }
        CustomValueBag values;
        values.data =
            CustomJSON::parse(j("{'html_url':'https://example.com/r/1','file':'file:///etc/x'}"));
        QTEST(definition.openedLink(values).value_or(QUrl()).toString(QUrl::FullyEncoded),
              "opened");
    }

    void resolvesAddresses_data() {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("issue");
        row("private network over http", "http://192.168.1.20/state", "");
        row("next to the private range", "http://192.169.1.20/", "insecure 192.169.1.20");
        row("top of 172.16/12", "http://172.31.0.1", "");
        row("above 172.16/12", "http://172.32.0.1", "insecure 172.32.0.1");
        row("mDNS name in any case", "http://HomeAssistant.LOCAL:8123/api", "");
        row("pieces are not range-checked", "http://10.999.1.1/", "");
        row("three pieces are no address", "http://10.1.1/", "insecure 10.1.1");
        row("a signed piece", "http://+10.2.3.4/", "");
        row("loopback names", "http://user@localhost:80/", "");
        row("a .localhost name", "http://app.localhost/", "");
        row("link-local", "http://169.254.3.4/", "");
        row("loopback IPv6", "http://[::1]:8080/", "");
        row("link-local IPv6 is not local", "http://[fe80::1]/", "insecure fe80::1");
        row("a .lan name is not local", "http://nas.lan/", "insecure nas.lan");
        row("https needs nothing more", "https://anything", "");
        row("trimmed first", " https://x.example/ \n", "");
        row("scheme in any case", "HTTPS://x.example/", "");
        row("no host", "mailto:a@b", "bad mailto:a@b");
        row("no scheme", "x.example/api", "bad x.example/api");
        row("an empty host", "http://:80/", "bad http://:80/");
        row("another scheme", "FTP://host/x", "scheme ftp");
        row("empty", " ", "missing");
    }
    void resolvesAddresses() {
        QFETCH(QString, url);
        const auto resolved = CustomSource::resolve(url);
        QString got;
        if (const auto* found = std::get_if<CustomWidgetIssue>(&resolved)) {
            using Kind = CustomWidgetIssue::Kind;
            const QString word = found->kind == Kind::insecureURL  ? u"insecure"_s
                                 : found->kind == Kind::badURL     ? u"bad"_s
                                 : found->kind == Kind::badScheme  ? u"scheme"_s
                                 : found->kind == Kind::missingURL ? u"missing"_s
                                                                   : u"other"_s;
            got = QString(word + u' ' + found->text).trimmed();
        } else {
            QVERIFY(std::get<QUrl>(resolved).isValid());
        }
        QTEST(got, "issue");
    }
};

QTEST_GUILESS_MAIN(TestCustomValidation)
#include "tst_customvalidation.moc"
