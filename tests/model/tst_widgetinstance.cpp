#include "TestRows.h"
#include "model/GridLayout.h"
#include "model/WidgetInstance.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using tw::GridLayout;
using tw::WidgetInstance;
using tw::WidgetSize;
using tw::test::row;

namespace {

std::optional<WidgetInstance> decode(const QString& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    return WidgetInstance::fromJson(document.isObject() ? QJsonValue(document.object())
                                                        : QJsonValue(document.array()));
}

// "kind size order page col,row posX,posY stackID stackIndex settings", "-" for what is absent and
// settings as "key=value;…".
QString describe(const WidgetInstance& i) {
    const auto orDash = [](const auto& value) {
        return value ? QVariant::fromValue(*value).toString() : QStringLiteral("-");
    };
    QString settings = QStringLiteral("-");
    if (i.settings) {
        QStringList pairs;
        for (auto it = i.settings->cbegin(); it != i.settings->cend(); ++it) {
            pairs << it.key() + QLatin1Char('=') + it.value();
        }
        settings = pairs.join(QLatin1Char(';'));
    }
    return QStringLiteral("%1 %2 %3 %4 %5,%6 %7,%8 %9 %10 %11")
        .arg(i.kind, tw::rawValue(i.size))
        .arg(i.order)
        .arg(i.page)
        .arg(i.col)
        .arg(i.row)
        .arg(orDash(i.posX), orDash(i.posY), orDash(i.stackID), orDash(i.stackIndex), settings);
}

} // namespace

