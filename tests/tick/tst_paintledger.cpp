#include "tick/PaintLedger.h"

#include <QRegularExpression>
#include <QTest>

using namespace tw;
using namespace std::chrono;

class tst_PaintLedger : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Paints written "tile:ms@s", read at a second: "tile=ms/paints", the costliest first.
    void lastMinute_data() {
        QTest::addColumn<QString>("paints");
        QTest::addColumn<int>("at");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing") << "" << 0 << "";
        QTest::newRow("summed per tile, costliest first")
            << "a:2@1 b:5@2 a:4@3" << 3 << "a=6/2 b=5/1";
        QTest::newRow("a paint exactly a minute old is gone") << "a:2@0 b:1@1" << 60 << "b=1/1";
        QTest::newRow("everything older than a minute") << "a:2@0 b:1@1" << 200 << "";
        QTest::newRow("ties by id") << "b:3@1 a:3@1" << 1 << "a=3/1 b=3/1";
    }
    void lastMinute() {
        QFETCH(QString, paints);
        QFETCH(int, at);
        const auto id = [](QStringView name) {
            return QUuid::fromString(QStringLiteral("{00000000-0000-0000-0000-00000000000%1}")
                                         .arg(name == u"a" ? 1 : 2));
        };
        PaintLedger ledger;
        for (const QString& paint : paints.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QStringList parts = paint.split(QRegularExpression(QStringLiteral("[:@]")));
            ledger.record(id(parts[0]), milliseconds(parts[1].toInt()), seconds(parts[2].toInt()));
        }
        QStringList got;
        for (const PaintLedger::Cost& cost : ledger.lastMinute(seconds(at))) {
            got << QStringLiteral("%1=%2/%3")
                       .arg(cost.id == id(u"a") ? u"a" : u"b")
                       .arg(duration_cast<milliseconds>(cost.spent).count())
                       .arg(cost.paints);
        }
        QTEST(got.join(QLatin1Char(' ')), "expected");
    }
};

QTEST_APPLESS_MAIN(tst_PaintLedger)
#include "tst_paintledger.moc"
