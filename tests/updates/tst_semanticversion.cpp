#include "TestRows.h"
#include "updates/SemanticVersion.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

class TestSemanticVersion : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // empty: refused
        row("plain", "1.4.2", "1.4.2");
        row("leading v and spaces", " v2.0.1 ", "2.0.1");
        row("missing patch", "2.1", "2.1.0");
        row("major alone", "3", "3.0.0");
        row("pre-release", "1.0.0-beta.3", "1.0.0-beta.3");
        row("build metadata dropped", "1.0.0-rc.1+build.7", "1.0.0-rc.1");
        row("huge numbers", "18446744073709551615.0.0", "18446744073709551615.0.0");
        row("overflow", "18446744073709551616.0.0", "");
        row("leading zero", "1.02.0", "");
        row("leading zero in pre-release number", "1.0.0-01", "");
        row("four parts", "1.2.3.4", "");
        row("empty part", "1..3", "");
        row("empty pre-release identifier", "1.0.0-a..b", "");
        row("bad build", "1.0.0+", "");
        row("letters", "one.two", "");
        row("negative", "-1.0.0", "");
        row("empty", "", "");
        row("too long", "1.0.0-aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
            "");
    }
    void parse() {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const auto version = SemanticVersion::parse(text);
        QCOMPARE(version ? version->toString() : QString(), expected);
    }

    void order_data() {
        QTest::addColumn<QString>("lower");
        QTest::addColumn<QString>("higher");
        row("patch", "1.0.0", "1.0.1");
        row("numbers, not text", "1.9.0", "1.10.0");
        row("major over minor", "1.99.99", "2.0.0");
        row("pre-release below its release", "1.0.0-rc.1", "1.0.0");
        row("alpha below beta", "1.0.0-alpha", "1.0.0-beta");
        row("numeric identifiers as numbers", "1.0.0-beta.2", "1.0.0-beta.11");
        row("numeric below alphanumeric", "1.0.0-1", "1.0.0-alpha");
        row("longer list wins", "1.0.0-alpha", "1.0.0-alpha.1");
        row("release above older's pre-release", "0.9.9", "1.0.0-alpha");
    }
    void order() {
        QFETCH(QString, lower);
        QFETCH(QString, higher);
        const SemanticVersion a = SemanticVersion::parse(lower).value();
        const SemanticVersion b = SemanticVersion::parse(higher).value();
        QVERIFY(a < b);
        QVERIFY(b > a);
        QVERIFY(a != b);
    }

    void buildMetadataDoesNotCount() {
        QCOMPARE(SemanticVersion::parse(QStringLiteral("1.0.0+a")),
                 SemanticVersion::parse(QStringLiteral("1.0.0+b")));
    }
};

QTEST_GUILESS_MAIN(TestSemanticVersion)
#include "tst_semanticversion.moc"
