#include "desktop/WallpaperBackdrop.h"

#include "faces/BoxBlur.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPainter>
#include <QScreen>
#include <QThreadPool>

#include <algorithm>

namespace tw {

Q_LOGGING_CATEGORY(lcBackdrop, "Glass")

namespace {

using Fill = DesktopPicture::Fill;

bool scales(Fill fill) {
    return fill != Fill::center && fill != Fill::tile;
}

// A logical rectangle in pixels at `ratio`, at least one pixel each way.
QRect inPixels(const QRect& logical, qreal ratio) {
    return {QPoint(qRound(logical.x() * ratio), qRound(logical.y() * ratio)),
            QSize(std::max(1, qRound(logical.width() * ratio)),
                  std::max(1, qRound(logical.height() * ratio)))};
}

struct Read {
    QImage picture;
    qreal ratio = 1; // pixels per logical pixel to fit it at
};

// Reads a picture no larger than needed to cover `display` at its detail; a null image when it
// can't.
Read readPicture(const QString& file, Fill fill, const QSize& display, qreal devicePixelRatio) {
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() &&
        static_cast<qint64>(size.width()) * size.height() > WallpaperBackdrop::maxPixels) {
        qCWarning(lcBackdrop, "desktop picture %s is too large to read; tiles draw without it",
                  qUtf8Printable(file));
        return {};
    }
    const qreal ratio = size.isValid()
                            ? WallpaperBackdrop::detailRatio(size, fill, display, devicePixelRatio)
                            : std::max<qreal>(devicePixelRatio, 1);
    const QSize pixels = inPixels(QRect(QPoint(), display), ratio).size();
    if (scales(fill) && size.isValid() && size.width() > 2 * pixels.width() &&
        size.height() > 2 * pixels.height()) {
        const double factor = std::max(double(pixels.width()) / size.width(),
                                       double(pixels.height()) / size.height());
        reader.setScaledSize((QSizeF(size) * factor * 1.5).toSize());
    }
    Read read{reader.read(), ratio};
    if (read.picture.isNull()) {
        qCWarning(lcBackdrop, "desktop picture %s is not readable (%s); tiles draw without it",
                  qUtf8Printable(file), qUtf8Printable(reader.errorString()));
    }
    return read;
}

// One layer of the pictures (sharp, frosted or clear) of the displays under `area`, each part
// from its own display, at the finest of their resolutions.
QImage composed(const QRect& area, const QList<QRect>& geometries, const QList<QImage>& images) {
    qreal ratio = 0;
    for (qsizetype i = 0; i < images.size(); ++i) {
        ratio = std::max(ratio, images[i].width() / qreal(geometries[i].width()));
    }
    QImage out(inPixels(QRect(QPoint(), area.size()), ratio).size(), QImage::Format_RGB32);
    out.fill(Qt::black);
    QPainter painter(&out);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(out.width() / qreal(area.width()), out.height() / qreal(area.height()));
    for (qsizetype i = 0; i < images.size(); ++i) {
        const QRect& geometry = geometries[i];
        const QRect part = geometry.intersected(area);
        const qreal sx = images[i].width() / qreal(geometry.width());
        const qreal sy = images[i].height() / qreal(geometry.height());
        const QRectF source((part.x() - geometry.x()) * sx, (part.y() - geometry.y()) * sy,
                            part.width() * sx, part.height() * sy);
        painter.drawImage(QRectF(part.translated(-area.topLeft())), images[i], source);
    }
    return out;
}

} // namespace

WallpaperBackdrop::WallpaperBackdrop(DesktopPicture* picture, QObject* parent)
    : QObject(parent)
    , m_picture(picture) {
    m_pool.setMaxThreadCount(1);
    m_pool.setThreadPriority(QThread::LowestPriority);
    if (m_picture != nullptr) {
        connect(m_picture, &DesktopPicture::changed, this, &WallpaperBackdrop::refresh);
    }
    auto* app = qGuiApp;
    connect(app, &QGuiApplication::screenAdded, this, &WallpaperBackdrop::refresh);
    connect(app, &QGuiApplication::screenRemoved, this, &WallpaperBackdrop::refresh);
    refresh();
}

