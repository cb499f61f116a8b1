// The web helper's lines, whatever arrives: a command is always one the helper may carry out (a
// web page, a picture no larger than a display, a click inside it, a zoom in range), an event
// carries no address but a web page's, and each reads back as it was encoded.
#include "Require.h"
#include "live/WebMessage.h"

#include <cmath>
#include <cstdint>

using namespace tw;
using tw::fuzz::require;

namespace {

bool webPage(const QUrl& url) {
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const std::optional<WebCommand> command = WebMessage::decodeCommand(input)) {
        if (command->kind == WebCommand::Kind::load) {
            require(webPage(command->url), "a load of something that is no web page");
            require(command->pixels.width() >= 1 && command->pixels.height() >= 1 &&
                        command->pixels.width() <= WebMessage::maxSide &&
                        command->pixels.height() <= WebMessage::maxSide,
                    "a picture size out of bounds");
            require(command->zoom >= WebMessage::minZoom && command->zoom <= WebMessage::maxZoom,
                    "a zoom out of range");
        }
        require(command->scroll >= 0, "a negative scroll");
        require(command->point.x() >= 0 && command->point.y() >= 0 &&
                    command->point.x() <= WebMessage::maxSide &&
                    command->point.y() <= WebMessage::maxSide,
                "a click outside any picture");
        require(WebMessage::decodeCommand(WebMessage::encode(*command)) == command,
                "a command that does not read back");
    }
    if (const std::optional<WebEvent> event = WebMessage::decodeEvent(input)) {
        require(event->url.isEmpty() || webPage(event->url), "an event with a foreign address");
        require(!event->title.contains(QLatin1Char('\n')), "a title over several lines");
        require(WebMessage::decodeEvent(WebMessage::encode(*event)) == event,
                "an event that does not read back");
    }
    return 0;
}
