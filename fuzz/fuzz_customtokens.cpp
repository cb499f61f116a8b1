// Custom widget texts over fetched documents: the bytes up to the first NUL are a widget's text,
// the rest a source's answer. Whatever both hold, scanning finds well-formed token ranges, reading
// paths stays inside the document, numbers come out finite, and rendering ends and keeps every
// byte of the text that is no token.
#include "Require.h"
#include "custom/CustomCollections.h"
#include "custom/CustomJSON.h"
#include "custom/CustomPath.h"
#include "custom/CustomTokens.h"
#include "custom/CustomValueText.h"

#include <QByteArray>

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

namespace {

void checkNumber(std::optional<double> number) {
    require(!number || std::isfinite(*number), "a number that no tile can show");
}

tw::CustomValueBag bagWith(std::optional<tw::CustomJSON> document) {
    tw::CustomValueBag values;
    values.now = QDateTime(QDate(2026, 11, 24), QTime(9, 30));
    tw::SystemSnapshot system;
    system.cpu = 0.5;
    system.ramUsed = 4e9;
    system.ramTotal = 8e9;
    values.system = system;
    values.data = document;
    if (document) {
        values.named.insert(QStringLiteral("a"), *document);
        values.item = document;
    }
    return values;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype split = bytes.indexOf('\0');
    const QString text = QString::fromUtf8(split < 0 ? bytes : bytes.first(split));
    const QByteArrayView answer =
        split < 0 ? QByteArrayView() : QByteArrayView(bytes).sliced(split + 1);

    const std::optional<tw::CustomJSON> document = tw::CustomJSON::parse(answer);
    const tw::CustomValueBag values = bagWith(document);

    qsizetype end = 0;
    for (const tw::CustomTokens::Match& match : tw::CustomTokens::scan(text)) {
        require(match.start >= end && match.start + match.length <= text.size(),
                "a token outside the text or overlapping the last");
        require(text.at(match.start) == u'{' && text.at(match.start + match.length - 1) == u'}',
                "a token not in braces");
        require(match.token.size() == match.length - 2, "a token that is not its range");
        end = match.start + match.length;
        checkNumber(tw::CustomTokens::number(match.token, values));
        tw::CustomTokens::resolveString(match.token, values);
    }

    const QString rendered = tw::CustomTokens::render(text, values);
    require(rendered.endsWith(QStringView(text).sliced(end)), "the text after the tokens changed");
    if (tw::CustomTokens::scan(text).isEmpty()) {
        require(rendered == text, "a text without tokens changed");
    }
    tw::CustomTokens::unknownTokens(text);
    tw::CustomTokens::referencesSourceData(text);
    checkNumber(tw::CustomTokens::number(text, text, values));

    tw::CustomElement element;
    element.path = text;
    element.text = text;
    element.limit = static_cast<int>(size % 40) - 20;
    require(tw::CustomCollections::lines(element, values, tw::WidgetSize::huge).size() <=
                tw::CustomCollections::maximumLines,
            "more lines than a list shows");
    require(tw::CustomCollections::series(element, values).size() <=
                tw::CustomCollections::maximumBars,
            "more bars than a chart shows");
    tw::CustomValueText::text(element, values);

    if (document) {
        const tw::CustomPath path = tw::CustomPath::split(text);
        checkNumber(document->number(path.path));
        document->string(path.path);
        for (const double number : document->numbers(path.path, text)) {
            checkNumber(number);
        }
        QStringList leaves;
        document->walk({}, leaves, 50);
        require(leaves.size() <= 50, "more leaves than asked for");
    }
    return 0;
}
