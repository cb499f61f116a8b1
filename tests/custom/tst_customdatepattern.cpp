#include "TestRows.h"
#include "custom/CustomDatePattern.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

class TestCustomDatePattern : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void qtFormat_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("format");
        row("clock", "HH:mm:ss", "HH:mm:ss");
        row("weekday and month", "EEEE, d MMM", "dddd, d MMM");
        row("short weekday", "EEE", "ddd");
        row("years", "yy y yyyy", "yy yyyy yyyy");
        row("twelve hours", "h:mm a", "h:mm AP");
        row("quoted letters", "'week' w, HH'h'", "'week' , HH'h'");
        row("quote in quotes", "'o''clock' H", "'o''clock' H");
        row("lone quote pair", "H''m", "H''m");
        row("unclosed quote", "H 'open", "H 'open");
        row("unknown fields dropped", "QQQ G D", "  ");
        row("zone", "HH:mm zzzz", "HH:mm t");
        row("other scripts pass", "M月d日", "M月d日");
    }
    void qtFormat() {
        QFETCH(QString, pattern);
        QTEST(CustomDatePattern::qtFormat(pattern), "format");
    }
};

QTEST_GUILESS_MAIN(TestCustomDatePattern)
#include "tst_customdatepattern.moc"
