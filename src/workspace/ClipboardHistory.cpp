#include "workspace/ClipboardHistory.h"

#include "platform/Clipboard.h"

#include <QMimeData>

#include <cmath>

namespace tw {

namespace {

// The marks password managers put beside a secret they copy, so that histories leave it out.
bool markedSecret(const QMimeData& data, const QString& format, const QByteArray& value) {
    return data.hasFormat(format) && data.data(format).trimmed() == value;
}

QImage keptSize(QImage image) {
    const qint64 pixels = qint64(image.width()) * image.height();
    if (pixels > ClipboardHistory::largestImagePixels) {
        const double factor =
            std::sqrt(double(ClipboardHistory::largestImagePixels) / double(pixels));
        image = image.scaled(std::max(1, int(image.width() * factor)),
                             std::max(1, int(image.height() * factor)), Qt::KeepAspectRatio,
                             Qt::SmoothTransformation);
    }
    return image;
}

} // namespace

bool ClipboardHistory::isSecret(const QMimeData& data) {
    return markedSecret(data, Clipboard::secretHint, "secret") ||
           data.hasFormat(QStringLiteral("org.nspasteboard.ConcealedType")) ||
           data.hasFormat(QStringLiteral("application/x-nspasteboard-concealed-type"));
}

std::optional<Clipping> ClipboardHistory::clippingOf(const QMimeData* data, const QDateTime& at,
                                                     Images images) {
    if (data == nullptr || isSecret(*data)) {
        return std::nullopt;
    }
    if (data->hasImage()) {
        if (images == Images::skipped) {
            return std::nullopt;
        }
        const QImage image = qvariant_cast<QImage>(data->imageData());
        if (!image.isNull()) {
            return Clipping::ofImage(keptSize(image), at);
        }
    }
    if (!data->hasText()) {
        return std::nullopt;
    }
    QString text = data->text();
    if (text.trimmed().isEmpty()) {
        return std::nullopt;
    }
    if (text.size() > longestText) {
        text.truncate(longestText);
        if (text.back().isHighSurrogate()) {
            text.chop(1);
        }
    }
    return Clipping::ofText(text, at);
}

bool ClipboardHistory::add(Clipping clipping) {
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        if (m_items[i].kind == clipping.kind && m_items[i].digest == clipping.digest) {
            if (i == 0 && m_items[0].copiedAt == clipping.copiedAt) {
                return false;
            }
            m_items.removeAt(i);
            break;
        }
    }
    m_items.prepend(std::move(clipping));
    trim();
    return true;
}

bool ClipboardHistory::remove(qsizetype index) {
    if (index < 0 || index >= m_items.size()) {
        return false;
    }
    m_items.removeAt(index);
    return true;
}

bool ClipboardHistory::clear() {
    const bool had = !m_items.isEmpty();
    m_items.clear();
    return had;
}

bool ClipboardHistory::dropImages() {
    return m_items.removeIf([](const Clipping& c) { return c.kind == Clipping::Kind::image; }) > 0;
}

void ClipboardHistory::setItems(QList<Clipping> items) {
    m_items = std::move(items);
    trim();
}

void ClipboardHistory::trim() {
    if (m_items.size() > most) {
        m_items.resize(most);
    }
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < m_items.size();) {
        bytes += m_items[i].imageBytes();
        // The newest picture stays whatever its size; older ones go once the sum is over.
        if (i > 0 && m_items[i].kind == Clipping::Kind::image && bytes > mostImageBytes) {
            bytes -= m_items[i].imageBytes();
            m_items.removeAt(i);
        } else {
            ++i;
        }
    }
}

} // namespace tw
