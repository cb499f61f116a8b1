#include "config/SettingsCard.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tw {

SettingsCard::SettingsCard(QWidget* parent)
    : QFrame(parent)
    , m_layout(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("card"));
    m_layout->setContentsMargins(16, 4, 16, 4);
    m_layout->setSpacing(0);
}

void SettingsCard::addSeparatorIfNeeded() {
    if (m_layout->count() == 0) {
        return;
    }
    auto* line = new QFrame(this);
    line->setObjectName(QStringLiteral("rowSeparator"));
    m_layout->addWidget(line);
}

QWidget* SettingsCard::addRow(const QString& title, const QString& text, QWidget* control) {
    addSeparatorIfNeeded();
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 10, 0, 10);
    layout->setSpacing(16);
    auto* words = new QVBoxLayout();
    words->setSpacing(2);
    auto* heading = new QLabel(title, row);
    heading->setWordWrap(true);
    words->addWidget(heading);
    if (!text.isEmpty()) {
        words->addWidget(caption(text, row));
    }
    layout->addLayout(words, 1);
    if (control) {
        control->setParent(row);
        layout->addWidget(control, 0, Qt::AlignRight | Qt::AlignVCenter);
        if (control->accessibleName().isEmpty()) {
            control->setAccessibleName(title);
        }
    }
    m_layout->addWidget(row);
    return row;
}

void SettingsCard::addLine(QWidget* row, QWidget* line) {
    auto* words = qobject_cast<QVBoxLayout*>(row->layout()->itemAt(0)->layout());
    Q_ASSERT_X(words != nullptr, "SettingsCard::addLine", "the row comes from addRow");
    line->setParent(row);
    words->addWidget(line);
}

void SettingsCard::addWide(QWidget* widget) {
    addSeparatorIfNeeded();
    widget->setParent(this);
    widget->setContentsMargins(0, 10, 0, 10);
    m_layout->addWidget(widget);
}

QLabel* sectionHeading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text.toUpper(), parent);
    label->setObjectName(QStringLiteral("sectionHeading"));
    return label;
}

QLabel* caption(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QStringLiteral("caption"));
    label->setWordWrap(true);
    return label;
}

} // namespace tw
