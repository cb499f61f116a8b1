#include "config/QuoteField.h"

#include "config/SettingsCard.h"
#include "config/SuggestionButton.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

// Longer than any symbol or list of codes a tile shows.
constexpr int kMostText = 60;

} // namespace

QuoteField::QuoteField(Check check, Suggest suggest, Scheduler* scheduler, QWidget* parent)
    : QWidget(parent)
    , m_check(std::move(check))
    , m_suggest(std::move(suggest))
    , m_scheduler(scheduler)
    , m_field(new QLineEdit(this))
    , m_status(caption(QString(), this))
    , m_matches(new QWidget(this))
    , m_matchesLayout(new QVBoxLayout(m_matches)) {
    m_field->setMaxLength(kMostText);
    m_field->setMinimumWidth(220);
    m_status->setMaximumWidth(260);
    m_status->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(m_field);
    layout->addWidget(m_status);
    m_matchesLayout->setContentsMargins(0, 0, 0, 0);
    m_matchesLayout->setSpacing(2);
    layout->addWidget(m_matches);
    m_matches->hide();
    connect(m_field, &QLineEdit::editingFinished, this, &QuoteField::typed);
    if (m_suggest) {
        connect(m_field, &QLineEdit::textEdited, this, &QuoteField::edited);
    }
}

QList<QPushButton*> QuoteField::suggestions() const {
    QList<QPushButton*> buttons;
    for (int i = 0; i < m_matchesLayout->count(); ++i) {
        buttons.append(qobject_cast<QPushButton*>(m_matchesLayout->itemAt(i)->widget()));
    }
    return buttons;
}

void QuoteField::edited(const QString& text) {
    m_pending.cancel();
    ++m_suggestGeneration;
    const QString wanted = text.simplified();
    if (wanted.isEmpty()) {
        clearSuggestions();
        return;
    }
    if (m_scheduler == nullptr) {
        suggestFor(wanted);
        return;
    }
    m_pending = m_scheduler->singleShot(debounce, std::chrono::milliseconds(50), this,
                                        [this, wanted] { suggestFor(wanted); });
}

void QuoteField::suggestFor(const QString& text) {
    const int generation = ++m_suggestGeneration;
    m_suggest(text, this,
              [this, generation](const QList<QuoteSuggestion>& matches, const QString& failure) {
                  if (generation == m_suggestGeneration) {
                      showSuggestions(matches, failure);
                  }
              });
}

void QuoteField::showSuggestions(const QList<QuoteSuggestion>& matches, const QString& failure) {
    clearSuggestions();
    if (!failure.isEmpty()) {
        m_status->setText(
            L("quote.searchFailed", QStringLiteral("Couldn’t look for matches: %1")).arg(failure));
        m_status->show();
        return;
    }
    for (const QuoteSuggestion& match : matches) {
        QPushButton* button = suggestionButton(match.title, match.detail);
        // A click on a match must not end the editing, which would check the half-typed text.
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, value = match.value] {
            m_field->setText(value);
            clearSuggestions();
            typed();
        });
        m_matchesLayout->addWidget(button);
    }
    m_matches->setVisible(!matches.isEmpty());
}

void QuoteField::clearSuggestions() {
    while (QLayoutItem* item = m_matchesLayout->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    m_matches->hide();
}

QString QuoteField::status() const {
    return m_status->isHidden() ? QString() : m_status->text();
}

void QuoteField::show(const QString& value, const WidgetSettings& settings) {
    m_kept = value;
    m_settings = settings;
    if (!m_field->hasFocus()) {
        m_field->setText(value);
    }
}

void QuoteField::typed() {
    m_pending.cancel();
    ++m_suggestGeneration;
    clearSuggestions();
    const QString text = m_field->text().trimmed();
    if (text == m_kept) {
        return;
    }
    const int generation = ++m_generation;
    if (!m_check) {
        m_status->setText(L("quote.unchecked", QStringLiteral("Kept without a check.")));
        m_status->show();
        Q_EMIT chosen(text);
        return;
    }
    m_status->setText(L("quote.checking", QStringLiteral("Checking…")));
    m_status->show();
    m_check(text, m_settings, this,
            [this, generation](const QuoteCheck& check) { answer(generation, check); });
}

void QuoteField::answer(int generation, const QuoteCheck& check) {
    if (generation != m_generation) {
        return;
    }
    m_status->setText(check.text);
    m_status->setVisible(!check.text.isEmpty());
    if (check.ok) {
        m_kept = check.value;
        m_field->setText(check.value);
        Q_EMIT chosen(check.value);
    }
}

} // namespace tw