// Work still running would post to a gone object: it finishes first.
WallpaperBackdrop::~WallpaperBackdrop() {
    m_pool.waitForDone();
}

void WallpaperBackdrop::refresh() {
    ++m_generation;
    QSet<QString> present;
    for (QScreen* screen : QGuiApplication::screens()) {
        present.insert(screen->name());
        load(screen);
    }
    for (auto it = m_screens.begin(); it != m_screens.end();) {
        it = present.contains(it.key()) ? std::next(it) : m_screens.erase(it);
    }
}

void WallpaperBackdrop::load(QScreen* screen) {
    const QString name = screen->name();
    const QRect geometry = screen->geometry();
    const qreal devicePixelRatio = std::max<qreal>(screen->devicePixelRatio(), 1);
    const auto setting =
        m_picture != nullptr ? m_picture->setting(name) : std::optional<DesktopPicture::Setting>();
    const bool fromFile = setting && !setting->file.isEmpty();
    QImage root;
    if (!fromFile && m_picture != nullptr) {
        root = m_picture->rootPicture().copy(inPixels(geometry, devicePixelRatio));
    }
    if (!fromFile && root.isNull()) {
        if (m_screens.remove(name) > 0) {
            Q_EMIT changed();
        }
        return;
    }
    // A spanned picture is fitted once across all the displays, and each shows its part.
    QRect area = geometry;
    if (fromFile && setting->fill == Fill::span) {
        for (const QScreen* other : QGuiApplication::screens()) {
            area = area.united(other->geometry());
        }
    }
    const QString identity =
        (fromFile ? setting->identity : QStringLiteral("root|%1").arg(root.cacheKey())) +
        QStringLiteral("|%1,%2 %3x%4 in %5,%6 %7x%8 @%9")
            .arg(geometry.x())
            .arg(geometry.y())
            .arg(geometry.width())
            .arg(geometry.height())
            .arg(area.x())
            .arg(area.y())
            .arg(area.width())
            .arg(area.height())
            .arg(devicePixelRatio);
    if (m_screens.value(name).pictures.identity == identity &&
        m_screens.value(name).geometry == geometry) {
        return;
    }
    const int generation = m_generation;
    m_pool.start([this, name, geometry, area, devicePixelRatio, setting, fromFile, root, identity,
                  generation] {
        QImage picture;
        qreal ratio = devicePixelRatio;
        if (fromFile) {
            const Read read =
                readPicture(setting->file, setting->fill, area.size(), devicePixelRatio);
            ratio = read.ratio;
            picture = fitted(read.picture, setting->fill, area.size(), ratio);
            if (area != geometry && !picture.isNull()) {
                picture = picture.copy(inPixels(geometry.translated(-area.topLeft()), ratio));
            }
        } else {
            const QSize pixels = inPixels(geometry, ratio).size();
            picture = (root.size() == pixels
                           ? root
                           : root.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))
                          .convertToFormat(QImage::Format_RGB32);
        }
        GlassBackdrop pictures{
            .sharp = picture,
            .frosted = picture.isNull() ? QImage() : blurred(picture, frostedReduction * ratio, 3),
            .clear = picture.isNull() ? QImage() : blurred(picture, clearReduction * ratio, 2),
            .display = QSizeF(geometry.size()),
            .panel = {},
            .identity = identity,
        };
        QMetaObject::invokeMethod(this, [this, name, geometry, pictures, generation] {
            if (generation != m_generation && m_screens.contains(name)) {
                return;
            }
            if (pictures.sharp.isNull()) {
                m_screens.remove(name);
            } else {
                m_screens.insert(name, {geometry, pictures});
            }
            Q_EMIT changed();
        });
    });
}

