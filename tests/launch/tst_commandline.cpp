#include "TestRows.h"
#include "launch/CommandLine.h"

#include <QTest>

using namespace tw;
using tw::test::row;

class TestCommandLine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("words"); // empty: refused
        const auto words = [](std::initializer_list<const char*> list) {
            QStringList out;
            for (const char* w : list) {
                out << QString::fromUtf8(w);
            }
            return out;
        };
        row("plain words", "df -h  /", words({"df", "-h", "/"}));
        row("tabs and line ends separate", "ls\t-l\n/tmp", words({"ls", "-l", "/tmp"}));
        row("single quotes are literal", "echo 'a \"b\" \\n $x'",
            words({"echo", "a \"b\" \\n $x"}));
        row("double quotes take four escapes", "echo \"a \\\"b\\\" \\$x \\n\"",
            words({"echo", "a \"b\" $x \\n"}));
        row("quotes join a word", "echo ab'c d'\"e\"", words({"echo", "abc de"}));
        row("an empty quoted argument stays", "printf '' x", words({"printf", "", "x"}));
        row("backslash keeps a space", "cat my\\ file", words({"cat", "my file"}));
        row("home at a word's start", "ls ~ ~/bin a~b '~'",
            words({"ls", "/home/p", "/home/p/bin", "a~b", "~"}));
        row("operators inside quotes are words", "sh -c 'ls | wc -l; echo $HOME'",
            words({"sh", "-c", "ls | wc -l; echo $HOME"}));
        row("a pipe is refused", "ls | wc", QStringList());
        row("a redirection is refused", "date > out", QStringList());
        row("a variable is refused", "echo $HOME", QStringList());
        row("a background job is refused", "sleep 1 &", QStringList());
        row("an open quote is refused", "echo 'abc", QStringList());
        row("nothing to run", "   ", QStringList());
        row("an empty program", "'' x", QStringList());
    }
    void parse() {
        QFETCH(QString, text);
        QFETCH(QStringList, words);
        const ParsedCommand parsed = CommandLine::parse(text, QStringLiteral("/home/p"));
        if (words.isEmpty()) {
            QVERIFY(parsed.command.isEmpty());
            QVERIFY(!parsed.error.isEmpty());
            return;
        }
        QVERIFY2(parsed.error.isEmpty(), qPrintable(parsed.error));
        QCOMPARE(QStringList(parsed.command.program) + parsed.command.arguments, words);
        // What is shown reads back as the same command.
        QCOMPARE(CommandLine::parse(parsed.command.text(), QStringLiteral("/x")).command,
                 parsed.command);
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
