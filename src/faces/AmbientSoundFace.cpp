#include "faces/AmbientSoundFace.h"

#include "ambient/AmbientSoundBehaviour.h"
#include "ambient/AmbientSoundSettings.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace tw {

namespace {

// What the tile shows: the running service on the desktop, a sample of the settings elsewhere.
struct Shown {
    bool playing = false;
    AmbientSound sound = AmbientSound::rain;
    double volume = 0.5;
    std::chrono::minutes sleep{0};
    std::optional<QDateTime> sleepEnds;
    std::optional<LoopPlayer::Problem> problem;
};

Shown shownOf(const FaceContext& context) {
    const auto settings = AmbientSoundSettings::from(context.settings);
    if (const auto* behaviour = context.behaviour<AmbientSoundBehaviour>()) {
        const AmbientSoundService& service = behaviour->service();
        return {.playing = service.isPlaying(),
                .sound = service.sound(),
                .volume = service.volume(),
                .sleep = settings.sleep,
                .sleepEnds = service.sleepEnds(),
                .problem = service.problem()};
    }
    return {.playing = true,
            .sound = settings.sound,
            .volume = settings.volume,
            .sleep = settings.sleep,
            .sleepEnds = std::nullopt,
            .problem = std::nullopt};
}

struct Palette {
    QColor top;
    QColor bottom;
    QColor accent;
    QColor text;
    QColor dim;
};

Palette paletteOf(AmbientSound sound, bool dark) {
    struct Pair {
        QColor darkTop, darkBottom, lightTop, lightBottom, accent;
    };
    const Pair pair = [&]() -> Pair {
        switch (sound) {
        case AmbientSound::rain:
            return {QColor(0x24, 0x34, 0x4a), QColor(0x0e, 0x16, 0x22), QColor(0xe2, 0xea, 0xf4),
                    QColor(0xbd, 0xcf, 0xe4), QColor(0x7f, 0xb2, 0xff)};
        case AmbientSound::waves:
            return {QColor(0x10, 0x3a, 0x46), QColor(0x07, 0x1d, 0x26), QColor(0xd8, 0xf1, 0xf1),
                    QColor(0xad, 0xdc, 0xe0), QColor(0x4f, 0xd1, 0xc5)};
        case AmbientSound::cafe:
            return {QColor(0x40, 0x2e, 0x20), QColor(0x1f, 0x15, 0x0e), QColor(0xf4, 0xe8, 0xd9),
                    QColor(0xe2, 0xcb, 0xb0), QColor(0xe6, 0xa8, 0x66)};
        case AmbientSound::white:
            return {QColor(0x30, 0x34, 0x3b), QColor(0x17, 0x19, 0x1d), QColor(0xf4, 0xf5, 0xf7),
                    QColor(0xdb, 0xdf, 0xe5), QColor(0xc9, 0xd3, 0xe0)};
        case AmbientSound::pink:
            return {QColor(0x42, 0x22, 0x33), QColor(0x1e, 0x10, 0x18), QColor(0xf9, 0xe4, 0xec),
                    QColor(0xee, 0xc6, 0xd6), QColor(0xff, 0x8f, 0xb3)};
        case AmbientSound::brown:
            return {QColor(0x3a, 0x2a, 0x1e), QColor(0x1a, 0x12, 0x0c), QColor(0xf1, 0xe3, 0xd2),
                    QColor(0xdb, 0xc1, 0xa3), QColor(0xcf, 0x91, 0x5a)};
        }
        Q_UNREACHABLE();
    }();
    if (dark) {
        return {pair.darkTop, pair.darkBottom, pair.accent, QColor(255, 255, 255),
                QColor(255, 255, 255, 165)};
    }
    return {pair.lightTop, pair.lightBottom, pair.accent.darker(150), QColor(0x1c, 0x1c, 0x1e),
            QColor(0x1c, 0x1c, 0x1e, 150)};
}

// A little drawing of each sound, in `box`, in `color`.
void drawGlyph(QPainter& p, const QRectF& box, AmbientSound sound, const QColor& color) {
    const qreal s = std::min(box.width(), box.height());
    const QPointF c = box.center();
    QPen pen(color, std::max(1.2, s * 0.09), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    const auto at = [&](double x, double y) { return c + QPointF(x * s, y * s); };
    switch (sound) {
    case AmbientSound::rain: {
        QPainterPath cloud;
        cloud.addEllipse(at(-0.22, -0.12), s * 0.16, s * 0.14);
        cloud.addEllipse(at(0.02, -0.2), s * 0.2, s * 0.19);
        cloud.addEllipse(at(0.24, -0.1), s * 0.15, s * 0.13);
        cloud.addRoundedRect(QRectF(at(-0.36, -0.12), QSizeF(s * 0.74, s * 0.16)), s * 0.08,
                             s * 0.08);
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawPath(cloud.simplified());
        p.setPen(pen);
        for (const double x : {-0.2, 0.02, 0.24}) {
            p.drawLine(at(x, 0.14), at(x - 0.07, 0.36));
        }
        break;
    }
    case AmbientSound::waves:
        for (const double y : {-0.12, 0.14}) {
            QPainterPath wave;
            for (int i = 0; i <= 24; ++i) {
                const double x = -0.4 + 0.8 * i / 24.0;
                const QPointF point = at(x, y + 0.08 * std::sin(x * 2 * std::numbers::pi * 1.5));
                i == 0 ? wave.moveTo(point) : wave.lineTo(point);
            }
            p.drawPath(wave);
        }
        break;
    case AmbientSound::cafe: {
        QPainterPath cup;
        cup.moveTo(at(-0.3, -0.02));
        cup.lineTo(at(0.18, -0.02));
        cup.lineTo(at(0.14, 0.3));
        cup.quadTo(at(-0.06, 0.36), at(-0.26, 0.3));
        cup.closeSubpath();
        p.drawPath(cup);
        p.drawArc(QRectF(at(0.1, 0.02), QSizeF(s * 0.2, s * 0.18)), -90 * 16, 180 * 16);
        for (const double x : {-0.14, 0.04}) {
            QPainterPath steam;
            steam.moveTo(at(x, -0.12));
            steam.cubicTo(at(x - 0.06, -0.22), at(x + 0.06, -0.28), at(x, -0.38));
            p.drawPath(steam);
        }
        break;
    }
    case AmbientSound::white:
    case AmbientSound::pink:
    case AmbientSound::brown: {
        // From jagged to smooth, as the noise loses its treble.
        const int points =
            sound == AmbientSound::white ? 11 : (sound == AmbientSound::pink ? 7 : 4);
        static constexpr std::array<double, 11> heights{0.2, -0.28, 0.3,  -0.12, 0.26, -0.3,
                                                        0.1, -0.22, 0.28, -0.14, 0.04};
        p.setPen(QPen(color, std::max(1.0, s * 0.065), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPainterPath line;
        for (int i = 0; i < points; ++i) {
            const QPointF point = at(-0.4 + 0.8 * i / (points - 1), heights[std::size_t(i)]);
            if (i == 0) {
                line.moveTo(point);
            } else if (sound == AmbientSound::white) {
                line.lineTo(point);
            } else {
                const QPointF previous = line.currentPosition();
                line.cubicTo(QPointF((previous.x() + point.x()) / 2, previous.y()),
                             QPointF((previous.x() + point.x()) / 2, point.y()), point);
            }
        }
        p.drawPath(line);
        break;
    }
    }
    p.restore();
}

// Ripples going out from the button while the sound plays, slow enough to be calm.
void drawRipples(QPainter& p, const QRectF& box, const Palette& palette, double sceneTime) {
    const qreal r = std::min(box.width(), box.height()) / 2;
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(Qt::NoBrush);
    for (int k = 0; k < 3; ++k) {
        const double phase = std::fmod(sceneTime * 0.3 + k / 3.0, 1.0);
        QColor ring = palette.accent;
        ring.setAlphaF(float(0.45 * (1 - phase)));
        p.setPen(QPen(ring, 1.5));
        const qreal radius = r * (1 + 0.4 * phase);
        p.drawEllipse(box.center(), radius, radius);
    }
    p.restore();
}

void drawPlayButton(QPainter& p, const QRectF& box, bool playing, const Palette& palette) {
    const qreal r = std::min(box.width(), box.height()) / 2;
    const QPointF c = box.center();
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(palette.accent);
    p.drawEllipse(c, r, r);
    p.setBrush(palette.bottom);
    if (playing) {
        const qreal w = r * 0.2;
        const qreal h = r * 0.8;
        p.drawRoundedRect(QRectF(c.x() - w * 1.75, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
        p.drawRoundedRect(QRectF(c.x() + w * 0.75, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
    } else {
        QPainterPath triangle;
        triangle.moveTo(c + QPointF(-r * 0.28, -r * 0.42));
        triangle.lineTo(c + QPointF(r * 0.46, 0));
        triangle.lineTo(c + QPointF(-r * 0.28, r * 0.42));
        triangle.closeSubpath();
        p.drawPath(triangle);
    }
    p.restore();
}

// A round chip with a glyph or text; `on` fills it.
void drawChip(QPainter& p, const QRectF& box, bool on, const Palette& palette) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    QColor fill = on ? palette.accent : palette.text;
    fill.setAlphaF(on ? 0.9f : 0.12f);
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    const qreal r = std::min(box.width(), box.height()) / 2;
    p.drawRoundedRect(box, r, r);
    p.restore();
}

void drawSign(QPainter& p, const QRectF& box, bool plus, const QColor& color) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap));
    const QPointF c = box.center();
    const qreal half = box.width() * 0.22;
    p.drawLine(c - QPointF(half, 0), c + QPointF(half, 0));
    if (plus) {
        p.drawLine(c - QPointF(0, half), c + QPointF(0, half));
    }
    p.restore();
}

void drawMoon(QPainter& p, const QRectF& box, const QColor& color) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    const qreal r = std::min(box.width(), box.height()) * 0.32;
    QPainterPath moon;
    moon.addEllipse(box.center(), r, r);
    QPainterPath bite;
    bite.addEllipse(box.center() + QPointF(r * 0.55, -r * 0.4), r * 0.85, r * 0.85);
    p.fillPath(moon.subtracted(bite), color);
    p.restore();
}

int minutesLeft(const Shown& shown, const QDateTime& now) {
    if (!shown.sleepEnds || !now.isValid()) {
        return int(shown.sleep.count());
    }
    const qint64 seconds = now.secsTo(*shown.sleepEnds);
    return int(std::max<qint64>(1, (seconds + 59) / 60));
}

QString statusText(const Shown& shown, const QDateTime& now) {
    if (shown.problem == LoopPlayer::Problem::noDevice) {
        return L("ambient.noDevice", QStringLiteral("No sound output"));
    }
    if (shown.problem == LoopPlayer::Problem::deviceLost) {
        return L("ambient.deviceLost", QStringLiteral("Sound output went away"));
    }
    if (!shown.playing) {
        return L("ambient.paused", QStringLiteral("Paused"));
    }
    if (shown.sleep.count() > 0) {
        return L("ambient.sleepsIn", QStringLiteral("Stops in %1 min"))
            .arg(minutesLeft(shown, now));
    }
    return L("ambient.playing", QStringLiteral("Playing"));
}

QString sleepText(const Shown& shown, const QDateTime& now) {
    if (shown.sleep.count() == 0) {
        return L("ambient.sleepOff", QStringLiteral("Off"));
    }
    return L("ambient.sleepMinutes", QStringLiteral("%1m"))
        .arg(shown.playing ? minutesLeft(shown, now) : int(shown.sleep.count()));
}

QRectF square(QPointF center, qreal side) {
    return {center - QPointF(side / 2, side / 2), QSizeF(side, side)};
}

// Everything but the ripples: it changes only with the state, so it is kept as a picture.
void paintStill(QPainter& painter, const QRectF& rect, const FaceContext& context,
                const Shown& shown, const Palette& palette, const AmbientSoundFace::Layout& l) {
    painter.save();
    QLinearGradient fill(rect.topLeft(), rect.bottomLeft());
    fill.setColorAt(0, palette.top);
    fill.setColorAt(1, palette.bottom);
    painter.fillRect(rect, fill);

    drawPlayButton(painter, l.button, shown.playing, palette);

    const bool small = context.size == WidgetSize::small;
    if (!l.title.isEmpty()) {
        if (small) {
            FaceKit::drawElided(painter, context, l.title, displayName(shown.sound),
                                FaceKit::font(12, QFont::DemiBold), palette.text,
                                Qt::AlignHCenter | Qt::AlignVCenter);
        } else {
            FaceKit::drawFitted(painter, context, l.title, displayName(shown.sound),
                                QFont::DemiBold, palette.text, Qt::AlignLeft | Qt::AlignVCenter,
                                17);
        }
    }
    if (!l.status.isEmpty()) {
        const bool trouble = shown.problem.has_value();
        FaceKit::drawElided(painter, context, l.status, statusText(shown, context.now),
                            FaceKit::font(12), trouble ? QColor(0xff, 0x9f, 0x0a) : palette.dim,
                            Qt::AlignLeft | Qt::AlignVCenter);
    } else if (small && (shown.problem || shown.sleep.count() > 0)) {
        const QRectF corner(rect.right() - 34, rect.top() + 6, 28, 14);
        FaceKit::drawElided(painter, context, corner,
                            shown.problem ? QStringLiteral("!") : sleepText(shown, context.now),
                            FaceKit::font(10, QFont::DemiBold),
                            shown.problem ? QColor(0xff, 0x9f, 0x0a) : palette.dim, Qt::AlignRight);
    }
    for (std::size_t i = 0; i < l.sounds.size(); ++i) {
        const QRectF& box = l.sounds[i];
        if (box.isEmpty()) {
            continue;
        }
        const AmbientSound sound = allAmbientSounds()[qsizetype(i)];
        const bool on = sound == shown.sound;
        drawChip(painter, box, on, palette);
        drawGlyph(painter,
                  box.adjusted(box.width() * 0.2, box.height() * 0.2, -box.width() * 0.2,
                               -box.height() * 0.2),
                  sound, on ? palette.bottom : palette.text);
        if (l.soundNames) {
            FaceKit::drawElided(painter, context,
                                QRectF(box.left() - 4, box.bottom() + 3, box.width() + 8, 13),
                                displayName(sound).section(QLatin1Char(' '), 0, 0),
                                FaceKit::font(10), palette.dim, Qt::AlignHCenter);
        }
    }
    if (!l.volume.isEmpty()) {
        drawChip(painter, l.quieter, false, palette);
        drawSign(painter, l.quieter, false, palette.text);
        drawChip(painter, l.louder, false, palette);
        drawSign(painter, l.louder, true, palette.text);
        QColor track = palette.text;
        track.setAlphaF(0.18f);
        FaceKit::drawBar(painter, l.volume, shown.volume, palette.accent, track);
    }
    if (!l.sleep.isEmpty()) {
        const bool on = shown.sleep.count() > 0;
        drawChip(painter, l.sleep, on, palette);
        const QColor ink = on ? palette.bottom : palette.text;
        if (l.sleep.width() > l.sleep.height() * 1.5) {
            const QRectF glyph(l.sleep.left() + 4, l.sleep.top(), l.sleep.height(),
                               l.sleep.height());
            drawMoon(painter, glyph, ink);
            FaceKit::drawElided(painter, context,
                                l.sleep.adjusted(l.sleep.height() * 0.9 + 3, 0, -4, 0),
                                sleepText(shown, context.now), FaceKit::font(11, QFont::DemiBold),
                                ink, Qt::AlignLeft | Qt::AlignVCenter);
        } else {
            drawMoon(painter, l.sleep, ink);
        }
    }
    painter.restore();
}

} // namespace

AmbientSoundFace::Layout AmbientSoundFace::layout(const QRectF& rect, WidgetSize size) {
    Layout l;
    const qreal x = rect.left();
    const qreal y = rect.top();
    const qreal w = rect.width();
    const qreal h = rect.height();
    const auto chipsRow = [&](qreal left, qreal right, qreal top, qreal side) {
        const qreal gap = (right - left - 6 * side) / 5;
        for (std::size_t i = 0; i < 6; ++i) {
            l.sounds[i] = QRectF(left + double(i) * (side + gap), top, side, side);
        }
    };
    const auto volumeRow = [&](qreal left, qreal right, qreal top, qreal side, bool withSleep) {
        l.quieter = QRectF(left, top, side, side);
        const qreal sleepWidth = withSleep ? side * 2.9 : 0;
        l.louder = QRectF(right - sleepWidth - (withSleep ? 8 : 0) - side, top, side, side);
        l.volume = QRectF(l.quieter.right() + 6, top + side / 2 - 2,
                          l.louder.left() - 6 - l.quieter.right() - 6, 4);
        if (withSleep) {
            l.sleep = QRectF(right - sleepWidth, top, sleepWidth, side);
        }
    };
    switch (size) {
    case WidgetSize::small:
        l.button = square(QPointF(x + w / 2, y + h * 0.44), 42);
        l.title = QRectF(x + 8, y + h - 24, w - 16, 16);
        break;
    case WidgetSize::wide:
        l.button = square(QPointF(x + 14 + 27, y + h / 2), 54);
        l.title = QRectF(x + 82, y + 14, w - 82 - 36, 20);
        l.status = QRectF(x + 82, y + 36, w - 82 - 12, 15);
        l.sleep = QRectF(x + w - 12 - 22, y + 12, 22, 22);
        volumeRow(x + 82, x + w - 14, y + h - 14 - 20, 20, false);
        break;
    case WidgetSize::banner:
        l.button = square(QPointF(x + 14 + 27, y + h / 2), 54);
        l.title = QRectF(x + 82, y + 14, 114 - 26, 20);
        l.status = QRectF(x + 82, y + 36, 114, 15);
        l.sleep = QRectF(x + 196 - 20, y + 13, 20, 20);
        volumeRow(x + 82, x + 196, y + h - 14 - 20, 20, false);
        for (std::size_t i = 0; i < 6; ++i) {
            l.sounds[i] = QRectF(x + 208 + double(i % 3) * 34, y + 14 + double(i / 3) * 36, 30, 30);
        }
        break;
    case WidgetSize::wideTall:
        l.button = square(QPointF(x + 74, y + h * 0.47), 70);
        l.title = QRectF(x + 14, y + 14, 130, 20);
        l.status = QRectF(x + 14, y + h - 14 - 40, 130, 15);
        l.soundNames = true;
        for (std::size_t i = 0; i < 6; ++i) {
            l.sounds[i] = QRectF(x + 160 + double(i % 3) * 48, y + 14 + double(i / 3) * 64, 40, 40);
        }
        volumeRow(x + 14, x + w - 14, y + h - 14 - 22, 22, true);
        break;
    case WidgetSize::large:
    default:
        l.title = QRectF(x + 14, y + 14, w - 28, 20);
        l.status = QRectF(x + 14, y + 36, w - 28, 15);
        l.button = square(QPointF(x + w / 2, y + 92), 62);
        chipsRow(x + 14, x + w - 14, y + 136, 26);
        volumeRow(x + 14, x + w - 14, y + h - 14 - 22, 22, true);
        break;
    }
    return l;
}

std::optional<TimeGrain> AmbientSoundFace::grain(WidgetSize, const WidgetSettings& settings) const {
    // The sleep timer's minutes count down.
    if (AmbientSoundSettings::from(settings).sleep.count() > 0) {
        return TimeGrain::Minutes;
    }
    return std::nullopt;
}

double AmbientSoundFace::sceneFps(const FaceContext& context) const {
    return shownOf(context).playing ? 12 : 0;
}

void AmbientSoundFace::paint(QPainter& painter, const QRectF& rect,
                             const FaceContext& context) const {
    const Shown shown = shownOf(context);
    const bool dark = context.glass.shade == GlassLook::Shade::Dark;
    const Palette palette = paletteOf(shown.sound, dark);
    const Layout l = layout(rect, context.size);
    if (context.pictures == nullptr) {
        paintStill(painter, rect, context, shown, palette, l);
    } else {
        FaceContext plain = context;
        plain.pictures = nullptr;
        const QString key = QStringLiteral("%1/%2/%3/%4/%5/%6/%7x%8")
                                .arg(settingValue(shown.sound), statusText(shown, context.now),
                                     sleepText(shown, context.now))
                                .arg(shown.playing)
                                .arg(shown.volume)
                                .arg(dark)
                                .arg(rect.width())
                                .arg(rect.height());
        context.pictures->drawLatest(
            painter, rect, QStringLiteral("ambientsound/") + context.instanceID.toString(), key,
            context.devicePixelRatio, [&](QPainter& p) {
                p.translate(-rect.topLeft());
                paintStill(p, rect, plain, shown, palette, l);
            });
    }
    if (shown.playing) {
        drawRipples(painter, l.button, palette, context.sceneTime);
    }
}

WidgetFace::Spot AmbientSoundFace::spotAt(const QRectF& rect, QPointF point,
                                          const FaceContext& context) const {
    const Shown shown = shownOf(context);
    const Layout l = layout(rect, context.size);
    Spot spot;
    const auto offer = [&](const QString& command, const QString& help) {
        spot.command = command;
        spot.help = help;
    };
    const auto near = [&](const QRectF& box) {
        return !box.isEmpty() && box.adjusted(-3, -3, 3, 3).contains(point);
    };
    if (context.size == WidgetSize::small || near(l.button)) {
        offer(QStringLiteral("toggle"), shown.playing ? L("ambient.pause", QStringLiteral("Pause"))
                                                      : L("ambient.play", QStringLiteral("Play")));
        return spot;
    }
    for (std::size_t i = 0; i < l.sounds.size(); ++i) {
        if (near(l.sounds[i])) {
            const AmbientSound sound = allAmbientSounds()[qsizetype(i)];
            offer(QStringLiteral("sound:") + settingValue(sound), displayName(sound));
            return spot;
        }
    }
    if (near(l.quieter)) {
        offer(QStringLiteral("quieter"), L("ambient.quieter", QStringLiteral("Quieter")));
    } else if (near(l.louder)) {
        offer(QStringLiteral("louder"), L("ambient.louder", QStringLiteral("Louder")));
    } else if (near(l.sleep)) {
        offer(QStringLiteral("sleep"),
              L("ambient.sleepHelp", QStringLiteral("Sleep timer: click for the next length")));
    }
    return spot;
}

} // namespace tw
