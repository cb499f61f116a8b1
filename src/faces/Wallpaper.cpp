#include "faces/Wallpaper.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

// A soft field of colour: a radial fall-off to nothing, which reads as a blurred blob. Centre and
// radius are fractions of the picture, the radius of its longer side.
struct Field {
    double x;
    double y;
    double radius;
    QColor color;
};

void fill(QPainter& painter, const QSizeF& size, const QColor& top, const QColor& bottom) {
    QLinearGradient gradient(0, 0, size.width() * 0.3, size.height());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(QRectF(QPointF(), size), gradient);
}

void fields(QPainter& painter, const QSizeF& size, std::initializer_list<Field> list) {
    const double longer = std::max(size.width(), size.height());
    for (const Field& field : list) {
        const QPointF centre(field.x * size.width(), field.y * size.height());
        QRadialGradient gradient(centre, field.radius * longer);
        QColor clear = field.color;
        clear.setAlpha(0);
        QColor half = field.color;
        half.setAlphaF(field.color.alphaF() * 0.45F);
        gradient.setColorAt(0, field.color);
        gradient.setColorAt(0.5, half);
        gradient.setColorAt(1, clear);
        painter.fillRect(QRectF(QPointF(), size), gradient);
    }
}

// Where a moving picture is in its loop, as an angle: 0 at the start and again at every period.
double turn(double seconds, double period) {
    return 2 * std::numbers::pi * std::fmod(seconds, period) / period;
}

constexpr double lagoonPeriod = 90;
constexpr double nightSkyPeriod = 120;
constexpr double auroraPeriod = 60;

// A fine, even grain keeps wide gradients from banding on eight-bit displays.
void grain(QPainter& painter, const QSizeF& size, quint32 seed) {
    QRandomGenerator random(seed);
    const int count = int(size.width() * size.height() / 90);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < count; ++i) {
        const bool light = random.bounded(2) == 0;
        painter.setBrush(light ? QColor(255, 255, 255, 6) : QColor(0, 0, 0, 6));
        painter.drawRect(QRectF(random.bounded(size.width()), random.bounded(size.height()), 1, 1));
    }
}

void dawn(QPainter& painter, const QSizeF& size, double) {
    fill(painter, size, QColor(0xf6, 0xd3, 0xc4), QColor(0xb9, 0xa7, 0xe0));
    fields(painter, size,
           {{0.15, 0.2, 0.55, QColor(0xff, 0xb3, 0x8a, 200)},
            {0.85, 0.3, 0.5, QColor(0xf4, 0x9c, 0xc8, 170)},
            {0.55, 0.95, 0.6, QColor(0x8f, 0x9b, 0xf0, 190)},
            {0.4, 0.45, 0.3, QColor(0xff, 0xe9, 0xc2, 150)}});
    grain(painter, size, 1);
}

void lagoon(QPainter& painter, const QSizeF& size, double seconds) {
    fill(painter, size, QColor(0x0b, 0x4f, 0x6c), QColor(0x01, 0x1f, 0x3a));
    // The fields drift on small loops, each at its own point of it, like light under water.
    const double a = turn(seconds, lagoonPeriod);
    const auto dx = [a](double offset) { return 0.06 * (std::cos(a + offset) - std::cos(offset)); };
    const auto dy = [a](double offset) { return 0.05 * (std::sin(a + offset) - std::sin(offset)); };
    fields(painter, size,
           {{0.2 + dx(0), 0.8 + dy(0), 0.55, QColor(0x20, 0xc5, 0xb5, 190)},
            {0.8 + dx(2), 0.15 + dy(2), 0.45, QColor(0x3a, 0x86, 0xff, 170)},
            {0.6 - dx(4), 0.65 - dy(4), 0.35, QColor(0x7b, 0xe0, 0xd6, 120)},
            {0.05 + dx(1), 0.1 - dy(1), 0.3, QColor(0x14, 0x2f, 0x7a, 200)}});
    grain(painter, size, 2);
}