// A widget instance and the layout of them that is stored: lenient decoding, encoding, the scale
// and the ready-made layouts.
class TestWidgetInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decoding_data() {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("expected");
        row("only a kind takes every default", R"({"kind":"clock"})",
            "clock large 0 0 -1,-1 -,- - - -");
        row("every key",
            R"({"kind":"a","size":"wide","order":4,"page":2,"col":3,"row":1,)"
            R"("posX":-1920.5,"posY":0,"stackID":"e621e1f8-c36c-495a-93fc-0c247a3e6e5f",)"
            R"("stackIndex":1,"settings":{"k":"v"}})",
            "a wide 4 2 3,1 -1920.5,0 {e621e1f8-c36c-495a-93fc-0c247a3e6e5f} 1 k=v");
        // Null stands for absent, a whole number written with a fraction is still whole, and a
        // setting of another kind costs only itself.
        row("nulls and whole fractions",
            R"({"kind":"note","id":null,"size":null,"col":2.0,"row":null,"posX":null,)"
            R"("stackID":null,"stackIndex":-1,"settings":{"a":"x","b":2,"c":true,"d":[1]}})",
            "note large 0 0 2,-1 -,- - -1 a=x;b=2;c=true");
        row("no kind", R"({"size":"small"})", "fails");
        row("unknown size", R"({"kind":"clock","size":"medium"})", "fails");
        row("not an object", R"(["kind","clock"])", "fails");
        // A key of the wrong type costs the widget rather than passing for its default.
        row("malformed id", R"({"kind":"clock","id":"not-a-uuid"})", "fails");
        row("malformed stackID", R"({"kind":"clock","stackID":42})", "fails");
        row("order a string", R"({"kind":"clock","order":"3"})", "fails");
        row("page a fraction", R"({"kind":"clock","page":1.5})", "fails");
        row("posX a string", R"({"kind":"clock","posX":"12"})", "fails");
        row("stackIndex a Boolean", R"({"kind":"clock","stackIndex":true})", "fails");
        row("settings a list", R"({"kind":"clock","settings":["a"]})", "fails");
    }
    void decoding() {
        QFETCH(QString, json);
        const auto instance = decode(json);
        QTEST(instance ? describe(*instance) : QStringLiteral("fails"), "expected");
        if (!instance) {
            return;
        }
        if (!json.contains(QLatin1String("\"id\""))) {
            QVERIFY(!instance->id.isNull());
            QVERIFY(instance->id != decode(json)->id);
        }
        // Written back the same, optionals only when set, identifiers in upper case.
        const QJsonObject written = instance->toJson();
        QCOMPARE(WidgetInstance::fromJson(written), instance);
        QCOMPARE(written.size(),
                 7 + int(instance->posX.has_value()) + int(instance->posY.has_value()) +
                     int(instance->stackID.has_value()) + int(instance->stackIndex.has_value()) +
                     int(instance->settings.has_value()));
        for (const char* key : {"id", "stackID"}) {
            const QString id = written.value(QLatin1String(key)).toString();
            QCOMPARE(id, id.toUpper());
        }
    }

    void scaleFromText_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("present");
        QTest::addColumn<double>("expected");
        QTest::newRow("absent") << QString() << false << 1.0;
        QTest::newRow("2.51 capped") << QStringLiteral("2.51") << true << 2.5;
        QTest::newRow("1.02 rounds down") << QStringLiteral("1.02") << true << 1.0;
        QTest::newRow("1.03 rounds up") << QStringLiteral("1.03") << true << 1.05;
        QTest::newRow("1.125 half away from zero") << QStringLiteral("1.125") << true << 1.15;
        QTest::newRow("0.5 below range") << QStringLiteral("0.5") << true << 1.0;
        QTest::newRow("nan") << QStringLiteral("nan") << true << 1.0;
        QTest::newRow("words") << QStringLiteral("big") << true << 1.0;
    }
    // The tile scale as stored, and the pixel size it gives a large tile.
    void scaleFromText() {
        QFETCH(QString, text);
        QFETCH(bool, present);
        QFETCH(double, expected);
        const std::optional<QString> stored = present ? std::optional(text) : std::nullopt;
        const double scale = WidgetInstance::scale(stored);
        QVERIFY2(qFuzzyCompare(scale, expected), qPrintable(QString::number(scale)));
        WidgetInstance instance;
        instance.size = WidgetSize::large;
        if (stored) {
            instance.settings = tw::WidgetSettings{{QStringLiteral("tileScale"), *stored}};
        }
        QCOMPARE(instance.pixelSize(), QSizeF(204, 204) * expected);
    }

    // What a stored text decodes to: "fails", or the kinds kept, the page count and the stamp.
    void layoutDecoding_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        row("one bad instance costs only itself",
            R"({"instances":[{"kind":"clock","size":"small"},{"kind":"weather","size":"enormous"},)"
            R"({"size":"large"},"garbage",{"kind":"battery","size":"wide"}],"pageCount":1})",
            "clock,battery pages=1 savedAt=-");
        row("no instances", R"({"pageCount":2})", "fails");
        row("not JSON", "{\"instances\":[", "fails");
        row("stored 1, instance on page 3",
            R"({"instances":[{"kind":"clock","page":3}],"pageCount":1})",
            "clock pages=4 savedAt=-");
        row("stored larger wins", R"({"instances":[{"kind":"a","page":1}],"pageCount":6})",
            "a pages=6 savedAt=-");
        row("stored 0, empty", R"({"instances":[],"pageCount":0})", " pages=1 savedAt=-");
        row("page of the dropped instance ignored", R"({"instances":[{"kind":"a"},{"page":9}]})",
            "a pages=1 savedAt=-");
        row("largest page cannot overflow", R"({"instances":[{"kind":"a","page":2147483647}]})",
            "a pages=2147483647 savedAt=-");
        row("savedAt in seconds since 2001", R"({"instances":[],"savedAt":0.5})",
            " pages=1 savedAt=2001-01-01T00:00:00.500Z");
        row("savedAt a string", R"({"instances":[],"savedAt":"2026-03-14"})", " pages=1 savedAt=-");
        row("savedAt far future", R"({"instances":[],"savedAt":1e300})", " pages=1 savedAt=-");
        row("savedAt far past", R"({"instances":[],"savedAt":-1e300})", " pages=1 savedAt=-");
    }
    void layoutDecoding() {
        QFETCH(QString, text);
        const auto layout = GridLayout::fromJsonText(text.toUtf8());
        QString actual = QStringLiteral("fails");
        if (layout) {
            QStringList kinds;
            for (const WidgetInstance& instance : layout->instances) {
                kinds << instance.kind;
            }
            actual = QStringLiteral("%1 pages=%2 savedAt=%3")
                         .arg(kinds.join(QLatin1Char(',')))
                         .arg(layout->pageCount)
                         .arg(layout->savedAt ? layout->savedAt->toString(Qt::ISODateWithMs)
                                              : QStringLiteral("-"));
            // Written back in one line and read the same.
            QVERIFY(!layout->toJsonText().contains('\n'));
            QCOMPARE(GridLayout::fromJsonText(layout->toJsonText()), layout);
        }
        QTEST(actual, "expected");
    }

    void readyMadeLayouts() {
        const auto layoutText = [](const GridLayout& layout) -> QString {
            QStringList lines;
            for (const WidgetInstance& instance : layout.instances) {
                lines << describe(instance);
            }
            return lines.join(QStringLiteral("; ")) +
                   QStringLiteral(" pages=%1").arg(layout.pageCount);
        };
        const GridLayout first = GridLayout::firstDesktop();
        QCOMPARE(layoutText(first),
                 QStringLiteral("clock large 0 0 0,0 -,- - - -; calendar large 1 0 2,0 -,- - - -; "
                                "weather wide 2 0 0,2 -,- - - - pages=1"));
        QCOMPARE(layoutText(GridLayout::starter()),
                 QStringLiteral(
                     "clock large 0 0 0,0 -,- - - style=analog; weather wide 1 0 2,0 -,- - - -; "
                     "calendar small 2 0 4,0 -,- - - -; battery small 3 0 5,0 -,- - - style=ring "
                     "pages=1"));
        // Every call gives new identities, so two desktops never share an instance.
        QVERIFY(GridLayout::firstDesktop().instances.at(0).id != first.instances.at(0).id);
    }
};

QTEST_GUILESS_MAIN(TestWidgetInstance)
#include "tst_widgetinstance.moc"