std::optional<GlassBackdrop> WallpaperBackdrop::behind(const QRect& rect) const {
    QList<const Screen*> under;
    for (const Screen& screen : m_screens) {
        if (screen.geometry.intersects(rect)) {
            under.append(&screen);
        }
    }
    if (under.isEmpty()) {
        return std::nullopt;
    }
    if (under.size() == 1) {
        GlassBackdrop backdrop = under.front()->pictures;
        backdrop.panel = QRectF(rect.translated(-under.front()->geometry.topLeft()));
        return backdrop;
    }
    // Across displays: the part of each display's pictures under the panel and a margin round it.
    QRect reach;
    for (const Screen* screen : under) {
        reach = reach.united(screen->geometry);
    }
    const int m = composedMargin;
    const QRect area = rect.adjusted(-m, -m, m, m).intersected(reach);
    QList<QRect> geometries;
    QList<QImage> sharp;
    QList<QImage> frosted;
    QList<QImage> clear;
    QStringList identities;
    for (const Screen* screen : under) {
        geometries.append(screen->geometry);
        sharp.append(screen->pictures.sharp);
        frosted.append(screen->pictures.frosted);
        clear.append(screen->pictures.clear);
        identities.append(screen->pictures.identity);
    }
    return GlassBackdrop{
        .sharp = composed(area, geometries, sharp),
        .frosted = composed(area, geometries, frosted),
        .clear = composed(area, geometries, clear),
        .display = QSizeF(area.size()),
        .panel = QRectF(rect.translated(-area.topLeft())),
        .identity = QStringLiteral("%1,%2 %3x%4|")
                        .arg(area.x())
                        .arg(area.y())
                        .arg(area.width())
                        .arg(area.height()) +
                    identities.join(u'+'),
    };
}

QImage WallpaperBackdrop::fitted(const QImage& picture, Fill fill, const QSize& display,
                                 qreal ratio) {
    if (picture.isNull() || display.isEmpty() || !(ratio > 0)) {
        return {};
    }
    QImage out(inPixels(QRect(QPoint(), display), ratio).size(), QImage::Format_RGB32);
    out.fill(Qt::black);
    QPainter painter(&out);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(out.width() / qreal(display.width()), out.height() / qreal(display.height()));
    const QSizeF size = picture.size();
    const double wide = display.width() / size.width();
    const double high = display.height() / size.height();
    const auto centred = [&](double factor) {
        const QSizeF scaled = size * factor;
        return QRectF(QPointF((display.width() - scaled.width()) / 2,
                              (display.height() - scaled.height()) / 2),
                      scaled);
    };
    switch (fill) {
    case Fill::zoom:
    case Fill::span:
        painter.drawImage(centred(std::max(wide, high)), picture);
        break;
    case Fill::fit:
        painter.drawImage(centred(std::min(wide, high)), picture);
        break;
    case Fill::stretch:
        painter.drawImage(QRectF(QPointF(0, 0), QSizeF(display)), picture);
        break;
    case Fill::center:
        painter.drawImage(centred(1.0), picture);
        break;
    case Fill::tile:
        painter.fillRect(QRect(QPoint(), display), QBrush(picture));
        break;
    }
    return out;
}

qreal WallpaperBackdrop::detailRatio(const QSize& picture, Fill fill, const QSize& display,
                                     qreal devicePixelRatio) {
    if (picture.isEmpty() || display.isEmpty() || !scales(fill)) {
        return 1;
    }
    // The picture's own pixels per logical pixel once fitted.
    const qreal wide = picture.width() / qreal(display.width());
    const qreal high = picture.height() / qreal(display.height());
    const qreal detail =
        fill == Fill::zoom || fill == Fill::span ? std::min(wide, high) : std::max(wide, high);
    return std::clamp(detail, qreal(1), std::max<qreal>(devicePixelRatio, 1));
}

QImage WallpaperBackdrop::blurred(const QImage& sharp, qreal reduction, int radius) {
    QImage small = sharp
                       .scaled(std::max(1, static_cast<int>(sharp.width() / reduction)),
                               std::max(1, static_cast<int>(sharp.height() / reduction)),
                               Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_RGB32);
    // Three box passes come close to a Gaussian.
    for (int pass = 0; pass < 3; ++pass) {
        BoxBlur::pass(small, radius, Qt::Horizontal, BoxBlur::Channels::colour);
        BoxBlur::pass(small, radius, Qt::Vertical, BoxBlur::Channels::colour);
    }
    return small;
}

} // namespace tw
