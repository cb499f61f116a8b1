// The clipboard's kept history, whatever the file holds: at most the history's length, every
// entry dated, texts within their cap, pictures only by a well-formed name, and what it encodes
// reads back the same.
#include "Require.h"
#include "workspace/ClipboardFile.h"
#include "workspace/ClipboardHistory.h"

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QList<Clipping> clippings = ClipboardFile::decode(input);
    require(clippings.size() <= ClipboardHistory::most, "a history over its length");
    for (const Clipping& clipping : clippings) {
        require(clipping.copiedAt.isValid(), "an entry without a time");
        if (clipping.kind == Clipping::Kind::text) {
            require(clipping.text.size() <= ClipboardHistory::longestText, "a text over its cap");
        } else {
            const QString name = ClipboardFile::imageName(clipping);
            require(name.size() == 44 && !name.contains(u'/'), "a picture name that leaves home");
        }
    }
    const QList<Clipping> again = ClipboardFile::decode(ClipboardFile::encode(clippings));
    require(again.size() == clippings.size(), "a round trip that loses entries");
    for (qsizetype i = 0; i < again.size(); ++i) {
        require(again[i].digest == clippings[i].digest, "a round trip that changes an entry");
    }
    return 0;
}
