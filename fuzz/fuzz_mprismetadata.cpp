// What MPRIS players publish: any bytes, read as a tree of D-Bus values under the metadata and
// player properties' names, decode without harm, and what comes out keeps the promises the tile
// relies on.
#include "Require.h"
#include "platform/linux/MprisProperties.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>

#include <cmath>
#include <cstdint>
#include <cstring>

using tw::fuzz::require;

namespace {

const char* const keys[] = {"xesam:title",  "xesam:artist",  "xesam:album",    "mpris:length",
                            "mpris:artUrl", "mpris:trackid", "PlaybackStatus", "Position",
                            "CanPlay",      "CanPause",      "CanGoNext",      "CanControl",
                            "Metadata",     "Rate"};

// Reads values from the bytes, choosing each value's type by one byte.
class Reader {
public:
    Reader(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size) {}

    bool atEnd() const { return m_at >= m_size; }
    std::uint8_t byte() { return atEnd() ? 0 : m_data[m_at++]; }
    QByteArray bytes() {
        const std::size_t length = std::min<std::size_t>(byte(), m_size - std::min(m_at, m_size));
        const QByteArray out(reinterpret_cast<const char*>(m_data + m_at),
                             static_cast<qsizetype>(length));
        m_at += length;
        return out;
    }
    template <typename T>
    T number() {
        T value{};
        unsigned char raw[sizeof(T)] = {};
        for (unsigned char& b : raw) {
            b = byte();
        }
        std::memcpy(&value, raw, sizeof(T));
        return value;
    }
    QVariant value(int depth) {
        switch (byte() % (depth > 3 ? 9 : 12)) {
        case 0:
            return QString::fromUtf8(bytes());
        case 1:
            return QStringList{QString::fromUtf8(bytes()), QString::fromUtf8(bytes())};
        case 2:
            return number<qint32>();
        case 3:
            return number<qint64>();
        case 4:
            return number<quint64>();
        case 5:
            return number<double>();
        case 6:
            return byte() % 2 == 0;
        case 7:
            return QVariant::fromValue(QDBusObjectPath(QString::fromUtf8(bytes())));
        case 8:
            return bytes();
        case 9:
            return QVariant::fromValue(QDBusVariant(value(depth + 1)));
        case 10:
            return QVariantList{value(depth + 1), value(depth + 1)};
        default:
            return map(depth + 1);
        }
    }
    QVariantMap map(int depth) {
        QVariantMap out;
        const int count = byte() % 8;
        for (int i = 0; i < count && !atEnd(); ++i) {
            const std::uint8_t k = byte();
            const QString key = k < std::size(keys) * 16 ? QLatin1String(keys[k % std::size(keys)])
                                                         : QString::fromUtf8(bytes());
            out.insert(key, value(depth));
        }
        return out;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

bool allowedUrl(const QUrl& url) {
    const QString scheme = url.scheme();
    return url.isEmpty() || scheme == QLatin1String("file") || scheme == QLatin1String("http") ||
           scheme == QLatin1String("https");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tw::MprisProperties;
    Reader reader(data, size);
    const QVariantMap metadata = reader.map(0);
    const MprisProperties::Metadata m = MprisProperties::metadata(metadata);
    require(m.title.size() <= MprisProperties::maxTextLength &&
                m.album.size() <= MprisProperties::maxTextLength,
            "texts are cut to their length");
    require(m.duration == -1 || (std::isfinite(m.duration) && m.duration > 0),
            "a length is positive and finite, or unknown");
    require(allowedUrl(m.artUrl), "a cover is a file or a web address");

    const QDateTime now = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000);
    tw::MediaPlayerState state;
    for (int step = 0; step < 3 && !reader.atEnd(); ++step) {
        MprisProperties::applyPlayer(state, reader.map(0), now.addSecs(step * 7));
        MprisProperties::applyRoot(state, reader.map(0));
        const tw::MediaNowPlayingInfo& info = state.info;
        const double elapsed = info.elapsed(now.addSecs(100));
        const double progress = info.progress(now.addSecs(100));
        require(std::isfinite(elapsed) && elapsed >= 0, "the time into a track is finite");
        require(progress >= 0 && progress <= 1, "progress is a fraction");
        require(info.position == -1 || (std::isfinite(info.position) && info.position >= 0),
                "a position is a time or unknown");
        require(allowedUrl(state.artUrl), "a cover is a file or a web address");
    }
    return 0;
}
