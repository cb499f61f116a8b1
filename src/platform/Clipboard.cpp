#include "platform/Clipboard.h"

#include <QMimeData>

namespace tw {

void Clipboard::copyText(const QString& text, Secrecy secrecy) {
    if (text.isEmpty()) {
        return;
    }
    auto* data = new QMimeData;
    data->setText(text);
    if (secrecy == Secrecy::secret) {
        data->setData(secretHint, QByteArrayLiteral("secret"));
    }
    setContents(data);
}

QString Clipboard::text() const {
    const QMimeData* data = contents();
    return data != nullptr && data->hasText() ? data->text() : QString();
}

} // namespace tw
