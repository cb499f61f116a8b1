#include "config/CalendarSourcesView.h"

#include "config/SettingsCard.h"
#include "desk/CalendarSetup.h"
#include "platform/Clock.h"
#include "text/L.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {
namespace {

// One kept folder or address with its Remove button.
QWidget* entry(const QString& text, const std::function<void()>& remove) {
    auto* row = new QWidget();
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    layout->addWidget(label, 1);
    auto* button = new QPushButton(L("calendar.sources.remove", QStringLiteral("Remove")));
    QObject::connect(button, &QPushButton::clicked, row, remove);
    layout->addWidget(button);
    return row;
}

void clear(QVBoxLayout* layout) {
    while (QLayoutItem* item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

} // namespace

CalendarSourcesView::CalendarSourcesView(CalendarSetup& setup, const Clock& clock, Found found,
                                         PickFolder pickFolder, bool subscriptions, QWidget* parent)
    : QWidget(parent)
    , m_setup(setup)
    , m_clock(clock)
    , m_found(std::move(found))
    , m_pickFolder(std::move(pickFolder))
    , m_foundText(caption(QString()))
    , m_folders(new QVBoxLayout())
    , m_addFolder(new QPushButton(L("calendar.sources.addFolder", QStringLiteral("Add Folder…"))))
    , m_status(caption(QString())) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_foundText);
    layout->addLayout(m_folders);
    auto* folderRow = new QHBoxLayout();
    folderRow->addWidget(m_addFolder);
    folderRow->addStretch(1);
    layout->addLayout(folderRow);
    connect(m_addFolder, &QPushButton::clicked, this, &CalendarSourcesView::addFolder);
    if (subscriptions) {
        layout->addWidget(
            sectionHeading(L("calendar.sources.subscriptions", QStringLiteral("Subscriptions"))));
        m_addresses = new QVBoxLayout();
        layout->addLayout(m_addresses);
        auto* addRow = new QHBoxLayout();
        m_address = new QLineEdit();
        m_address->setMaxLength(2048);
        m_address->setPlaceholderText(
            L("calendar.subscribe.placeholder", QStringLiteral("webcal:// or https:// address")));
        m_subscribe = new QPushButton(L("calendar.subscribe", QStringLiteral("Subscribe")));
        addRow->addWidget(m_address, 1);
        addRow->addWidget(m_subscribe);
        layout->addLayout(addRow);
        connect(m_subscribe, &QPushButton::clicked, this, &CalendarSourcesView::subscribe);
        connect(m_address, &QLineEdit::returnPressed, this, &CalendarSourcesView::subscribe);
    }
    m_status->setVisible(false);
    layout->addWidget(m_status);
    connect(&m_setup, &CalendarSetup::changed, this, &CalendarSourcesView::rebuild);
    rebuild();
}

QString CalendarSourcesView::status() const {
    return m_status->isHidden() ? QString() : m_status->text();
}

void CalendarSourcesView::rebuild() {
    const QStringList found = m_found ? m_found() : QStringList();
    m_foundText->setText(
        found.isEmpty()
            ? L("calendar.sources.none",
                QStringLiteral("Nothing found in the usual places. Add the folder a sync program "
                               "or another calendar keeps its calendars in."))
            : L("calendar.sources.found", QStringLiteral("Found: %1"))
                  .arg(QLocale().createSeparatedList(found)));
    clear(m_folders);
    for (const QString& folder : m_setup.folders()) {
        m_folders->addWidget(entry(folder, [this, folder] { m_setup.removeFolder(folder); }));
    }
    if (m_addresses != nullptr) {
        clear(m_addresses);
        for (const QString& address : m_setup.subscriptions()) {
            m_addresses->addWidget(
                entry(address, [this, address] { m_setup.unsubscribe(address); }));
        }
    }
}

void CalendarSourcesView::addFolder() {
    const QString folder =
        m_pickFolder ? m_pickFolder(this)
                     : QFileDialog::getExistingDirectory(
                           this, L("calendar.sources.pick", QStringLiteral("Calendar Folder")));
    if (!folder.isEmpty()) {
        say(m_setup.addFolder(folder));
    }
}

void CalendarSourcesView::subscribe() {
    const QString address = m_address->text().trimmed();
    if (address.isEmpty() || !m_subscribe->isEnabled()) {
        return;
    }
    m_subscribe->setEnabled(false);
    say(L("calendar.subscribe.checking", QStringLiteral("Checking the address…")));
    m_setup.subscribe(address, m_clock.now(),
                      [self = QPointer<CalendarSourcesView>(this)](const QString& problem) {
                          if (!self) {
                              return;
                          }
                          self->m_subscribe->setEnabled(true);
                          if (problem.isEmpty()) {
                              self->m_address->clear();
                          }
                          self->say(problem);
                      });
}

void CalendarSourcesView::say(const QString& sentence) {
    m_status->setText(sentence);
    m_status->setVisible(!sentence.isEmpty());
}

} // namespace tw
