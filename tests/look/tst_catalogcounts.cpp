#include "look/CatalogCounts.h"

#include <QTest>

class TestCatalogCounts : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void line() {
        QCOMPARE(tw::CatalogCounts::widgets(), 51);
        QCOMPARE(tw::CatalogCounts::sizes(), 9);
        QCOMPARE(tw::CatalogCounts::themes(), 25);
        QCOMPARE(tw::CatalogCounts::line(), QStringLiteral("widgets=51 sizes=9 themes=25"));
    }
};

QTEST_GUILESS_MAIN(TestCatalogCounts)
#include "tst_catalogcounts.moc"
