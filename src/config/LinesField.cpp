#include "config/LinesField.h"

namespace tw {

LinesField::LinesField(QWidget* parent)
    : QPlainTextEdit(parent) {
    setMinimumWidth(260);
    setFixedHeight(120);
    setTabChangesFocus(true);
}

QString LinesField::value() const {
    return toPlainText().left(longest);
}

void LinesField::show(const QString& value) {
    if (!hasFocus() && value != toPlainText()) {
        setPlainText(value);
    }
}

void LinesField::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    Q_EMIT editingFinished(value());
}

} // namespace tw
