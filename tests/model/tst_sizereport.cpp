#include "GoldenFile.h"
#include "model/SizeReport.h"

// The two reports of the command line, compared whole with a reviewed copy under golden/.
class TestSizeReport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void reportsMatchTheReviewedCopy() {
        const QString table = tw::SizeReport::table();
        const QString list = tw::SizeReport::listSizes();
        QVERIFY(table.endsWith(QLatin1Char('\n')) && list.endsWith(QLatin1Char('\n')));
        QStringList lines = QString(table + list).split(QLatin1Char('\n'));
        lines.removeLast();
        tw::test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/size-reports.txt"), lines);
    }
};

QTEST_GUILESS_MAIN(TestSizeReport)
#include "tst_sizereport.moc"
