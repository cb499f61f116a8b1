#include "grid/DropDecision.h"

#include <QTest>

using tw::DropDecision;
using Tiles = QList<DropDecision::Tile>;
using Bounds = std::optional<QRectF>;
Q_DECLARE_METATYPE(Tiles)
Q_DECLARE_METATYPE(Bounds)
Q_DECLARE_METATYPE(DropDecision::Outcome)

namespace {
const QUuid a = QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000a}"));
const QUuid b = QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000b}"));
} // namespace

class TestDropDecision : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decide_data() {
        using enum DropDecision::Outcome;
        using tw::WidgetSize;
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<Tiles>("others");
        QTest::addColumn<Bounds>("bounds");
        QTest::addColumn<DropDecision::Outcome>("outcome");
        QTest::addColumn<QUuid>("onto");
        QTest::addColumn<QRectF>("where");
        const Bounds screen = QRectF(0, 0, 1440, 900);
        const QRectF r(100, 100, 96, 96);
        QTest::newRow("empty rectangle") << QRectF(100, 100, 0, 96) << Tiles{} << screen << ignore
                                         << QUuid() << QRectF(100, 100, 0, 96);
        QTest::newRow("alone") << r << Tiles{} << screen << stay << QUuid() << r;
        // 40 × 100 of 100 × 100: every figure is exact in binary, so the share is the
        // threshold itself.
        const QRectF square(100, 100, 100, 100);
        QTest::newRow("exactly 40% of the same size stacks")
            << square << Tiles{{a, WidgetSize::small, {160, 100, 100, 100}}} << screen << stack << a
            << square;
        QTest::newRow("39% of the same size slides")
            << r << Tiles{{a, WidgetSize::small, {158.56, 100, 96, 96}}} << screen << slide
            << QUuid() << QRectF(50.56, 100, 96, 96);
        QTest::newRow("half onto another size slides")
            << r << Tiles{{a, WidgetSize::large, {148, 0, 204, 204}}} << screen << slide << QUuid()
            << QRectF(40, 100, 96, 96);
        QTest::newRow("the larger share wins") << r
                                               << Tiles{{a, WidgetSize::small, {140, 100, 96, 96}},
                                                        {b, WidgetSize::small, {110, 100, 96, 96}}}
                                               << screen << stack << b << r;
        QTest::newRow("equal shares: the first stays")
            << r
            << Tiles{{a, WidgetSize::small, {130, 100, 96, 96}},
                     {b, WidgetSize::small, {70, 100, 96, 96}}}
            << screen << stack << a << r;
        QTest::newRow("nowhere to slide: stays")
            << r << Tiles{{a, WidgetSize::large, {0, 0, 300, 300}}}
            << Bounds(QRectF(0, 0, 300, 300)) << stay << QUuid() << r;
    }
    void decide() {
        QFETCH(QRectF, rect);
        QFETCH(Tiles, others);
        QFETCH(Bounds, bounds);
        QFETCH(DropDecision::Outcome, outcome);
        QFETCH(QUuid, onto);
        QFETCH(QRectF, where);
        const DropDecision d = DropDecision::decide(tw::WidgetSize::small, rect, others, bounds);
        QCOMPARE(d.outcome, outcome);
        QCOMPARE(d.stackOnto, onto);
        QCOMPARE(d.rect, where);
    }
};

QTEST_GUILESS_MAIN(TestDropDecision)
#include "tst_dropdecision.moc"
