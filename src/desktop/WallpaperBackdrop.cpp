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

// Reads a picture no larger than needed to cover `display`; a null image when it can't.
QImage readPicture(const QString& file, DesktopPicture::Fill fill, const QSize& display) {
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() &&
        static_cast<qint64>(size.width()) * size.height() > WallpaperBackdrop::maxPixels) {
        qCWarning(lcBackdrop, "desktop picture %s is too large to read; tiles draw without it",
                  qUtf8Printable(file));
        return {};
    }
    const bool scales = fill != DesktopPicture::Fill::center && fill != DesktopPicture::Fill::tile;
    if (scales && size.isValid() && size.width() > 2 * display.width() &&
        size.height() > 2 * display.height()) {
        const double factor = std::max(double(display.width()) / size.width(),
                                       double(display.height()) / size.height());
        reader.setScaledSize((QSizeF(size) * factor * 1.5).toSize());
    }
    QImage picture = reader.read();
    if (picture.isNull()) {
        qCWarning(lcBackdrop, "desktop picture %s is not readable (%s); tiles draw without it",
                  qUtf8Printable(file), qUtf8Printable(reader.errorString()));
    }
    return picture;
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
    const auto setting =
        m_picture != nullptr ? m_picture->setting(name) : std::optional<DesktopPicture::Setting>();
    QImage root;
    if ((!setting || setting->file.isEmpty()) && m_picture != nullptr) {
        const QImage whole = m_picture->rootPicture();
        const qreal ratio = screen->devicePixelRatio();
        root = whole.copy(QRect(geometry.topLeft() * ratio, geometry.size() * ratio));
    }
    if ((!setting || setting->file.isEmpty()) && root.isNull()) {
        if (m_screens.remove(name) > 0) {
            Q_EMIT changed();
        }
        return;
    }
    if (setting && m_screens.value(name).pictures.identity == setting->identity &&
        m_screens.value(name).geometry == geometry) {
        return;
    }
    const QString identity =
        setting ? setting->identity : QStringLiteral("root|%1").arg(root.cacheKey());
    const int generation = m_generation;
    m_pool.start([this, name, geometry, setting, root, identity, generation] {
        const QSize display = geometry.size();
        const QImage picture =
            setting && !setting->file.isEmpty()
                ? fitted(readPicture(setting->file, setting->fill, display), setting->fill, display)
                : root.scaled(display, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_RGB32);
        GlassBackdrop pictures{
            .sharp = picture,
            .frosted = picture.isNull() ? QImage() : blurred(picture, frostedReduction, 3),
            .clear = picture.isNull() ? QImage() : blurred(picture, clearReduction, 2),
            .display = QSizeF(display),
            .panel = {},
            .identity =
                identity + QStringLiteral("|%1x%2").arg(display.width()).arg(display.height()),
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
    const Screen* best = nullptr;
    qint64 bestArea = -1;
    for (const Screen& screen : m_screens) {
        const QRect shared = screen.geometry.intersected(rect);
        const qint64 area = static_cast<qint64>(shared.width()) * shared.height();
        if (area > bestArea) {
            best = &screen;
            bestArea = area;
        }
    }
    if (best == nullptr) {
        return std::nullopt;
    }
    GlassBackdrop backdrop = best->pictures;
    backdrop.panel = QRectF(rect.translated(-best->geometry.topLeft()));
    return backdrop;
}

QImage WallpaperBackdrop::fitted(const QImage& picture, DesktopPicture::Fill fill,
                                 const QSize& display) {
    if (picture.isNull() || display.isEmpty()) {
        return {};
    }
    QImage out(display, QImage::Format_RGB32);
    out.fill(Qt::black);
    QPainter painter(&out);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
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
    case DesktopPicture::Fill::zoom:
    case DesktopPicture::Fill::span:
        painter.drawImage(centred(std::max(wide, high)), picture);
        break;
    case DesktopPicture::Fill::fit:
        painter.drawImage(centred(std::min(wide, high)), picture);
        break;
    case DesktopPicture::Fill::stretch:
        painter.drawImage(QRectF(QPointF(0, 0), QSizeF(display)), picture);
        break;
    case DesktopPicture::Fill::center:
        painter.drawImage(centred(1.0), picture);
        break;
    case DesktopPicture::Fill::tile:
        painter.fillRect(out.rect(), QBrush(picture));
        break;
    }
    return out;
}

QImage WallpaperBackdrop::blurred(const QImage& sharp, int reduction, int radius) {
    QImage small =
        sharp
            .scaled(std::max(1, sharp.width() / reduction), std::max(1, sharp.height() / reduction),
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
