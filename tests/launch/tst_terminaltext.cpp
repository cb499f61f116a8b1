#include "TestRows.h"
#include "launch/TerminalText.h"

#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

// A line as text with its styled spans marked: "[b]" bold, "[p3]" palette 3, "[#ff8000]" rgb.
QString marked(const TerminalLine& line) {
    QString out;
    for (const TerminalSpan& span : line.spans) {
        QString mark;
        if (span.bold) {
            mark += QStringLiteral("b");
        }
        if (span.color.kind == TerminalColor::Kind::palette) {
            mark += QStringLiteral("p%1").arg(span.color.value);
        } else if (span.color.kind == TerminalColor::Kind::rgb) {
            mark += QStringLiteral("#%1").arg(span.color.value, 6, 16, QLatin1Char('0'));
        }
        out += mark.isEmpty() ? span.text : QStringLiteral("[%1]%2").arg(mark, span.text);
    }
    return out;
}

} // namespace

class TestTerminalText : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decode_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("lines");
        const auto lines = [](std::initializer_list<const char*> list) {
            QStringList out;
            for (const char* l : list) {
                out << QString::fromUtf8(l);
            }
            return out;
        };
        row("plain lines, no empty last line", QByteArray("a\nb\n"), lines({"a", "b"}));
        row("a last line without its end", QByteArray("a\nb"), lines({"a", "b"}));
        row("empty lines stay", QByteArray("a\n\nb\n"), lines({"a", "", "b"}));
        row("colours and reset", QByteArray("\x1b[31mred\x1b[0m ok\x1b[1;92m!\x1b[m\n"),
            lines({"[p1]red ok[bp10]!"}));
        row("256 colours and direct colour", QByteArray("\x1b[38;5;208ma\x1b[38;2;255;128;0mb\n"),
            lines({"[p208]a[#ff8000]b"}));
        row("backgrounds are skipped", QByteArray("\x1b[48;5;1;32mx\x1b[48;2;1;2;3mz\n"),
            lines({"[p2]xz"}));
        row("bold off and default colour", QByteArray("\x1b[1;33mA\x1b[22mB\x1b[39mC\n"),
            lines({"[bp3]A[p3]B"
                   "C"}));
        row("a progress bar overwrites itself", QByteArray("10%\r50%\r100%\n"), lines({"100%"}));
        row("return then erase to the end", QByteArray("downloading\rdone\x1b[K\n"),
            lines({"done"}));
        row("backspace overwrites", QByteArray("ab\bc\n"), lines({"ac"}));
        row("windows line ends", QByteArray("a\r\nb\r\n"), lines({"a", "b"}));
        row("tabs to every eighth column", QByteArray("a\tb\n12345678\tc\n"),
            lines({"a       b", "12345678        c"}));
        row("cursor moves and titles dropped",
            QByteArray("\x1b]0;title\x07\x1b[2J\x1b[Hx\x1b[?25l\x1b(By\n"), lines({"xy"}));
        row("other controls dropped",
            QByteArray("a\x07\x01\x7f"
                       "b\n"),
            lines({"ab"}));
        row("invalid UTF-8 is a replacement", QByteArray("caf\xc3\xa9 \xff\n"),
            lines({"café \xef\xbf\xbd"}));
        row("a cut escape at the end", QByteArray("ok\x1b["), lines({"ok"}));
        row("a lone escape at the end", QByteArray("ok\x1b"), lines({"ok"}));
    }
    void decode() {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, lines);
        QStringList out;
        for (const TerminalLine& line : TerminalText::decode(bytes).lines) {
            out << marked(line);
        }
        QCOMPARE(out, lines);
    }

    void longLinesAreCut() {
        const TerminalText text = TerminalText::decode(QByteArray(5000, 'x') + "\r\x1b[31my");
        QCOMPARE(text.lines.size(), 1);
        QCOMPARE(text.lines.first().text().size(), TerminalText::maxColumns);
        QCOMPARE(text.lines.first().spans.first().text, QStringLiteral("y"));
    }
};

QTEST_GUILESS_MAIN(TestTerminalText)
#include "tst_terminaltext.moc"
