#include "config/SettingsPage.h"

#include "config/SettingsCard.h"
#include "text/L.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tw {

SettingsPage::SettingsPage(const QString& title, QWidget* parent)
    : QScrollArea(parent)
    , m_column(nullptr)
    , m_report(nullptr) {
    setObjectName(QStringLiteral("page"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* body = new QWidget(this);
    body->setObjectName(QStringLiteral("page"));
    m_column = new QVBoxLayout(body);
    m_column->setContentsMargins(32, 26, 32, 32);
    m_column->setSpacing(6);
    auto* heading = new QLabel(title, body);
    heading->setObjectName(QStringLiteral("title"));
    m_column->addWidget(heading);
    m_report = new QLabel(body);
    m_report->setObjectName(QStringLiteral("error"));
    m_report->setWordWrap(true);
    m_report->hide();
    m_column->addWidget(m_report);
    m_column->addStretch(1);
    setWidget(body);
}

SettingsCard* SettingsPage::addGroup(const QString& page, const QString& heading) {
    auto* group = new QWidget(widget());
    auto* layout = new QVBoxLayout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(sectionHeading(heading, group));
    auto* card = new SettingsCard(group);
    layout->addWidget(card);
    m_column->insertWidget(m_column->count() - 1, group);
    m_groups.insert(page, group);
    return card;
}

void SettingsPage::addWidget(QWidget* widget) {
    m_column->insertWidget(m_column->count() - 1, widget);
}

void SettingsPage::addPage(const QString& page, QWidget* group) {
    m_groups.insert(page, group);
}

bool SettingsPage::showPage(const QString& page) {
    QWidget* group = m_groups.value(page);
    if (!group) {
        return false;
    }
    m_shownPage = page;
    widget()->adjustSize();
    verticalScrollBar()->setValue(group->mapTo(widget(), QPoint(0, 0)).y() - 12);
    // The chosen one of a set of choices, else the first control of the group that takes focus.
    QWidget* first = nullptr;
    for (QWidget* next = group->nextInFocusChain(); next && group->isAncestorOf(next);
         next = next->nextInFocusChain()) {
        if (!(next->focusPolicy() & Qt::TabFocus) || !next->isEnabled()) {
            continue;
        }
        if (auto* button = qobject_cast<QAbstractButton*>(next);
            button && button->isChecked() && (button->autoExclusive() || button->group())) {
            first = next;
            break;
        }
        first = first ? first : next;
    }
    if (first) {
        first->setFocus(Qt::OtherFocusReason);
    }
    return true;
}

void SettingsPage::reportNotSaved(const QString& what) {
    reportProblem(L("settings.notSaved",
                    QStringLiteral("Not saved: %1. The preferences file cannot be written; the "
                                   "setting keeps its old value."))
                      .arg(what));
}

void SettingsPage::reportProblem(const QString& sentence) {
    m_report->setText(sentence);
    m_report->show();
}

void SettingsPage::clearReport() {
    m_report->hide();
    m_report->clear();
}

QString SettingsPage::report() const {
    return m_report->text();
}

} // namespace tw
