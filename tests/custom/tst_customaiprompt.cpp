// The assistant prompt: its fixed pieces in their order in both languages, its example a widget
// without a fault, and the JSON read back out of an assistant's answer.
#include "TestRows.h"
#include "custom/CustomAIPrompt.h"
#include "custom/CustomWidgetDefinition.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

class TestCustomAIPrompt : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void piecesInOrder_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("placeholder");
        row("english", "en_GB", "[PUT YOUR WISH HERE]");
        row("no language", "", "[PUT YOUR WISH HERE]");
        row("german", "de", "[HIER DEINEN WUNSCH EINFÜGEN]");
        row("austrian", "de_AT", "[HIER DEINEN WUNSCH EINFÜGEN]");
    }
    void piecesInOrder() {
        QFETCH(QString, language);
        QFETCH(QString, placeholder);
        const QString prompt = CustomAIPrompt::forLanguage(language);
        QVERIFY(prompt.startsWith(
            QStringLiteral("You are an expert designer of Mac desktop widgets. Build ONE widget "
                           "for the Mac app \"Tarnwick\".")));
        qsizetype at = 0;
        for (const QString& piece :
             {QStringLiteral("===== MY WISH ====="), placeholder,
              QStringLiteral("An example of a good wish"), QStringLiteral("HOW TO THINK ABOUT IT"),
              QStringLiteral("THE FORMAT"), QStringLiteral("ELEMENTS"),
              QStringLiteral("PATHS AND TOKENS"),
              QStringLiteral("GOOD FREE SOURCES (no key needed)"), QStringLiteral("DESIGN RULES"),
              QStringLiteral("BEFORE YOU ANSWER, CHECK"),
              QStringLiteral("ANSWER WITH ONE ```json CODE BLOCK THAT CONTAINS THE COMPLETE "
                             "WIDGET, AND NOTHING ELSE."),
              QStringLiteral("EXAMPLE OF A FINISHED WIDGET\n```json\n")}) {
            const qsizetype found = prompt.indexOf(piece, at);
            QVERIFY2(found >= at, qPrintable(piece));
            at = found + piece.size();
        }
        QVERIFY(prompt.endsWith(QStringLiteral("}\n```")));
        QVERIFY(prompt.size() > 4000);
        // The example is a widget that draws as it stands.
        const std::optional<CustomWidgetDefinition> example =
            CustomWidgetDefinition::decode(*CustomAIPrompt::extractJSON(prompt.mid(at - 8)));
        QVERIFY(example);
        QCOMPARE(example->issues(), QList<CustomWidgetIssue>());
        QCOMPARE(example->sanitized().schema, example->schema);
    }

    void extractsTheWidget_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("json");
        row("prose around a block", "Here it is:\n```json\n{\"a\": {\"b\": 1}}\n```\nEnjoy {!}",
            "{\"a\": {\"b\": 1}}");
        row("a block without a tag", "```\n {\"a\": 1} \n```", "{\"a\": 1}");
        row("a block never closed", "```json\n{\"a\": 1}\nand more", "{\"a\": 1}");
        row("no fence", "Sure! {\"a\": {\"b\": 2}} Done.", "{\"a\": {\"b\": 2}}");
        row("a brace after the last one", "} then {", "");
        row("no braces", "I can't do that.", "");
        row("empty", "", "");
    }
    void extractsTheWidget() {
        QFETCH(QString, answer);
        QTEST(CustomAIPrompt::extractJSON(answer).value_or(QString()), "json");
    }
};

QTEST_MAIN(TestCustomAIPrompt)
#include "tst_customaiprompt.moc"
