#include "model/WidgetSize.h"

#include <QTest>

using tw::WidgetSize;

Q_DECLARE_METATYPE(tw::WidgetSize)

class TestWidgetSize : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void derivedValues_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("raw");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("cells");
        QTest::addColumn<QString>("span");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QSizeF>("points");
        const auto row = [](WidgetSize size, const char* raw, int c, int r, int cells,
                            const char* span, const char* label, QSizeF points) {
            QTest::newRow(raw) << size << QString::fromLatin1(raw) << c << r << cells
                               << QString::fromUtf8(span) << QString::fromUtf8(label) << points;
        };
        row(WidgetSize::small, "small", 1, 1, 1, "1×1", "Small (1×1)", {96, 96});
        row(WidgetSize::tall, "tall", 1, 2, 2, "1×2", "Tall (1×2)", {96, 204});
        row(WidgetSize::wide, "wide", 2, 1, 2, "2×1", "Wide (2×1)", {204, 96});
        row(WidgetSize::large, "large", 2, 2, 4, "2×2", "Large (2×2)", {204, 204});
        row(WidgetSize::banner, "banner", 3, 1, 3, "3×1", "Banner (3×1)", {312, 96});
        row(WidgetSize::wideTall, "wideTall", 3, 2, 6, "3×2", "Big (3×2)", {312, 204});
        row(WidgetSize::huge, "huge", 3, 3, 9, "3×3", "Huge (3×3)", {312, 312});
        row(WidgetSize::panorama, "panorama", 4, 2, 8, "4×2", "Panorama (4×2)", {420, 204});
        row(WidgetSize::grand, "grand", 4, 3, 12, "4×3", "Grand (4×3)", {420, 312});
    }
    void derivedValues() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, raw);
        QCOMPARE(tw::rawValue(size), raw);
        QCOMPARE(tw::widgetSizeFromRawValue(raw), size);
        QTEST(tw::columns(size), "columns");
        QTEST(tw::rows(size), "rows");
        QTEST(tw::cellCount(size), "cells");
        QTEST(tw::spanHint(size), "span");
        QTEST(tw::label(size), "label");
        QTEST(tw::nominalPixelSize(size), "points");
    }

    void casesKeepTheirOrder() {
        QStringList raws;
        for (const WidgetSize size : tw::allWidgetSizes) {
            raws.append(tw::rawValue(size));
        }
        QCOMPARE(raws.join(QLatin1Char(',')),
                 QStringLiteral("small,tall,wide,large,banner,wideTall,huge,panorama,grand"));
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
