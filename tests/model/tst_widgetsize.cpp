#include "model/WidgetSize.h"

#include <QTest>

using tw::WidgetSize;

// Each size's words and points are in the catalogue's golden copy; here how they derive from the
// span.
class TestWidgetSize : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void derivedFromTheSpan() {
        QSet<QString> spans;
        for (const WidgetSize size : tw::allWidgetSizes) {
            const int c = tw::columns(size);
            const int r = tw::rows(size);
            QCOMPARE(tw::widgetSizeFromRawValue(tw::rawValue(size)), size);
            QCOMPARE(tw::cellCount(size), c * r);
            QCOMPARE(tw::spanHint(size), QStringLiteral("%1×%2").arg(c).arg(r));
            QVERIFY(tw::label(size).endsWith(QLatin1Char('(') + tw::spanHint(size) + u')'));
            QCOMPARE(tw::nominalPixelSize(size),
                     QSizeF(c * 96 + (c - 1) * 12, r * 96 + (r - 1) * 12));
            spans.insert(tw::spanHint(size));
        }
        QCOMPARE(spans.size(), qsizetype(tw::allWidgetSizes.size()));
    }

    void unknownRawValues_data() {
        QTest::addColumn<QString>("raw");
        QTest::newRow("empty") << QString();
        QTest::newRow("other case") << QStringLiteral("Large");
        QTest::newRow("lower-case camel") << QStringLiteral("widetall");
        QTest::newRow("padded") << QStringLiteral(" small");
        QTest::newRow("retired word") << QStringLiteral("medium");
    }
    void unknownRawValues() {
        QFETCH(QString, raw);
        QCOMPARE(tw::widgetSizeFromRawValue(raw), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestWidgetSize)
#include "tst_widgetsize.moc"
