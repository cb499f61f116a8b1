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
    void oneBadInstanceCostsOnlyItself() {
        const auto layout = GridLayout::fromJsonText(
            R"({"instances":[{"kind":"clock","size":"small","col":0,"row":0},)"
            R"({"kind":"weather","size":"enormous"},)"
            R"({"size":"large"},)"
            R"("garbage",)"
            R"({"kind":"battery","size":"wide","order":4}],"pageCount":1})");
        QVERIFY(layout);
        QCOMPARE(layout->instances.size(), 2);
        QCOMPARE(layout->instances.at(0).kind, QStringLiteral("clock"));
        QCOMPARE(layout->instances.at(0).size, WidgetSize::small);
        QCOMPARE(layout->instances.at(1).kind, QStringLiteral("battery"));
        QCOMPARE(layout->instances.at(1).order, 4);
    }

    void layoutNeedsItsInstances_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("decodes");
        QTest::newRow("no instances") << QByteArray(R"({"pageCount":2})") << false;
        QTest::newRow("instances not a list") << QByteArray(R"({"instances":{}})") << false;
        QTest::newRow("array document") << QByteArray("[]") << false;
        QTest::newRow("not JSON") << QByteArray("{\"instances\":[") << false;
        QTest::newRow("empty file") << QByteArray() << false;
        QTest::newRow("empty list") << QByteArray(R"({"instances":[]})") << true;
    }
    void layoutNeedsItsInstances() {
        QFETCH(QByteArray, text);
        QTEST(GridLayout::fromJsonText(text).has_value(), "decodes");
    }

    void pageCountCoversEveryPage_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("pageCount");
        QTest::newRow("stored 1, instance on page 3")
            << QByteArray(R"({"instances":[{"kind":"clock","page":3}],"pageCount":1})") << 4;
        QTest::newRow("stored larger wins")
            << QByteArray(R"({"instances":[{"kind":"clock","page":1}],"pageCount":6})") << 6;
        QTest::newRow("absent, empty") << QByteArray(R"({"instances":[]})") << 1;
        QTest::newRow("stored 0, empty") << QByteArray(R"({"instances":[],"pageCount":0})") << 1;
        QTest::newRow("absent, page 0") << QByteArray(R"({"instances":[{"kind":"a"}]})") << 1;
        QTest::newRow("page of the dropped instance ignored")
            << QByteArray(R"({"instances":[{"kind":"a"},{"page":9}]})") << 1;
        QTest::newRow("largest page cannot overflow")
            << QByteArray(R"({"instances":[{"kind":"a","page":2147483647}]})") << 2147483647;
    }
    void pageCountCoversEveryPage() {
        QFETCH(QByteArray, text);
        const auto layout = GridLayout::fromJsonText(text);
        QVERIFY(layout);
        QTEST(layout->pageCount, "pageCount");
    }

    void savedAtIsSecondsSince2001() {
        const auto layout = GridLayout::fromJsonText(R"({"instances":[],"savedAt":0})");
        QVERIFY(layout && layout->savedAt);
        QCOMPARE(*layout->savedAt, QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));

        GridLayout stamped;
        stamped.savedAt = QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53, 250), Qt::UTC);
        const QJsonObject json = stamped.toJson();
        QCOMPARE(json.value(QStringLiteral("savedAt")).toDouble(), 795173213.25);
        QCOMPARE(GridLayout::fromJson(json), stamped);
    }

    void unusableSavedAtIsAbsent_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("string") << QByteArray(R"({"instances":[],"savedAt":"2026-03-14"})");
        QTest::newRow("far future") << QByteArray(R"({"instances":[],"savedAt":1e300})");
        QTest::newRow("far past") << QByteArray(R"({"instances":[],"savedAt":-1e300})");
    }
    void unusableSavedAtIsAbsent() {
        QFETCH(QByteArray, text);
        const auto layout = GridLayout::fromJsonText(text);
        QVERIFY(layout);
        QCOMPARE(layout->savedAt, std::nullopt);
    }

    void roundTripKeepsEverything() {
        GridLayout layout = GridLayout::starter();
        layout.pageCount = 3;
        layout.instances[1].posX = 100.25;
        layout.instances[1].posY = -40.0;
        layout.instances[2].stackID = QUuid::createUuid();
        layout.instances[2].stackIndex = 1;
        layout.savedAt = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
        QCOMPARE(GridLayout::fromJsonText(layout.toJsonText()), layout);
        QVERIFY(!layout.toJsonText().contains('\n'));
    }

    void readyMadeLayouts() {
        QCOMPARE(GridLayout::defaultLayout().instances.size(), 0);
        QCOMPARE(GridLayout::defaultLayout().pageCount, 1);
        QCOMPARE(GridLayout::defaultLayout().savedAt, std::nullopt);

        const GridLayout first = GridLayout::firstDesktop();
        QCOMPARE(describe(first), QStringLiteral("clock large 0 0,0 -; calendar large 1 2,0 -; "
                                                 "weather wide 2 0,2 -"));
        const GridLayout starter = GridLayout::starter();
        QCOMPARE(describe(starter),
                 QStringLiteral("clock large 0 0,0 style=analog; weather wide 1 2,0 -; "
                                "calendar small 2 4,0 -; battery small 3 5,0 style=ring"));
        for (const GridLayout& layout : {first, starter}) {
            QCOMPARE(layout.pageCount, 1);
            for (const WidgetInstance& instance : layout.instances) {
                QCOMPARE(instance.page, 0);
                QVERIFY(!instance.posX && !instance.posY && !instance.stackID);
            }
        }
        // Every call gives new identities, so two desktops never share an instance.
        QVERIFY(GridLayout::firstDesktop().instances.at(0).id != first.instances.at(0).id);
    }

private:
    static QString describe(const GridLayout& layout) {
        QStringList parts;
        for (const WidgetInstance& instance : layout.instances) {
            QString settings = QStringLiteral("-");
            if (instance.settings) {
                QStringList pairs;
                for (auto it = instance.settings->cbegin(); it != instance.settings->cend(); ++it) {
                    pairs.append(it.key() + QLatin1Char('=') + it.value());
                }
                settings = pairs.join(QLatin1Char(','));
            }
            parts.append(QStringLiteral("%1 %2 %3 %4,%5 %6")
                             .arg(instance.kind, tw::rawValue(instance.size))
                             .arg(instance.order)
                             .arg(instance.col)
                             .arg(instance.row)
                             .arg(settings));
        }
        return parts.join(QStringLiteral("; "));
    }
};

QTEST_GUILESS_MAIN(TestGridLayout)
#include "tst_gridlayout.moc"
