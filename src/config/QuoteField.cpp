#include "config/QuoteField.h"

#include "config/SettingsCard.h"
#include "text/L.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace tw {

namespace {

// Longer than any symbol or list of codes a tile shows.
constexpr int kMostText = 60;

} // namespace

QuoteField::QuoteField(Check check, QWidget* parent)
    : QWidget(parent)
    , m_check(std::move(check))
    , m_field(new QLineEdit(this))
    , m_status(caption(QString(), this)) {
    m_field->setMaxLength(kMostText);
    m_field->setMinimumWidth(220);
    m_status->setMaximumWidth(260);
    m_status->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(m_field);
    layout->addWidget(m_status);
    connect(m_field, &QLineEdit::editingFinished, this, &QuoteField::typed);
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
