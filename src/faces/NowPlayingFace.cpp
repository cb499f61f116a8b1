#include "faces/NowPlayingFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "text/L.h"

#include <QBuffer>
#include <QImageReader>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

const QString kNote = QStringLiteral("music.note");

bool manualMode(const FaceContext& context) {
    return context.setting(QStringLiteral("mode")) == QLatin1String("manual");
}

NowPlaying demoTrack(const FaceContext& context) {
    NowPlaying demo;
    demo.info = {.title = L("np.demo.title", QStringLiteral("Golden Hour")),
                 .artist = L("np.demo.artist", QStringLiteral("Juniper Lane")),
                 .album = L("np.demo.album", QStringLiteral("Evening Light")),
                 .isPlaying = true,
                 .duration = 214,
                 .position = 87,
                 .positionDate = context.now};
    demo.source = {.id = QStringLiteral("demo"),
                   .name = L("np.demo.source", QStringLiteral("Music")),
                   .desktopEntry = {}};
    demo.canPlay = demo.canPause = demo.canGoNext = demo.canGoPrevious = true;
    return demo;
}

// The one player whose brand colour people know on sight.
bool isSpotify(const MediaPlayerSource& source) {
    return source.desktopEntry.contains(QLatin1String("spotify"), Qt::CaseInsensitive) ||
           source.id.contains(QLatin1String("spotify"), Qt::CaseInsensitive);
}

QRectF square(qreal x, qreal y, qreal side) {
    return {x, y, side, side};
}

QColor onPrimary(const FaceContext& context) {
    return context.primary().lightnessF() > 0.5F ? QColor(20, 20, 24) : QColor(250, 250, 252);
}

QColor dimmed(QColor color) {
    color.setAlphaF(color.alphaF() * 0.35F);
    return color;
}

// The cover fills its square: decoded once per track and size, scaled while decoding so a
// huge picture never lands in memory whole.
QImage decodedCover(const QByteArray& bytes, const QSize& pixels) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const QSize full = reader.size();
    if (!full.isValid() || full.isEmpty()) {
        return {};
    }
    reader.setScaledSize(full.scaled(pixels, Qt::KeepAspectRatioByExpanding));
    const QImage image = reader.read();
    if (image.isNull()) {
        return {};
    }
    return image.copy(
        QRect(QPoint((image.width() - pixels.width()) / 2, (image.height() - pixels.height()) / 2),
              pixels));
}

void drawPlaceholder(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    QLinearGradient fill(rect.topLeft(), rect.bottomRight());
    fill.setColorAt(0, context.accent().lighter(115));
    fill.setColorAt(1, context.accent().darker(170));
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRect(rect);
    const qreal side = rect.width() * 0.46;
    FaceKit::drawSymbol(
        painter, context, kNote,
        QRectF(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side),
        QColor(255, 255, 255, 230), QStringLiteral("♪"));
}

void drawCover(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const NowPlaying& track) {
    if (rect.isEmpty()) {
        return;
    }
    painter.save();
    QPainterPath clip;
    const qreal radius = rect.width() * 0.12;
    clip.addRoundedRect(rect, radius, radius);
    painter.setClipPath(clip, Qt::IntersectClip);
    const qreal dpr = context.devicePixelRatio * context.scale;
    const QSize pixels(std::max(1, qRound(rect.width() * dpr)),
                       std::max(1, qRound(rect.height() * dpr)));
    const QString key = QStringLiteral("%1|%2|%3|%4x%5")
                            .arg(track.info.title, track.info.artist)
                            .arg(track.artwork.size())
                            .arg(pixels.width())
                            .arg(pixels.height());
    const auto paintCover = [&](QPainter& p) {
        const QRectF local(QPointF(0, 0), rect.size());
        const QImage cover =
            track.artwork.isEmpty() ? QImage() : decodedCover(track.artwork, pixels);
        if (cover.isNull()) {
            drawPlaceholder(p, context, local);
        } else {
            p.setRenderHint(QPainter::SmoothPixmapTransform);
            p.drawImage(local, cover);
        }
    };
    if (context.pictures != nullptr) {
        context.pictures->drawLatest(painter, rect, QStringLiteral("np.cover"), key,
                                     context.devicePixelRatio, paintCover);
    } else {
        painter.translate(rect.topLeft());
        paintCover(painter);
    }
    painter.restore();
}