void nightSky(QPainter& painter, const QSizeF& size, double seconds) {
    const double a = turn(seconds, nightSkyPeriod);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0x03, 0x06, 0x17));
    sky.setColorAt(0.6, QColor(0x0d, 0x1b, 0x3e));
    sky.setColorAt(1, QColor(0x2a, 0x2f, 0x5e));
    painter.fillRect(QRectF(QPointF(), size), sky);
    // The band of the galaxy, a tilted haze of faint colour.
    painter.save();
    painter.translate(size.width() * 0.5, size.height() * 0.45);
    // The band sways a little about its still angle.
    painter.rotate(-24 + 2.5 * std::sin(a));
    painter.scale(1.0, 0.22);
    fields(painter, QSizeF(size.width(), size.width()),
           {{-0.25, -0.5, 0.45, QColor(0x9a, 0x8c, 0xd8, 70)},
            {0.05, -0.5, 0.4, QColor(0xc8, 0xb8, 0xf0, 60)},
            {0.3, -0.5, 0.45, QColor(0x6a, 0x8c, 0xd8, 60)}});
    painter.restore();
    QRandomGenerator random(7);
    const double longer = std::max(size.width(), size.height());
    const int stars = int(size.width() * size.height() / 1800);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < stars; ++i) {
        const QPointF at(random.bounded(size.width()), random.bounded(size.height() * 0.85));
        const double magnitude = std::pow(random.generateDouble(), 3.0);
        const double radius = longer * (0.0006 + 0.0018 * magnitude);
        QColor color = random.bounded(5) == 0 ? QColor(0xff, 0xe4, 0xc4) : QColor(0xe8, 0xf0, 0xff);
        // Each star twinkles at one, two or three times the loop, from its own phase.
        const double phase = std::fmod(i * 0.618034, 1.0) * 2 * std::numbers::pi;
        const double twinkle =
            1 - 0.6 * (1 - std::cos((1 + i % 3) * a)) / 2 * (0.5 + 0.5 * std::sin(phase));
        color.setAlphaF((0.35 + 0.65 * magnitude) * twinkle);
        painter.setBrush(color);
        painter.drawEllipse(at, radius, radius);
    }
    // Hills against the glow of the horizon.
    QPainterPath hills(QPointF(0, size.height()));
    for (int i = 0; i <= 48; ++i) {
        const double x = size.width() * i / 48.0;
        const double y =
            size.height() * (0.86 + 0.04 * std::sin(i * 0.35) + 0.02 * std::sin(i * 1.1));
        hills.lineTo(x, y);
    }
    hills.lineTo(size.width(), size.height());
    painter.setBrush(QColor(0x04, 0x07, 0x14));
    painter.drawPath(hills);
}

void dunes(QPainter& painter, const QSizeF& size, double) {
    fill(painter, size, QColor(0xff, 0xd9, 0xa8), QColor(0xf0, 0x9a, 0x72));
    fields(painter, size, {{0.7, 0.25, 0.25, QColor(0xff, 0xf3, 0xd6, 220)}});
    const QColor layers[] = {QColor(0xe8, 0x8f, 0x62), QColor(0xc9, 0x6b, 0x4e),
                             QColor(0x9c, 0x4a, 0x3f), QColor(0x6b, 0x30, 0x35)};
    painter.setPen(Qt::NoPen);
    for (int layer = 0; layer < 4; ++layer) {
        const double base = 0.5 + 0.13 * layer;
        QPainterPath dune(QPointF(0, size.height()));
        for (int i = 0; i <= 64; ++i) {
            const double t = i / 64.0;
            const double wave = std::sin(t * std::numbers::pi * (1.4 + 0.5 * layer) + layer * 1.7);
            dune.lineTo(size.width() * t, size.height() * (base + 0.05 * wave));
        }
        dune.lineTo(size.width(), size.height());
        QLinearGradient shade(0, size.height() * (base - 0.05), 0, size.height());
        shade.setColorAt(0, layers[layer].lighter(112));
        shade.setColorAt(1, layers[layer]);
        painter.setBrush(shade);
        painter.drawPath(dune);
    }
    grain(painter, size, 4);
}

