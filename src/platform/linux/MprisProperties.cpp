#include "platform/linux/MprisProperties.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>

#include <cmath>

namespace tw {

namespace {

// A week of microseconds: longer is no track but a broken counter.
constexpr double maxSeconds = 7 * 24 * 3600.0;

// Unwraps a variant inside a variant, as some players nest them.
QVariant plain(const QVariant& value) {
    QVariant v = value;
    for (int depth = 0; depth < 4 && v.metaType() == QMetaType::fromType<QDBusVariant>(); ++depth) {
        v = v.value<QDBusVariant>().variant();
    }
    return v;
}

QString text(const QString& raw) {
    return raw.left(MprisProperties::maxTextLength).simplified();
}

QString textOf(const QVariant& value) {
    const QVariant v = plain(value);
    if (v.metaType() == QMetaType::fromType<QString>()) {
        return text(v.toString());
    }
    return {};
}

QStringList stringsOf(const QVariant& value) {
    const QVariant v = plain(value);
    QStringList out;
    if (v.metaType() == QMetaType::fromType<QString>()) {
        out << v.toString();
    } else if (v.metaType() == QMetaType::fromType<QStringList>()) {
        out = v.toStringList();
    } else if (v.metaType() == QMetaType::fromType<QVariantList>()) {
        for (const QVariant& item : v.toList()) {
            if (plain(item).metaType() == QMetaType::fromType<QString>()) {
                out << plain(item).toString();
            }
        }
    } else if (v.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const auto argument = v.value<QDBusArgument>();
        // Reading a QDBusArgument as another type gives garbage, so the signature comes first.
        if (argument.currentSignature() == QLatin1String("as")) {
            argument >> out;
        }
    }
    QStringList cleaned;
    for (const QString& s : out) {
        const QString t = text(s);
        if (!t.isEmpty()) {
            cleaned << t;
        }
        if (cleaned.size() >= 8) {
            break;
        }
    }
    return cleaned;
}

std::optional<double> numberOf(const QVariant& value) {
    const QVariant v = plain(value);
    switch (v.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::Double:
        return v.toDouble();
    default:
        return std::nullopt;
    }
}

bool boolOf(const QVariant& value, bool fallback) {
    const QVariant v = plain(value);
    return v.metaType() == QMetaType::fromType<bool>() ? v.toBool() : fallback;
}

QUrl artUrlOf(const QVariant& value) {
    const QString raw = plain(value).metaType() == QMetaType::fromType<QString>()
                            ? plain(value).toString().trimmed()
                            : QString();
    if (raw.isEmpty() || raw.size() > MprisProperties::maxUrlLength) {
        return {};
    }
    const QUrl url(raw, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() ||
        (scheme != QLatin1String("file") && scheme != QLatin1String("http") &&
         scheme != QLatin1String("https")) ||
        (scheme != QLatin1String("file") && url.host().isEmpty())) {
        return {};
    }
    return url;
}

} // namespace

QVariantMap MprisProperties::map(const QVariant& value) {
    const QVariant v = plain(value);
    if (v.metaType() == QMetaType::fromType<QVariantMap>()) {
        return v.toMap();
    }
    if (v.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const auto argument = v.value<QDBusArgument>();
        if (argument.currentSignature() == QLatin1String("a{sv}")) {
            QVariantMap out;
            argument >> out;
            return out;
        }
    }
    return {};
}

double MprisProperties::seconds(const QVariant& microseconds) {
    const std::optional<double> us = numberOf(microseconds);
    if (!us || !std::isfinite(*us) || *us < 0 || *us / 1e6 > maxSeconds) {
        return -1;
    }
    return *us / 1e6;
}

MprisProperties::Metadata MprisProperties::metadata(const QVariant& value) {
    const QVariantMap fields = map(value);
    Metadata m;
    m.title = textOf(fields.value(QStringLiteral("xesam:title")));
    m.artist = stringsOf(fields.value(QStringLiteral("xesam:artist"))).join(QStringLiteral(", "));
    m.album = textOf(fields.value(QStringLiteral("xesam:album")));
    const QVariant id = plain(fields.value(QStringLiteral("mpris:trackid")));
    if (id.metaType() == QMetaType::fromType<QDBusObjectPath>()) {
        m.trackId = text(id.value<QDBusObjectPath>().path());
    } else {
        m.trackId = textOf(id);
    }
    const double length = seconds(fields.value(QStringLiteral("mpris:length")));
    m.duration = length > 0 ? length : -1;
    m.artUrl = artUrlOf(fields.value(QStringLiteral("mpris:artUrl")));
    return m;
}

void MprisProperties::applyPlayer(MediaPlayerState& state, const QVariantMap& properties,
                                  const QDateTime& now) {
    const MediaPlayerState before = state;
    MediaNowPlayingInfo& info = state.info;
    state.heardAt = now;

    if (properties.contains(QStringLiteral("Metadata"))) {
        const Metadata m = metadata(properties.value(QStringLiteral("Metadata")));
        const bool newTrack =
            m.title != info.title || m.artist != info.artist || m.trackId != state.trackId;
        info.title = m.title;
        info.artist = m.artist;
        info.album = m.album;
        info.duration = m.duration;
        state.trackId = m.trackId;
        state.artUrl = m.artUrl;
        if (newTrack) {
            // A new track starts at its beginning until the player says otherwise.
            info.position = 0;
            info.positionDate = now;
        }
    }
    if (properties.contains(QStringLiteral("PlaybackStatus"))) {
        const QString status = textOf(properties.value(QStringLiteral("PlaybackStatus")));
        const bool playing = status == QLatin1String("Playing");
        if (info.isPlaying && !playing && info.position >= 0) {
            // Frozen where the count had got to; the player's own figure follows when asked.
            info.position = info.elapsed(now);
        }
        if (playing != info.isPlaying) {
            info.positionDate = now;
        }
        info.isPlaying = playing;
        if (status == QLatin1String("Stopped")) {
            info = MediaNowPlayingInfo();
            state.artUrl = QUrl();
            state.trackId.clear();
        }
    }
    if (properties.contains(QStringLiteral("Position"))) {
        info.position = seconds(properties.value(QStringLiteral("Position")));
        info.positionDate = now;
    }
    const bool control = boolOf(properties.value(QStringLiteral("CanControl")), true);
    const auto capability = [&](const char* key, bool current) {
        return control && boolOf(properties.value(QLatin1String(key)), current);
    };
    state.canPlay = capability("CanPlay", state.canPlay);
    state.canPause = capability("CanPause", state.canPause);
    state.canGoNext = capability("CanGoNext", state.canGoNext);
    state.canGoPrevious = capability("CanGoPrevious", state.canGoPrevious);

    const MediaNowPlayingInfo& was = before.info;
    if (info.title != was.title || info.artist != was.artist || info.album != was.album ||
        info.isPlaying != was.isPlaying || info.duration != was.duration ||
        state.artUrl != before.artUrl) {
        state.changedAt = now;
    }
}

void MprisProperties::applyRoot(MediaPlayerState& state, const QVariantMap& properties) {
    const QString identity = textOf(properties.value(QStringLiteral("Identity")));
    if (!identity.isEmpty()) {
        state.source.name = identity;
    }
    const QString entry = textOf(properties.value(QStringLiteral("DesktopEntry")));
    if (!entry.isEmpty()) {
        state.source.desktopEntry = entry;
    }
}

} // namespace tw