void drawGlyph(QPainter& painter, const QRectF& box, MediaCommand command, bool playing,
               const QColor& color) {
    const qreal s = std::min(box.width(), box.height());
    const QPointF c = box.center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const auto triangle = [&](qreal left, qreal width, qreal height, bool pointsRight) {
        QPainterPath path;
        const qreal tip = pointsRight ? left + width : left;
        const qreal base = pointsRight ? left : left + width;
        path.moveTo(base, c.y() - height / 2);
        path.lineTo(tip, c.y());
        path.lineTo(base, c.y() + height / 2);
        path.closeSubpath();
        painter.drawPath(path);
    };
    switch (command) {
    case MediaCommand::playPause:
        if (playing) {
            const qreal w = s * 0.13;
            const qreal h = s * 0.42;
            painter.drawRoundedRect(QRectF(c.x() - w * 1.5, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
            painter.drawRoundedRect(QRectF(c.x() + w * 0.5, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
        } else {
            // Nudged right: a triangle's weight sits left of its box's centre.
            triangle(c.x() - s * 0.15, s * 0.38, s * 0.44, true);
        }
        return;
    case MediaCommand::nextTrack:
    case MediaCommand::previousTrack: {
        const bool right = command == MediaCommand::nextTrack;
        const qreal h = s * 0.42;
        const qreal w = s * 0.26;
        const qreal bar = s * 0.08;
        if (right) {
            triangle(c.x() - w, w, h, true);
            triangle(c.x() - bar, w, h, true);
            painter.drawRect(QRectF(c.x() + w - bar, c.y() - h / 2, bar, h));
        } else {
            triangle(c.x() - w + bar, w, h, false);
            triangle(c.x(), w, h, false);
            painter.drawRect(QRectF(c.x() - w, c.y() - h / 2, bar, h));
        }
        return;
    }
    }
}

void drawButtons(QPainter& painter, const FaceContext& context, const NowPlayingFace::Layout& l,
                 const NowPlaying& track) {
    const bool playing = track.info.isPlaying;
    if (!l.playPause.isEmpty()) {
        const bool can = playing ? track.canPause : track.canPlay;
        const qreal side = std::min(l.playPause.width(), l.playPause.height());
        const QRectF circle(l.playPause.center().x() - side / 2,
                            l.playPause.center().y() - side / 2, side, side);
        painter.setPen(Qt::NoPen);
        painter.setBrush(can ? context.primary() : dimmed(context.primary()));
        painter.drawEllipse(circle);
        drawGlyph(painter, circle, MediaCommand::playPause, playing, onPrimary(context));
    }
    const auto side = [&](const QRectF& box, MediaCommand command, bool can) {
        if (!box.isEmpty()) {
            drawGlyph(painter, box, command, playing,
                      can ? context.primary() : dimmed(context.primary()));
        }
    };
    side(l.previous, MediaCommand::previousTrack, track.canGoPrevious);
    side(l.next, MediaCommand::nextTrack, track.canGoNext);
}

// "Paused", or the player's name with a mark that it plays; "Demo" for a sample track.
void drawSource(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const NowPlaying& track, bool demo) {
    if (rect.isEmpty()) {
        return;
    }
    QString text =
        track.info.isPlaying ? track.source.name : L("np.paused", QStringLiteral("Paused"));
    if (demo) {
        text = L("np.demo", QStringLiteral("Demo"));
    }
    const QColor colour = !track.info.isPlaying || demo ? context.secondary()
                          : isSpotify(track.source)     ? QColor(0x1E, 0xD7, 0x60)
                                                        : context.accent();
    FaceKit::drawElided(painter, context, rect, text.toUpper(),
                        FaceKit::font(rect.height() * 0.82, QFont::DemiBold), colour,
                        Qt::AlignLeft | Qt::AlignVCenter);
}

void drawProgress(QPainter& painter, const FaceContext& context, const NowPlayingFace::Layout& l,
                  const NowPlaying& track) {
    if (l.bar.isEmpty()) {
        return;
    }
    const double progress = track.info.progress(context.now);
    FaceKit::drawBar(painter, l.bar, progress,
                     track.info.isPlaying ? context.primary() : context.secondary(),
                     ReadingKit::track(context));
    if (l.elapsed.isEmpty()) {
        return;
    }
    const QFont font = FaceKit::font(std::min(l.elapsed.height() * 0.85, 12.5), QFont::Medium);
    const bool knowsPosition = track.info.position >= 0;
    FaceKit::drawText(painter, context, l.elapsed,
                      static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                      knowsPosition ? NowPlayingFace::clockText(track.info.elapsed(context.now))
                                    : ReadingText::missing(),
                      font, context.secondary());
    if (track.info.duration > 0) {
        const double left = track.info.duration - track.info.elapsed(context.now);
        FaceKit::drawText(
            painter, context, l.elapsed, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter),
            QStringLiteral("-") + NowPlayingFace::clockText(left), font, context.secondary());
    }
}

// The texts, each on one line elided at the right except a title given two lines of room.
void drawTexts(QPainter& painter, const FaceContext& context, const NowPlayingFace::Layout& l,
               const NowPlaying& track) {
    const auto titleSize = [&] {
        // Two lines' room: one line at most 60 % of it, smaller only to keep a long title in two.
        const bool twoLines = l.title.height() > l.artist.height() * 1.9;
        return twoLines ? std::min(l.title.height() * 0.42, 18.0) : l.title.height() * 0.86;
    }();
    const QFont titleFont = FaceKit::font(titleSize, QFont::DemiBold);
    if (l.title.height() > titleSize * 1.9) {
        painter.setFont(titleFont);
        painter.setPen(context.primary());
        const QFontMetricsF metrics(titleFont);
        QString text = track.info.title;
        // Two lines, the second elided.
        const int lineWidth = static_cast<int>(l.title.width());
        QString first = text;
        int cut = static_cast<int>(text.size());
        while (cut > 0 && metrics.horizontalAdvance(text.left(cut)) > lineWidth) {
            cut = static_cast<int>(text.lastIndexOf(QLatin1Char(' '), cut - 1));
        }
        if (cut <= 0 || cut >= text.size()) {
            FaceKit::drawElided(painter, context, l.title, text, titleFont, context.primary(),
                                Qt::AlignLeft | Qt::AlignTop);
        } else {
            first = text.left(cut);
            const QString rest = text.mid(cut + 1);
            const qreal line = metrics.height();
            FaceKit::drawElided(painter, context,
                                QRectF(l.title.left(), l.title.top(), l.title.width(), line), first,
                                titleFont, context.primary(), Qt::AlignLeft | Qt::AlignTop);
            FaceKit::drawElided(painter, context,
                                QRectF(l.title.left(), l.title.top() + line, l.title.width(), line),
                                rest, titleFont, context.primary(), Qt::AlignLeft | Qt::AlignTop);
        }
    } else {
        FaceKit::drawElided(painter, context, l.title, track.info.title, titleFont,
                            context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    }
    const QString artist = track.info.artist.isEmpty() ? ReadingText::missing() : track.info.artist;
    FaceKit::drawElided(painter, context, l.artist, artist,
                        FaceKit::font(l.artist.height() * 0.84, QFont::Medium), context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    if (!l.album.isEmpty() && !track.info.album.isEmpty()) {
        FaceKit::drawElided(painter, context, l.album, track.info.album,
                            FaceKit::font(l.album.height() * 0.84), context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
    }
}

} // namespace

NowPlayingFace::Layout NowPlayingFace::layout(WidgetSize size, const QRectF& r) {
    Layout l;
    const qreal x = r.left();
    const qreal y = r.top();
    const qreal w = r.width();
    const qreal h = r.height();
    switch (size) {
    case WidgetSize::small: {
        // The cover and the one button side by side, the texts and the bar below.
        const qreal cover = h * 0.5;
        l.cover = square(x, y, cover);
        const qreal button = std::min(cover * 0.86, w - cover - 4);
        l.playPause = square(r.right() - button, y + (cover - button) / 2, button);
        l.title = QRectF(x, y + cover + h * 0.07, w, h * 0.18);
        l.artist = QRectF(x, l.title.bottom(), w, h * 0.15);
        l.bar = QRectF(x, r.bottom() - h * 0.045, w, h * 0.045);
        return l;
    }
    case WidgetSize::wide: {
        l.cover = square(x, y, h);
        const qreal left = x + h + w * 0.06;
        const qreal column = r.right() - left;
        l.title = QRectF(left, y, column, h * 0.22);
        l.artist = QRectF(left, l.title.bottom(), column, h * 0.18);
        l.bar = QRectF(left, y + h * 0.5, column, h * 0.045);
        const qreal button = h * 0.38;
        const qreal gap = (column - button * 3) / 2;
        const qreal top = r.bottom() - button;
        l.previous = square(left, top, button);
        l.playPause = square(left + button + gap, top, button);
        l.next = square(left + (button + gap) * 2, top, button);
        return l;
    }
    case WidgetSize::large: {
        const qreal cover = h * 0.47;
        l.cover = square(x, y, cover);
        const qreal left = x + cover + w * 0.07;
        const qreal column = r.right() - left;
        l.source = QRectF(left, y, column, h * 0.065);
        l.title = QRectF(left, l.source.bottom() + h * 0.025, column, h * 0.2);
        l.artist = QRectF(left, l.title.bottom() + h * 0.01, column, h * 0.085);
        l.album = QRectF(left, l.artist.bottom(), column, h * 0.075);
        l.bar = QRectF(x, y + h * 0.56, w, h * 0.025);
        l.elapsed = QRectF(x, l.bar.bottom() + h * 0.02, w, h * 0.07);
        const qreal play = h * 0.25;
        const qreal button = h * 0.19;
        const qreal centre = r.center().x();
        const qreal middle = r.bottom() - play / 2;
        l.playPause = square(centre - play / 2, middle - play / 2, play);
        l.previous = square(centre - play / 2 - w * 0.1 - button, middle - button / 2, button);
        l.next = square(centre + play / 2 + w * 0.1, middle - button / 2, button);
        return l;
    }
    default: {
        // Big: the cover down the left, the texts and the buttons beside it, the bar under all.
        const qreal cover = h * 0.78;
        l.cover = square(x, y, cover);
        const qreal left = x + cover + w * 0.05;
        const qreal column = r.right() - left;
        l.source = QRectF(left, y, column, h * 0.065);
        l.title = QRectF(left, l.source.bottom() + h * 0.025, column, h * 0.22);
        l.artist = QRectF(left, l.title.bottom() + h * 0.01, column, h * 0.09);
        l.album = QRectF(left, l.artist.bottom(), column, h * 0.08);
        const qreal play = h * 0.24;
        const qreal button = h * 0.18;
        const qreal middle = y + cover - play / 2;
        const qreal centre = left + column / 2;
        l.playPause = square(centre - play / 2, middle - play / 2, play);
        l.previous = square(left, middle - button / 2, button);
        l.next = square(r.right() - button, middle - button / 2, button);
        l.bar = QRectF(x, y + cover + h * 0.07, w, h * 0.025);
        l.elapsed =
            QRectF(x, l.bar.bottom() + h * 0.015, w, r.bottom() - l.bar.bottom() - h * 0.015);
        return l;
    }
    }
}

std::optional<TimeGrain> NowPlayingFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Seconds;
}

ReadingFeeds NowPlayingFace::feeds(WidgetSize, const WidgetSettings& settings) const {
    // Manual mode shows its samples and asks no player.
    if (settings.value(QStringLiteral("mode")) == QLatin1String("manual")) {
        return {};
    }
    return ReadingFeed::nowPlaying;
}

bool NowPlayingFace::isDemo(const FaceContext& context) {
    if (manualMode(context)) {
        return true;
    }
    const ReadingsBoard* board = context.readings;
    const bool nothing =
        board == nullptr || !board->nowPlaying || !board->nowPlaying->info.hasInfo();
    // The gallery previews what the tile looks like; a picture shows what is.
    return nothing && context.surface.showsDemoContent && !context.surface.snapshotMode;
}

std::optional<NowPlaying> NowPlayingFace::shown(const FaceContext& context) {
    if (isDemo(context)) {
        return demoTrack(context);
    }
    const ReadingsBoard* board = context.readings;
    if (board == nullptr || !board->nowPlaying || !board->nowPlaying->info.hasInfo()) {
        return std::nullopt;
    }
    return *board->nowPlaying;
}

QString NowPlayingFace::clockText(double seconds) {
    const auto total = static_cast<qint64>(std::floor(std::max(0.0, seconds)));
    const qint64 h = total / 3600;
    const qint64 m = total / 60 % 60;
    const qint64 s = total % 60;
    const QString ss = QStringLiteral("%1").arg(s, 2, 10, QLatin1Char('0'));
    if (h > 0) {
        return QStringLiteral("%1:%2:%3").arg(h).arg(m, 2, 10, QLatin1Char('0')).arg(ss);
    }
    return QStringLiteral("%1:%2").arg(m).arg(ss);
}

void NowPlayingFace::paint(QPainter& painter, const QRectF& rect,
                           const FaceContext& context) const {
    const std::optional<NowPlaying> track = shown(context);
    if (!track) {
        const ReadingsBoard* board = context.readings;
        const bool large = context.size != WidgetSize::small && context.size != WidgetSize::wide;
        if (board == nullptr || !board->nowPlaying) {
            ReadingKit::drawNotice(painter, context, rect, kNote,
                                   L("widget.nowplaying.name", QStringLiteral("Music")),
                                   ReadingText::missing());
        } else if (!board->nowPlaying->available) {
            ReadingKit::drawNotice(
                painter, context, rect, kNote,
                L("np.unavailable", QStringLiteral("Players can’t be reached")),
                L("np.unavailableDetail", QStringLiteral("No media player can be asked here.")));
        } else {
            ReadingKit::drawNotice(
                painter, context, rect, kNote,
                L("np.nothingPlaying", QStringLiteral("Nothing playing")),
                large
                    ? L("np.nothingPlaying.large",
                        QStringLiteral("Play something in Spotify, Apple Music or any media app."))
                    : L("np.nothingPlaying.detail",
                        QStringLiteral("Play something to see it here.")));
        }
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const Layout l = layout(context.size, rect);
    drawCover(painter, context, l.cover, *track);
    drawSource(painter, context, l.source, *track, isDemo(context));
    drawTexts(painter, context, l, *track);
    drawProgress(painter, context, l, *track);
    drawButtons(painter, context, l, *track);
    if (l.source.isEmpty() && isDemo(context) && manualMode(context)) {
        // Where there is no line for it, the mark sits on the cover.
        const QRectF badge(l.cover.left() + 3, l.cover.bottom() - l.cover.height() * 0.3 - 3,
                           l.cover.width() - 6, l.cover.height() * 0.3);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 150));
        painter.drawRoundedRect(badge, badge.height() / 2, badge.height() / 2);
        FaceKit::drawFitted(painter, context, badge.adjusted(3, 1, -3, -1),
                            L("np.demo", QStringLiteral("Demo")).toUpper(), QFont::DemiBold,
                            QColor(255, 255, 255), Qt::AlignCenter, badge.height() * 0.7);
    }
}

QRectF NowPlayingFace::changedRect(const QRectF& rect, const FaceContext& context, const QDateTime&,
                                   const QDateTime&) const {
    const std::optional<NowPlaying> track = shown(context);
    if (!track || !track->info.isPlaying) {
        return {};
    }
    const Layout l = layout(context.size, rect);
    return l.bar.united(l.elapsed).adjusted(-2, -2, 2, 2);
}

WidgetFace::Spot NowPlayingFace::spotAt(const QRectF& rect, QPointF point,
                                        const FaceContext& context) const {
    Spot spot;
    spot.media = commandAt(rect, point, context);
    if (!spot.media) {
        return spot;
    }
    switch (*spot.media) {
    case MediaCommand::playPause:
        spot.help = shown(context)->info.isPlaying ? L("np.pause", QStringLiteral("Pause"))
                                                   : L("np.play", QStringLiteral("Play"));
        break;
    case MediaCommand::nextTrack:
        spot.help = L("np.next", QStringLiteral("Next track"));
        break;
    case MediaCommand::previousTrack:
        spot.help = L("np.previous", QStringLiteral("Previous track"));
        break;
    }
    return spot;
}

std::optional<MediaCommand> NowPlayingFace::commandAt(const QRectF& rect, QPointF point,
                                                      const FaceContext& context) {
    if (isDemo(context)) {
        return std::nullopt;
    }
    const std::optional<NowPlaying> track = shown(context);
    if (!track) {
        return std::nullopt;
    }
    const Layout l = layout(context.size, rect);
    // A little slack around each button: they are small, and a miss should not drag the tile.
    const auto hits = [&](const QRectF& box) {
        return !box.isEmpty() && box.adjusted(-4, -4, 4, 4).contains(point);
    };
    if (hits(l.playPause) && (track->info.isPlaying ? track->canPause : track->canPlay)) {
        return MediaCommand::playPause;
    }
    if (hits(l.next) && track->canGoNext) {
        return MediaCommand::nextTrack;
    }
    if (hits(l.previous) && track->canGoPrevious) {
        return MediaCommand::previousTrack;
    }
    return std::nullopt;
}

} // namespace tw
