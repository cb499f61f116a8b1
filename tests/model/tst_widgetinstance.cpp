#include "model/WidgetInstance.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using tw::WidgetInstance;
using tw::WidgetSize;

Q_DECLARE_METATYPE(tw::WidgetSize)

namespace {

std::optional<WidgetInstance> decode(const char* json) {
    return WidgetInstance::fromJson(QJsonDocument::fromJson(QByteArray(json)).object());
}

} // namespace

class TestWidgetInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onlyKindTakesEveryDefault() {
        const auto a = decode(R"({"kind":"clock"})");
        const auto b = decode(R"({"kind":"clock"})");
        QVERIFY(a && b);
        QVERIFY(!a->id.isNull());
        QVERIFY(a->id != b->id);
        QCOMPARE(a->kind, QStringLiteral("clock"));
        QCOMPARE(a->size, WidgetSize::large);
        QCOMPARE(a->order, 0);
        QCOMPARE(a->page, 0);
        QCOMPARE(a->col, -1);
        QCOMPARE(a->row, -1);
        QVERIFY(!a->isPlaced());
        QVERIFY(!a->posX && !a->posY && !a->settings && !a->stackID && !a->stackIndex);
    }

    void failingInstances_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("no kind") << QByteArray(R"({"size":"small"})");
        QTest::newRow("kind not a string") << QByteArray(R"({"kind":7})");
        QTest::newRow("unknown size") << QByteArray(R"({"kind":"clock","size":"medium"})");
        QTest::newRow("size in another case") << QByteArray(R"({"kind":"clock","size":"Small"})");
        QTest::newRow("size a number") << QByteArray(R"({"kind":"clock","size":2})");
        QTest::newRow("not an object") << QByteArray(R"(["kind","clock"])");
        // A key of the wrong type costs the widget rather than passing for its default.
        QTest::newRow("malformed id") << QByteArray(R"({"kind":"clock","id":"not-a-uuid"})");
        QTest::newRow("malformed stackID") << QByteArray(R"({"kind":"clock","stackID":42})");
        QTest::newRow("order a string") << QByteArray(R"({"kind":"clock","order":"3"})");
        QTest::newRow("page a fraction") << QByteArray(R"({"kind":"clock","page":1.5})");
        QTest::newRow("posX a string") << QByteArray(R"({"kind":"clock","posX":"12"})");
        QTest::newRow("stackIndex a Boolean")
            << QByteArray(R"({"kind":"clock","stackIndex":true})");
        QTest::newRow("settings a list") << QByteArray(R"({"kind":"clock","settings":["a"]})");
    }
    void failingInstances() {
        QFETCH(QByteArray, json);
        const QJsonDocument document = QJsonDocument::fromJson(json);
        const QJsonValue value =
            document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
        QCOMPARE(WidgetInstance::fromJson(value), std::nullopt);
    }

    // Null stands for absent, a whole number written with a fraction is still whole, and a
    // setting of another kind costs only itself.
    void nullsAndWholeFractionsDecode() {
        const auto instance = decode(
            R"({"kind":"note","id":null,"size":null,"col":2.0,"row":null,"posX":null,)"
            R"("stackID":null,"stackIndex":-1,"settings":{"a":"x","b":2,"c":true,"d":[1]}})");
        QVERIFY(instance);
        QVERIFY(!instance->id.isNull());
        QCOMPARE(instance->size, WidgetSize::large);
        QCOMPARE(instance->col, 2);
        QCOMPARE(instance->row, -1);
        QCOMPARE(instance->posX, std::nullopt);
        QCOMPARE(instance->stackID, std::nullopt);
        QCOMPARE(instance->stackIndex, -1);
        QCOMPARE(instance->settings,
                 (tw::WidgetSettings{{QStringLiteral("a"), QStringLiteral("x")},
                                     {QStringLiteral("b"), QStringLiteral("2")},
                                     {QStringLiteral("c"), QStringLiteral("true")}}));
    }

    void encodingWritesOptionalsOnlyWhenSet() {
        WidgetInstance bare;
        bare.kind = QStringLiteral("clock");
        const QStringList bareKeys = bare.toJson().keys();
        QCOMPARE(bareKeys,
                 (QStringList{QStringLiteral("col"), QStringLiteral("id"), QStringLiteral("kind"),
                              QStringLiteral("order"), QStringLiteral("page"),
                              QStringLiteral("row"), QStringLiteral("size")}));

        WidgetInstance full = bare;
        full.posX = -1920.5;
        full.posY = 0.0;
        full.settings = tw::WidgetSettings{};
        full.stackID = QUuid::createUuid();
        full.stackIndex = 0;
        const QJsonObject json = full.toJson();
        QCOMPARE(json.size(), 12);
        QCOMPARE(json.value(QStringLiteral("settings")).toObject().size(), 0);
        QCOMPARE(WidgetInstance::fromJson(json), full);
    }

    void uuidsAreUpperCase() {
        WidgetInstance instance;
        instance.kind = QStringLiteral("clock");
        instance.id = QUuid::fromString(QStringLiteral("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"));
        instance.stackID = instance.id;
        const QJsonObject json = instance.toJson();
        QCOMPARE(json.value(QStringLiteral("id")).toString(),
                 QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
        QCOMPARE(json.value(QStringLiteral("stackID")).toString(),
                 QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
        // Files written by hand in lower case still read.
        QCOMPARE(decode(R"({"kind":"clock","id":"e621e1f8-c36c-495a-93fc-0c247a3e6e5f"})")->id,
                 instance.id);
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
        QTest::newRow("negative") << QStringLiteral("-2") << true << 1.0;
        QTest::newRow("nan") << QStringLiteral("nan") << true << 1.0;
        QTest::newRow("inf") << QStringLiteral("inf") << true << 1.0;
        QTest::newRow("words") << QStringLiteral("big") << true << 1.0;
        QTest::newRow("empty") << QString() << true << 1.0;
        QTest::newRow("1.5 exact") << QStringLiteral("1.5") << true << 1.5;
        QTest::newRow("huge") << QStringLiteral("1e300") << true << 2.5;
    }
    void scaleFromText() {
        QFETCH(QString, text);
        QFETCH(bool, present);
        QFETCH(double, expected);
        const double scale = WidgetInstance::scale(present ? std::optional(text) : std::nullopt);
        QVERIFY2(qFuzzyCompare(scale, expected), qPrintable(QString::number(scale)));
    }

    void pixelSizeFollowsTileScale_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("tileScale");
        QTest::addColumn<QSizeF>("expected");
        QTest::newRow("large at 1.5")
            << WidgetSize::large << QStringLiteral("1.5") << QSizeF(306, 306);
        QTest::newRow("small unscaled") << WidgetSize::small << QString() << QSizeF(96, 96);
        QTest::newRow("grand at 2") << WidgetSize::grand << QStringLiteral("2") << QSizeF(840, 624);
        QTest::newRow("wide, bad scale")
            << WidgetSize::wide << QStringLiteral("x") << QSizeF(204, 96);
    }
    void pixelSizeFollowsTileScale() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, tileScale);
        WidgetInstance instance;
        instance.kind = QStringLiteral("clock");
        instance.size = size;
        if (!tileScale.isNull()) {
            instance.settings = tw::WidgetSettings{{QStringLiteral("tileScale"), tileScale}};
        }
        QTEST(instance.pixelSize(), "expected");
    }
};

QTEST_GUILESS_MAIN(TestWidgetInstance)
#include "tst_widgetinstance.moc"
