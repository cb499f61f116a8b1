#include "GoldenFile.h"
#include "model/SizeReport.h"
#include "model/WidgetSize.h"

#include <QTest>

using tw::WidgetSize;

// The sizes, and the command line's two reports of them. Each size's span, words and points are in
// the catalogue's golden copy (tests/look); here the words read back and the spans differ.
class TestWidgetSize : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void wordsReadBackAndSpansDiffer() {
        QSet<QString> spans;
        for (const WidgetSize size : tw::allWidgetSizes) {
            QCOMPARE(tw::widgetSizeFromRawValue(tw::rawValue(size)), size);
            spans.insert(tw::spanHint(size));
        }
        QCOMPARE(spans.size(), qsizetype(tw::allWidgetSizes.size()));
        // Words are matched exactly; retired ones are gone.
        for (const char* raw : {"", "Large", "widetall", " small", "medium"}) {
            QCOMPARE(tw::widgetSizeFromRawValue(QString::fromLatin1(raw)), std::nullopt);
        }
    }

    // The two reports compared whole with a reviewed copy under golden/.
    void reportsMatchTheReviewedCopy() {
        const QString table = tw::SizeReport::table();
        const QString list = tw::SizeReport::listSizes();
        QVERIFY(table.endsWith(QLatin1Char('\n')) && list.endsWith(QLatin1Char('\n')));
        QStringList lines = QString(table + list).split(QLatin1Char('\n'));
        lines.removeLast();
        tw::test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/size-reports.txt"), lines);
    }
};

QTEST_GUILESS_MAIN(TestWidgetSize)
#include "tst_widgetsize.moc"
