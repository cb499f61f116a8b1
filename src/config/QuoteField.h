// A share's symbol, a coin or a list of currencies, typed and then checked against the service
// before the tile keeps it: under the field, the name and price found, or why there is none
// ("That symbol is not known…"), and the tile keeps what it had. While the person types, a moment
// after the last key, the matches the service suggests show under it, each picked with a click.
#pragma once

#include "market/QuoteCheck.h"
#include "market/QuoteSuggestion.h"
#include "model/WidgetInstance.h"
#include "platform/ScheduledTask.h"

#include <QWidget>

#include <chrono>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace tw {

class Scheduler;

class QuoteField final : public QWidget {
    Q_OBJECT
public:
    using Checked = std::function<void(const QuoteCheck&)>;
    // Asks the service about `text` as the option of the tile with these settings; the answer
    // never comes once `requester` is gone.
    using Check = std::function<void(const QString& text, const WidgetSettings& settings,
                                     const QObject* requester, Checked done)>;

    using Found =
        std::function<void(const QList<QuoteSuggestion>& matches, const QString& failure)>;
    // Asks what `text` may mean; the answer never comes once `requester` is gone.
    using Suggest = std::function<void(const QString& text, const QObject* requester, Found done)>;

    // The pause after the last key before the matches are asked for.
    static constexpr std::chrono::milliseconds debounce{300};

    // Without `check` what is typed is kept as it is, and the field says it was not checked;
    // without `suggest` no matches show; without `scheduler` each key asks at once.
    explicit QuoteField(Check check, Suggest suggest = {}, Scheduler* scheduler = nullptr,
                        QWidget* parent = nullptr);

    QLineEdit* field() const { return m_field; }
    // What the last check came to; empty before one.
    QString status() const;
    // The matches shown now, in their order, each a button that picks it.
    QList<QPushButton*> suggestions() const;

    // Shows the value kept and the tile's settings the next check goes with, without telling
    // anyone; a check under way for other text is forgotten.
    void show(const QString& value, const WidgetSettings& settings);

Q_SIGNALS:
    // The service knows it: keep this value.
    void chosen(const QString& value);

private:
    void typed();
    void answer(int generation, const QuoteCheck& check);
    void edited(const QString& text);
    void suggestFor(const QString& text);
    void showSuggestions(const QList<QuoteSuggestion>& matches, const QString& failure);
    void clearSuggestions();

    Check m_check;
    Suggest m_suggest;
    Scheduler* m_scheduler;
    QLineEdit* m_field;
    QLabel* m_status;
    QWidget* m_matches;
    QVBoxLayout* m_matchesLayout;
    ScheduledTask m_pending;
    // Only the matches of the latest text are shown.
    int m_suggestGeneration = 0;
    QString m_kept;
    WidgetSettings m_settings;
    // Only the answer to the latest check is shown.
    int m_generation = 0;
};

} // namespace tw
