// A share's symbol, a coin or a list of currencies, typed and then checked against the service
// before the tile keeps it: under the field, the name and price found, or why there is none
// ("That symbol is not known…"), and the tile keeps what it had.
#pragma once

#include "market/QuoteCheck.h"
#include "model/WidgetInstance.h"

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;

namespace tw {

class QuoteField final : public QWidget {
    Q_OBJECT
public:
    using Checked = std::function<void(const QuoteCheck&)>;
    // Asks the service about `text` as the option of the tile with these settings; the answer
    // never comes once `requester` is gone.
    using Check = std::function<void(const QString& text, const WidgetSettings& settings,
                                     const QObject* requester, Checked done)>;

    // Without `check` what is typed is kept as it is, and the field says it was not checked.
    explicit QuoteField(Check check, QWidget* parent = nullptr);

    QLineEdit* field() const { return m_field; }
    // What the last check came to; empty before one.
    QString status() const;

    // Shows the value kept and the tile's settings the next check goes with, without telling
    // anyone; a check under way for other text is forgotten.
    void show(const QString& value, const WidgetSettings& settings);

Q_SIGNALS:
    // The service knows it: keep this value.
    void chosen(const QString& value);

private:
    void typed();
    void answer(int generation, const QuoteCheck& check);

    Check m_check;
    QLineEdit* m_field;
    QLabel* m_status;
    QString m_kept;
    WidgetSettings m_settings;
    // Only the answer to the latest check is shown.
    int m_generation = 0;
};

} // namespace tw
