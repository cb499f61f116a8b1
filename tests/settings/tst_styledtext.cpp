#include "settings/LMarkdown.h"
#include "settings/StyledText.h"

#include <QTest>

using tw::StyledText;
using tw::TextStyle;

namespace {

// "B", "I", "C", "S" for the styles, "P" for none, "L(target)" for a link; runs joined by "|".
QString dump(const StyledText& text) {
    QStringList runs;
    for (const tw::StyledRun& run : text.runs) {
        QString tag;
        for (const auto& [flag, letter] :
             {std::pair(TextStyle::strong, 'B'), std::pair(TextStyle::emphasis, 'I'),
              std::pair(TextStyle::code, 'C'), std::pair(TextStyle::strikethrough, 'S')}) {
            if (run.style.testFlag(flag)) {
                tag += QLatin1Char(letter);
            }
        }
        if (!run.link.isEmpty()) {
            tag += QStringLiteral("L(") + run.link + QLatin1Char(')');
        }
        runs << (tag.isEmpty() ? QStringLiteral("P") : tag) + QLatin1Char(':') + run.text;
    }
    return runs.join(QLatin1Char('|'));
}

} // namespace

class TestStyledText : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parses_data() {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QString>("runs");
        const auto row = [](const char* name, const char* markdown, const char* runs) {
            QTest::newRow(name) << QString::fromUtf8(markdown) << QString::fromUtf8(runs);
        };
        row("plain", "Drag a tile", "P:Drag a tile");
        row("strong", "**Hold** to move", "B:Hold|P: to move");
        row("emphasis both ways", "*one* and _two_", "I:one|P: and |I:two");
        row("strong and emphasis", "***all***", "BI:all");
        row("nested", "**a *b* c**", "B:a |BI:b|B: c");
        row("struck", "~~old~~ new", "S:old|P: new");
        row("code keeps markers", "type `a*b*c`", "P:type |C:a*b*c");
        row("link", "see [the guide](https://example.org/guide) now",
            "P:see |L(https://example.org/guide):the guide|P: now");
        row("bracket without link", "[x] done", "P:[x] done");
        row("escapes", "\\*not\\* \\_this\\_", "P:*not* _this_");
        row("snake case", "tarnwick_app_name", "P:tarnwick_app_name");
        row("lone star", "5 * 3 = 15", "P:5 * 3 = 15");
        row("single tilde", "~5 min", "P:~5 min");
        row("heading and list", "# Tips\n- drag\n* **stack**", "B:Tips|P:\n• drag\n• |B:stack");
        row("lines stay lines", "one\ntwo", "P:one\ntwo");
        row("empty", "", "");
        row("unicode", "Press **⇧** to move", "P:Press |B:⇧|P: to move");
    }
    void parses() {
        QFETCH(QString, markdown);
        QFETCH(QString, runs);
        const auto parsed = StyledText::fromMarkdown(markdown);
        QVERIFY(parsed);
        QCOMPARE(dump(*parsed), runs);
        // A look-up with no translation parses its English default the same way.
        QCOMPARE(tw::LMarkdown("test.markdown.unknownKey", markdown), *parsed);
    }

    void failures_data() {
        QTest::addColumn<QString>("markdown");
        QTest::newRow("open strong") << QStringLiteral("**open");
        QTest::newRow("open code") << QStringLiteral("a `b");
        QTest::newRow("crossed markers") << QStringLiteral("**a *b** c*");
        QTest::newRow("marker across lines") << QStringLiteral("**one\ntwo**");
        QTest::newRow("open strike") << QStringLiteral("~~gone");
    }
    void failures() {
        QFETCH(QString, markdown);
        QVERIFY(!StyledText::fromMarkdown(markdown));
        // The look-up keeps the text as written rather than losing it.
        const StyledText kept = tw::LMarkdown("test.markdown.unknownKey", markdown);
        QCOMPARE(kept, StyledText::plain(markdown));
        QCOMPARE(kept.plainText(), markdown);
    }

    void plainTextDropsTheMarkers() {
        QCOMPARE(StyledText::fromMarkdown(u"Press **⇧** to `move`")->plainText(),
                 QStringLiteral("Press ⇧ to move"));
    }
};

QTEST_GUILESS_MAIN(TestStyledText)
#include "tst_styledtext.moc"
