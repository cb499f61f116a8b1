#include "InstanceText.h"
#include "model/GridLayout.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using tw::GridLayout;
using tw::WidgetInstance;
using tw::WidgetSize;

class TestGridLayout : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // What a stored text decodes to: "fails", or the kinds kept, the page count and the stamp.
    void decoding_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* text, const char* expected) {
            QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(expected);
        };
        row("one bad instance costs only itself",
            R"({"instances":[{"kind":"clock","size":"small"},{"kind":"weather","size":"enormous"},)"
            R"({"size":"large"},"garbage",{"kind":"battery","size":"wide"}],"pageCount":1})",
            "clock,battery pages=1 savedAt=-");
        row("no instances", R"({"pageCount":2})", "fails");
        row("instances not a list", R"({"instances":{}})", "fails");
        row("array document", "[]", "fails");
        row("not JSON", "{\"instances\":[", "fails");
        row("empty file", "", "fails");
        row("empty list", R"({"instances":[]})", " pages=1 savedAt=-");
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
    void decoding() {
        QFETCH(QByteArray, text);
        const auto layout = GridLayout::fromJsonText(text);
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
        }
        QTEST(actual, "expected");
    }

    void roundTripKeepsEverything() {
        GridLayout layout = GridLayout::starter();
        layout.pageCount = 3;
        layout.instances[1].posX = 100.25;
        layout.instances[1].posY = -40.0;
        layout.instances[2].stackID = QUuid::createUuid();
        layout.instances[2].stackIndex = 1;
        layout.savedAt = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250), Qt::UTC);
        QCOMPARE(layout.toJson().value(QStringLiteral("savedAt")).toDouble(), 795173213.25);
        QCOMPARE(GridLayout::fromJsonText(layout.toJsonText()), layout);
        QVERIFY(!layout.toJsonText().contains('\n'));
    }

    void readyMadeLayouts() {
        QCOMPARE(GridLayout::defaultLayout().instances.size(), 0);
        QCOMPARE(GridLayout::defaultLayout().pageCount, 1);
        QCOMPARE(GridLayout::defaultLayout().savedAt, std::nullopt);

        const auto describe = [](const GridLayout& layout) -> QString {
            QStringList lines;
            for (const WidgetInstance& instance : layout.instances) {
                lines << tw::test::describe(instance);
            }
            return lines.join(QStringLiteral("; ")) +
                   QStringLiteral(" pages=%1").arg(layout.pageCount);
        };
        const GridLayout first = GridLayout::firstDesktop();
        QCOMPARE(describe(first),
                 QStringLiteral("clock large 0 0 0,0 -,- - - -; calendar large 1 0 2,0 -,- - - -; "
                                "weather wide 2 0 0,2 -,- - - - pages=1"));
        QCOMPARE(describe(GridLayout::starter()),
                 QStringLiteral(
                     "clock large 0 0 0,0 -,- - - style=analog; weather wide 1 0 2,0 -,- - - -; "
                     "calendar small 2 0 4,0 -,- - - -; battery small 3 0 5,0 -,- - - style=ring "
                     "pages=1"));
        // Every call gives new identities, so two desktops never share an instance.
        QVERIFY(GridLayout::firstDesktop().instances.at(0).id != first.instances.at(0).id);
    }
};

QTEST_GUILESS_MAIN(TestGridLayout)
#include "tst_gridlayout.moc"
