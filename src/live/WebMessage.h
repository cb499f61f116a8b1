// The line protocol between the host and the web helper: one JSON object a line, commands down
// its standard input, events up its standard output. Lenient both ways: a line that is no
// message is dropped, never the conversation.
#pragma once

#include <QByteArray>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QUrl>

#include <optional>

namespace tw {

struct WebCommand {
    enum class Kind { load, reload, click, scroll };
    Kind kind = Kind::load;
    QUrl url;
    // The picture's size in pixels and how much larger than the page's own pixels it is drawn.
    QSize pixels;
    double zoom = 1.0;
    // Page pixels from the top the picture starts at.
    int scroll = 0;
    // In the picture's pixels.
    QPointF point;

    bool operator==(const WebCommand&) const = default;
};

struct WebEvent {
    enum class Kind { loading, frame, failed };
    Kind kind = Kind::loading;
    QString title;
    QUrl url;
    QString why;

    bool operator==(const WebEvent&) const = default;
};

namespace WebMessage {

// Longer lines are dropped unread: no message of ours comes near.
inline constexpr qsizetype maxLine = 16 * 1024;
// Bounds that keep a hostile line from asking for a picture larger than a display.
inline constexpr int maxSide = 8192;
inline constexpr double minZoom = 0.25;
inline constexpr double maxZoom = 5.0;

QByteArray encode(const WebCommand& command);
QByteArray encode(const WebEvent& event);
std::optional<WebCommand> decodeCommand(const QByteArray& line);
std::optional<WebEvent> decodeEvent(const QByteArray& line);

} // namespace WebMessage

} // namespace tw
