// Token rendering is compared line by line with golden/customtokens.txt: each line names a bag,
// the text and what it renders to (TW_UPDATE_GOLDEN=1 rewrites the third column).
#include "GoldenFile.h"
#include "TestRows.h"
#include "custom/CustomTokens.h"

#include <QFile>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

constexpr double gigabyte = 1024.0 * 1024.0 * 1024.0;

CustomJSON json(const char* text) {
    return *CustomJSON::parse(QByteArray(text));
}

CustomValueBag bag(QStringView name) {
    CustomValueBag values;
    // Local time, so the clock tokens read the same in every time zone.
    values.now = QDateTime(QDate(2026, 8, 12), QTime(14, 5, 9));
    values.host = u"studio"_s;
    values.user = u"ada"_s;
    values.uptime = std::chrono::duration<double>(3 * 86400 + 5 * 3600 + 59);
    if (name == u"preview") {
        return CustomValueBag::preview(values.now, u"ada"_s);
    }
    if (name == u"bare") {
        values.battery = BatterySnapshot{.percent = 57, .hasBattery = false};
        return values;
    }
    values.battery = BatterySnapshot{.percent = 81, .isCharging = true, .hasBattery = true};
    SystemSnapshot system;
    system.cpu = 0.234;
    system.ramUsed = 11.4 * gigabyte;
    system.ramTotal = 16 * gigabyte;
    system.diskFree = 212 * gigabyte;
    system.diskTotal = 494 * gigabyte;
    values.system = system;
    values.data = json(R"({"price": 1234.5, "count": 1234, "big": 1e16, "up": true,
        "items": [{"title": "First", "count": 12}, {"count": 7}], "obj": {"k": 1}, "nil": null,
        "list": [{"name": "a"}, {"name": "b"}, {"name": "c"}], "Tokyo:x": "main colon",
        "url": "https://example.com/a?b={c}"})");
    values.named.insert(u"tokyo"_s, json(R"({"current": {"temperature_2m": 27.44}})"));
    if (name == u"item") {
        values.item = json(R"({"title": "Second", "count": "7,5"})");
    }
    return values;
}

} // namespace

class TestCustomTokens : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void rendersAsGolden() {
        const QString path = QStringLiteral(TW_GOLDEN_DIR "/customtokens.txt");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QStringList lines;
        for (const QString& line :
             QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
            const QStringList columns = line.split(u'\t');
            QVERIFY2(columns.size() == 3, qPrintable(line));
            lines << columns[0] + u'\t' + columns[1] + u'\t' +
                         CustomTokens::render(columns[1], bag(columns[0]));
        }
        compareWithGolden(path, lines);
    }

    void knownTokens_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("unknown");
        QTest::addColumn<bool>("readsData");
        row("plain names", "{time}{ram.free}{disk.used}{uptime}", "", false);
        row("prefixed", "{time:HH:mm}{date:EEEE}{data:a.b}{item:title}", "", true);
        row("named source", "{data.tokyo:x}", "", true);
        row("bad source name", "{data.Tokyo:x}{data.toolongnameforasource:x}",
            "data.Tokyo:x|data.toolongnameforasource:x", true);
        row("nothing after the colon", "{data:}{time:}{item:}", "data:|time:|item:", true);
        row("data alone", "{data}", "data", true);
        row("item is no data token", "{item:title}", "", false);
        row("unknown and empty", "{cpus}{}{CPU}", "cpus||CPU", false);
        row("no tokens", "plain", "", false);
    }
    void knownTokens() {
        QFETCH(QString, text);
        QTEST(CustomTokens::unknownTokens(text).join(u'|'), "unknown");
        QTEST(CustomTokens::referencesSourceData(text), "readsData");
    }

    // The number an element stands for; "-" for none.
    void elementNumber_data() {
        QTest::addColumn<QString>("bagName");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("number");
        row("main path", "full", "price", "", "1234.5");
        row("named path", "full", "tokyo:current.temperature_2m", "", "27.44");
        row("missing source", "full", "paris:x", "", "-");
        row("capital is no source name", "full", "Tokyo:x", "", "-");
        row("path wins over text", "full", "count", "{cpu}", "1234");
        row("first token only", "full", "", "{ram} of {cpu}", "71.25");
        row("no token", "full", "", "cpu", "-");
        row("item", "item", "", "{item:count}", "7.5");
        row("nothing fetched", "bare", "price", "", "-");
        row("no reading yet", "bare", "", "{cpu}", "-");
        row("battery without regard to hasBattery", "bare", "", "{battery}", "57");
        row("uptime in hours", "bare", "", "{uptime}", "77.0164");
    }
    void elementNumber() {
        QFETCH(QString, bagName);
        QFETCH(QString, path);
        QFETCH(QString, text);
        QFETCH(QString, number);
        const std::optional<double> value = CustomTokens::number(
            path, text.isEmpty() ? std::nullopt : std::optional(text), bag(bagName));
        QCOMPARE(value ? QString::number(*value) : u"-"_s, number);
    }

    void uptimeText_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        row("none", 0.0, "0m");
        row("negative", -5.0, "0m");
        row("truncated", 3599.9, "59m");
        row("an hour", 3600.0, "1h 0m");
        row("under a day", 86399.0, "23h 59m");
        row("days", 104400.0, "1d 5h");
        row("not a number", qQNaN(), "0m");
    }
    void uptimeText() {
        QFETCH(double, seconds);
        QTEST(CustomTokens::uptimeText(std::chrono::duration<double>(seconds)), "text");
    }
};

QTEST_GUILESS_MAIN(TestCustomTokens)
#include "tst_customtokens.moc"
