#include "workspace/ClipboardService.h"

#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/Scheduler.h"
#include "text/L.h"
#include "workspace/ClipboardFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QMimeData>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcClipboard, "Clipboard")

constexpr std::chrono::milliseconds kSaveDelay{1000};

QImage readPng(const QString& path) {
    const DataFile::Contents file = DataFile::read(path);
    if (file.status != DataFile::Status::regular) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(file.bytes);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (!size.isValid() ||
        qint64(size.width()) * size.height() > ClipboardHistory::largestImagePixels * 2) {
        return {};
    }
    return reader.read();
}

} // namespace

ClipboardService::ClipboardService(Clipboard& clipboard, const Clock& clock, Scheduler& scheduler,
                                   const QString& directory, QObject* parent)
    : QObject(parent)
    , m_clipboard(clipboard)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_directory(directory) {}

ClipboardService::~ClipboardService() {
    if (m_save.isActive()) {
        save();
    }
}

QString ClipboardService::filePath() const {
    return QDir(m_directory).filePath(QStringLiteral("clipboard.json"));
}

QString ClipboardService::imageFolder() const {
    return QDir(m_directory).filePath(QStringLiteral("clipboard"));
}

void ClipboardService::setWatching(bool watching) {
    if (watching == m_watching) {
        return;
    }
    m_watching = watching;
    if (watching) {
        connect(&m_clipboard, &Clipboard::changed, this, &ClipboardService::take);
    } else {
        disconnect(&m_clipboard, &Clipboard::changed, this, &ClipboardService::take);
    }
}

void ClipboardService::setKeeping(bool keeping) {
    if (keeping == m_keeping) {
        return;
    }
    m_keeping = keeping;
    if (keeping) {
        load();
        save();
    } else {
        forget();
    }
    Q_EMIT changed();
}

void ClipboardService::setImages(ClipboardHistory::Images images) {
    m_images = images;
    if (images == ClipboardHistory::Images::skipped && m_history.dropImages()) {
        edited();
    }
}

void ClipboardService::take() {
    const auto clipping =
        ClipboardHistory::clippingOf(m_clipboard.contents(), m_clock.now(), m_images);
    if (clipping && m_history.add(*clipping)) {
        edited();
    }
}

bool ClipboardService::copyBack(qsizetype index) {
    if (index < 0 || index >= m_history.items().size()) {
        return false;
    }
    const Clipping& clipping = m_history.items()[index];
    auto* data = new QMimeData();
    if (clipping.kind == Clipping::Kind::image) {
        data->setImageData(clipping.image);
    } else {
        data->setText(clipping.text);
    }
    // The clipboard's change brings it to the top of the history with the time of now.
    m_clipboard.setContents(data);
    if (!m_watching) {
        take();
    }
    return true;
}

void ClipboardService::remove(qsizetype index) {
    if (m_history.remove(index)) {
        edited();
    }
}

void ClipboardService::clear() {
    if (m_history.clear()) {
        edited();
    }
}

void ClipboardService::edited() {
    if (m_keeping) {
        m_save = m_scheduler.singleShot(kSaveDelay, std::chrono::milliseconds(200), this,
                                        [this] { save(); });
    }
    Q_EMIT changed();
}

void ClipboardService::load() {
    const QList<Clipping> known = m_history.items();
    QList<Clipping> kept;
    DataFile::load(filePath(), m_clock.now(), [&kept](const QByteArray& bytes) {
        if (!QJsonDocument::fromJson(bytes).isObject()) {
            return false;
        }
        kept = ClipboardFile::decode(bytes);
        return true;
    });
    QList<Clipping> all = known;
    for (Clipping& clipping : kept) {
        if (clipping.kind == Clipping::Kind::image) {
            clipping.image =
                readPng(QDir(imageFolder()).filePath(ClipboardFile::imageName(clipping)));
            if (clipping.image.isNull()) {
                continue;
            }
        }
        const bool twice = std::any_of(all.cbegin(), all.cend(), [&clipping](const Clipping& c) {
            return c.digest == clipping.digest;
        });
        if (!twice) {
            all.append(clipping);
        }
    }
    m_history.setItems(all);
}

void ClipboardService::save() {
    m_save.cancel();
    if (!m_keeping) {
        return;
    }
    QDir folder(imageFolder());
    QStringList wanted;
    QString failure;
    for (const Clipping& clipping : m_history.items()) {
        if (clipping.kind != Clipping::Kind::image) {
            continue;
        }
        const QString name = ClipboardFile::imageName(clipping);
        wanted.append(name);
        if (folder.exists(name)) {
            continue;
        }
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        if (!folder.mkpath(QStringLiteral(".")) || !clipping.image.save(&buffer, "PNG")) {
            failure = QStringLiteral("picture not encoded");
            continue;
        }
        if (const auto written = AtomicFile::write(folder.filePath(name), png); !written) {
            failure = written.error;
        }
    }
    if (const auto written =
            AtomicFile::write(filePath(), ClipboardFile::encode(m_history.items()));
        !written) {
        failure = written.error;
    }
    // Pictures no longer in the history go; only names this service gives count.
    for (const QString& name : folder.entryList({QStringLiteral("*.png")}, QDir::Files)) {
        if (!wanted.contains(name) && name.size() == 44) {
            folder.remove(name);
        }
    }
    const QString problem =
        failure.isEmpty()
            ? QString()
            : L("clipboard.notKept", QStringLiteral("The history could not be kept on disk"));
    if (!failure.isEmpty()) {
        qCWarning(lcClipboard) << "History not written:" << failure;
    }
    if (problem != m_problem) {
        m_problem = problem;
        Q_EMIT changed();
    }
}

void ClipboardService::forget() {
    m_save.cancel();
    QFile::remove(filePath());
    QDir folder(imageFolder());
    for (const QString& name : folder.entryList({QStringLiteral("*.png")}, QDir::Files)) {
        if (name.size() == 44) {
            folder.remove(name);
        }
    }
    QDir().rmdir(imageFolder());
    m_problem.clear();
}

} // namespace tw
