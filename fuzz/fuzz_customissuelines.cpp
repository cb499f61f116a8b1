// The editor's text, whatever a person typed or pasted: finding the lines of its keys never
// breaks, and every issue is placed on a line the text has.
#include "Require.h"
#include "custom/CustomIssueLines.h"
#include "custom/CustomWidgetDefinition.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const int lineCount = int(text.count(u'\n')) + 1;
    const QHash<QString, int> lines = CustomIssueLines::keyLines(text);
    for (const int line : lines) {
        require(line >= 0 && line < lineCount, "a key placed outside the text");
    }
    if (const std::optional<int> line = CustomIssueLines::parseErrorLine(text)) {
        require(*line >= 0 && *line < lineCount, "a parse error placed outside the text");
    }
    if (const auto decoded = CustomWidgetDefinition::decode(text)) {
        for (const CustomWidgetIssue& issue : decoded->issues()) {
            const int line = CustomIssueLines::lineOf(issue, *decoded, lines);
            require(line >= 0 && line < lineCount, "an issue placed outside the text");
        }
    }
    return 0;
}
