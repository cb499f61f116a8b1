#include "platform/JsonRepair.h"

#include <QStringList>

#include <charconv>
#include <system_error>

namespace tw {

namespace {

constexpr QByteArrayView kReplacementCharacter("\xEF\xBF\xBD");
constexpr QByteArrayView kNull("null");

unsigned char byteAt(QByteArrayView bytes, qsizetype i) {
    return static_cast<unsigned char>(bytes[i]);
}

// The UTF-8 sequence at `i`: its length when it is well formed; otherwise, as a negative number,
// the length of its longest valid beginning (at least 1), which one U+FFFD replaces.
qsizetype sequenceAt(QByteArrayView bytes, qsizetype i) {
    const unsigned char lead = byteAt(bytes, i);
    if (lead < 0x80) {
        return 1;
    }
    // Well-formed sequences after the Unicode standard: no overlong forms, no surrogates, nothing
    // beyond U+10FFFF. Only the second byte has a narrower range than 80..BF.
    qsizetype length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return -1;
    }
    for (qsizetype k = 1; k < length; ++k) {
        if (i + k >= bytes.size()) {
            return -k;
        }
        const unsigned char next = byteAt(bytes, i + k);
        if (next < (k == 1 ? low : 0x80) || next > (k == 1 ? high : 0xBF)) {
            return -k;
        }
    }
    return length;
}

bool isNumberCharacter(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

bool isOutOfRange(QByteArrayView token) {
    double value = 0;
    const char* end = token.data() + token.size();
    const auto [stop, error] = std::from_chars(token.data(), end, value);
    return error == std::errc::result_out_of_range && stop == end;
}

// Copies the string that opens at `i`, mending its bytes; gives the index after it.
qsizetype copyString(QByteArrayView in, qsizetype i, JsonRepair& repair) {
    repair.bytes += '"';
    ++i;
    while (i < in.size()) {
        const char c = in[i];
        // The parser takes any one byte after a backslash as it is, whatever follows.
        if (c == '\\' && i + 1 < in.size()) {
            repair.bytes += in.sliced(i, 2);
            i += 2;
            continue;
        }
        if (c == '"') {
            repair.bytes += c;
            return i + 1;
        }
        const qsizetype length = sequenceAt(in, i);
        if (length > 0) {
            repair.bytes += in.sliced(i, length);
            i += length;
        } else {
            repair.bytes += kReplacementCharacter;
            ++repair.sequencesReplaced;
            i -= length;
        }
    }
    return i;
}

// The index after the container that opens at `i`, however deep, or the end of the bytes.
qsizetype skipContainer(QByteArrayView in, qsizetype i) {
    qsizetype depth = 0;
    bool inString = false;
    for (; i < in.size(); ++i) {
        const char c = in[i];
        if (inString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            ++depth;
        } else if ((c == ']' || c == '}') && --depth == 0) {
            return i + 1;
        }
    }
    return in.size();
}

QString counted(int count, const char* one, const char* many) {
    return QString::number(count) + QLatin1Char(' ') + QLatin1String(count == 1 ? one : many);
}

} // namespace

QString JsonRepair::summary() const {
    QStringList parts;
    if (numbersReplaced > 0) {
        parts << counted(numbersReplaced, "number out of range made null",
                         "numbers out of range made null");
    }
    if (sequencesReplaced > 0) {
        parts << counted(sequencesReplaced, "invalid UTF-8 sequence replaced",
                         "invalid UTF-8 sequences replaced");
    }
    if (branchesCut > 0) {
        parts << counted(branchesCut, "branch nested too deep cut", "branches nested too deep cut");
    }
    return parts.join(QStringLiteral(", "));
}

JsonRepair repairJson(QByteArrayView in) {
    JsonRepair repair;
    repair.bytes.reserve(in.size());
    int depth = 0;
    qsizetype i = 0;
    while (i < in.size()) {
        const char c = in[i];
        if (c == '"') {
            i = copyString(in, i, repair);
        } else if ((c == '[' || c == '{') && depth == JsonRepair::maxDepth) {
            repair.bytes += kNull;
            ++repair.branchesCut;
            i = skipContainer(in, i);
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            qsizetype end = i + 1;
            while (end < in.size() && isNumberCharacter(in[end])) {
                ++end;
            }
            const QByteArrayView token = in.sliced(i, end - i);
            if (isOutOfRange(token)) {
                repair.bytes += kNull;
                ++repair.numbersReplaced;
            } else {
                repair.bytes += token;
            }
            i = end;
        } else {
            if (c == '[' || c == '{') {
                ++depth;
            } else if ((c == ']' || c == '}') && depth > 0) {
                --depth;
            }
            repair.bytes += c;
            ++i;
        }
    }
    return repair;
}

} // namespace tw
