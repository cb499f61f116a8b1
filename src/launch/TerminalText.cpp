#include "launch/TerminalText.h"

#include <QStringList>

#include <vector>

namespace tw {

namespace {

struct Style {
    TerminalColor color;
    bool bold = false;

    bool operator==(const Style&) const = default;
};

struct Cell {
    char32_t character = U' ';
    Style style;
};

// Reads the parameters of "ESC [ … m" into the running style.
void applySgr(const QList<int>& parameters, Style& style) {
    if (parameters.isEmpty()) {
        style = {};
        return;
    }
    for (qsizetype i = 0; i < parameters.size(); ++i) {
        const int p = parameters.at(i);
        if (p == 0) {
            style = {};
        } else if (p == 1) {
            style.bold = true;
        } else if (p == 22) {
            style.bold = false;
        } else if (p >= 30 && p <= 37) {
            style.color = {TerminalColor::Kind::palette, static_cast<quint32>(p - 30)};
        } else if (p >= 90 && p <= 97) {
            style.color = {TerminalColor::Kind::palette, static_cast<quint32>(p - 90 + 8)};
        } else if (p == 39) {
            style.color = {};
        } else if (p == 38 || p == 48) {
            // Extended colours: "5;n" from the palette, "2;r;g;b" direct. Backgrounds are read
            // only to be skipped.
            const int mode = i + 1 < parameters.size() ? parameters.at(i + 1) : -1;
            if (mode == 5 && i + 2 < parameters.size()) {
                if (p == 38) {
                    style.color = {TerminalColor::Kind::palette,
                                   static_cast<quint32>(std::clamp(parameters.at(i + 2), 0, 255))};
                }
                i += 2;
            } else if (mode == 2 && i + 4 < parameters.size()) {
                if (p == 38) {
                    const auto channel = [&](qsizetype at) {
                        return static_cast<quint32>(std::clamp(parameters.at(at), 0, 255));
                    };
                    style.color = {TerminalColor::Kind::rgb,
                                   (channel(i + 2) << 16) | (channel(i + 3) << 8) | channel(i + 4)};
                }
                i += 4;
            } else {
                i = parameters.size();
            }
        }
    }
}

class Screen {
public:
    void put(char32_t c) {
        if (m_column < TerminalText::maxColumns) {
            if (static_cast<qsizetype>(m_line.size()) <= m_column) {
                m_line.resize(static_cast<size_t>(m_column) + 1);
            }
            m_line[static_cast<size_t>(m_column)] = Cell{c, m_style};
        }
        ++m_column;
    }
    void newLine() {
        flush();
        m_line.clear();
        m_column = 0;
    }
    void carriageReturn() { m_column = 0; }
    void backspace() { m_column = std::max(0, m_column - 1); }
    void tab() {
        const int next = (m_column / TerminalText::tabWidth + 1) * TerminalText::tabWidth;
        while (m_column < next) {
            put(U' ');
        }
    }
    // "ESC [ K": 0 to the end of the line, 1 to its start, 2 all of it.
    void eraseInLine(int mode) {
        if (mode == 0 && static_cast<qsizetype>(m_line.size()) > m_column) {
            m_line.resize(static_cast<size_t>(m_column));
        } else if (mode == 1) {
            for (int i = 0; i < m_column && i < static_cast<int>(m_line.size()); ++i) {
                m_line[static_cast<size_t>(i)] = Cell{};
            }
        } else if (mode == 2) {
            m_line.clear();
        }
    }
    Style& style() { return m_style; }
    TerminalText finish(bool pending) {
        if (pending) {
            flush();
        }
        return std::move(m_text);
    }

private:
    void flush() {
        TerminalLine line;
        for (const Cell& cell : m_line) {
            if (line.spans.isEmpty() || line.spans.last().color != cell.style.color ||
                line.spans.last().bold != cell.style.bold) {
                line.spans.append({QString(), cell.style.color, cell.style.bold});
            }
            line.spans.last().text += QString::fromUcs4(&cell.character, 1);
        }
        m_text.lines.append(std::move(line));
    }

    TerminalText m_text;
    std::vector<Cell> m_line;
    int m_column = 0;
    Style m_style;
};

} // namespace

QString TerminalLine::text() const {
    QString out;
    for (const TerminalSpan& span : spans) {
        out += span.text;
    }
    return out;
}

QString TerminalText::plain() const {
    QStringList out;
    for (const TerminalLine& line : lines) {
        out << line.text();
    }
    return out.join(QLatin1Char('\n'));
}

TerminalText TerminalText::decode(const QByteArray& bytes) {
    const QList<uint> text = QString::fromUtf8(bytes).toUcs4();
    Screen screen;
    bool pending = false;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char32_t c = text.at(i);
        if (c == 0x1b) {
            if (i + 1 >= n) {
                break;
            }
            const char32_t kind = text.at(i + 1);
            if (kind == U'[') {
                // CSI: parameters and intermediates up to a final byte in @…~.
                QList<int> parameters;
                int value = -1;
                qsizetype j = i + 2;
                for (; j < n; ++j) {
                    const char32_t p = text.at(j);
                    if (p >= U'0' && p <= U'9') {
                        value =
                            std::min(std::max(value, 0) * 10 + static_cast<int>(p - U'0'), 99999);
                    } else if (p == U';' || p == U':') {
                        parameters << std::max(value, 0);
                        value = -1;
                    } else if (p >= 0x40 && p <= 0x7e) {
                        break;
                    } else if (p < 0x20 || p > 0x3f) {
                        // Not a sequence after all: drop what was read of it.
                        --j;
                        break;
                    }
                }
                if (value >= 0) {
                    parameters << value;
                }
                if (j < n && j >= i + 2) {
                    if (text.at(j) == U'm') {
                        applySgr(parameters, screen.style());
                    } else if (text.at(j) == U'K') {
                        screen.eraseInLine(parameters.value(0, 0));
                    }
                }
                i = std::min(j, n);
            } else if (kind == U']' || kind == U'P' || kind == U'_' || kind == U'^') {
                // OSC and other strings: up to BEL or ESC \ (a window title, a link).
                qsizetype j = i + 2;
                while (j < n && text.at(j) != 0x07 &&
                       !(text.at(j) == 0x1b && j + 1 < n && text.at(j + 1) == U'\\')) {
                    ++j;
                }
                i = j < n && text.at(j) == 0x1b ? j + 1 : j;
            } else if (kind == U'(' || kind == U')' || kind == U'#' || kind == U'%') {
                i += 2; // a character set choice: one more byte
            } else {
                i += 1;
            }
            continue;
        }
        if (c == U'\n') {
            screen.newLine();
            pending = false;
        } else if (c == U'\r') {
            screen.carriageReturn();
        } else if (c == U'\b') {
            screen.backspace();
        } else if (c == U'\t') {
            screen.tab();
            pending = true;
        } else if (c >= 0x20 && c != 0x7f && !(c >= 0x80 && c < 0xa0)) {
            screen.put(c);
            pending = true;
        }
    }
    return screen.finish(pending);
}

} // namespace tw