void aurora(QPainter& painter, const QSizeF& size, double seconds) {
    const double a = turn(seconds, auroraPeriod);
    fill(painter, size, QColor(0x02, 0x0b, 0x16), QColor(0x06, 0x1d, 0x2b));
    painter.setPen(Qt::NoPen);
    // Curtains: tall, thin, soft ribbons along a slow wave.
    const struct {
        double phase;
        QColor color;
    } curtains[] = {{0.0, QColor(0x3c, 0xf0, 0x9c, 70)},
                    {1.3, QColor(0x5f, 0xd8, 0xe8, 55)},
                    {2.4, QColor(0xa8, 0x6b, 0xf0, 50)}};
    // Columns edge to edge, unsmoothed: overlapping soft edges would show as stripes.
    painter.setRenderHint(QPainter::Antialiasing, false);
    const int columns = std::max(90, int(size.width() / 2));
    const double step = size.width() / columns;
    for (const auto& curtain : curtains) {
        for (int i = 0; i < columns; ++i) {
            const double t = i / double(columns - 1);
            const double x = size.width() * t;
            // The waves travel along the curtains, and their folds breathe at twice the pace.
            const double crest =
                size.height() * (0.3 + 0.12 * std::sin(t * 5.0 + curtain.phase + a));
            const double length =
                size.height() * (0.25 + 0.1 * std::sin(t * 9.0 + curtain.phase - 2 * a));
            QLinearGradient ribbon(x, crest - length, x, crest + length * 0.3);
            QColor clear = curtain.color;
            clear.setAlpha(0);
            ribbon.setColorAt(0, clear);
            ribbon.setColorAt(0.75, curtain.color);
            ribbon.setColorAt(1, clear);
            painter.setBrush(ribbon);
            const double left = std::floor(i * step);
            painter.drawRect(
                QRectF(left, crest - length, std::floor((i + 1) * step) - left, length * 1.3));
        }
    }
    painter.setRenderHint(QPainter::Antialiasing);
    fields(painter, size, {{0.5, 1.1, 0.5, QColor(0x0b, 0x3d, 0x4a, 160)}});
    grain(painter, size, 5);
}

void graphite(QPainter& painter, const QSizeF& size, double) {
    fill(painter, size, QColor(0x2b, 0x2e, 0x35), QColor(0x12, 0x13, 0x17));
    fields(painter, size,
           {{0.25, 0.2, 0.6, QColor(0x5a, 0x63, 0x75, 150)},
            {0.9, 0.85, 0.45, QColor(0x3d, 0x4f, 0x6e, 130)},
            {0.65, 0.4, 0.25, QColor(0x8a, 0x7f, 0x75, 70)}});
    grain(painter, size, 6);
}

void meadow(QPainter& painter, const QSizeF& size, double) {
    fill(painter, size, QColor(0xe3, 0xf4, 0xd7), QColor(0x7f, 0xc2, 0x9b));
    fields(painter, size,
           {{0.1, 0.9, 0.5, QColor(0x3e, 0xa0, 0x7a, 180)},
            {0.9, 0.1, 0.45, QColor(0xf7, 0xf1, 0xa6, 190)},
            {0.6, 0.6, 0.4, QColor(0x9b, 0xd7, 0xc9, 150)}});
    grain(painter, size, 7);
}

} // namespace

const QList<Wallpaper>& Wallpaper::all() {
    static const QList<Wallpaper> wallpapers{
        {QStringLiteral("dawn"), QStringLiteral("Dawn"), &dawn, 0},
        {QStringLiteral("lagoon"), QStringLiteral("Lagoon"), &lagoon, lagoonPeriod},
        {QStringLiteral("night-sky"), QStringLiteral("Night Sky"), &nightSky, nightSkyPeriod},
        {QStringLiteral("dunes"), QStringLiteral("Dunes"), &dunes, 0},
        {QStringLiteral("aurora"), QStringLiteral("Aurora"), &aurora, auroraPeriod},
        {QStringLiteral("graphite"), QStringLiteral("Graphite"), &graphite, 0},
        {QStringLiteral("meadow"), QStringLiteral("Meadow"), &meadow, 0},
    };
    return wallpapers;
}

const Wallpaper* Wallpaper::find(const QString& id) {
    const QList<Wallpaper>& list = all();
    const auto it = std::find_if(list.begin(), list.end(),
                                 [&](const Wallpaper& wallpaper) { return wallpaper.id == id; });
    return it == list.end() ? nullptr : &*it;
}

} // namespace tw
