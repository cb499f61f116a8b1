// A few lines of text typed on a settings page (a list of one's own quotes), taken when the
// person leaves the field, and held to a length that a settings value can carry.
#pragma once

#include <QPlainTextEdit>

namespace tw {

class LinesField final : public QPlainTextEdit {
    Q_OBJECT

public:
    static constexpr int longest = 20000;

    explicit LinesField(QWidget* parent = nullptr);

    // The text as it would be taken now: cut to `longest`.
    QString value() const;
    void show(const QString& value);

Q_SIGNALS:
    void editingFinished(const QString& value);

protected:
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace tw
