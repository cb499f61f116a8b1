#include "config/LayoutFilesCard.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "config/SwitchButton.h"
#include "platform/Defaults.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

QPushButton* button(const QString& text, QWidget* parent) {
    auto* made = new QPushButton(text, parent);
    made->setAutoDefault(false);
    return made;
}

} // namespace

LayoutFilesCard::LayoutFilesCard(ConfigContext& context, QWidget* parent)
    : QWidget(parent)
    , m_actions(context) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    // A heading and its card, as the page's own groups stand.
    const auto group = [this, layout](const QString& heading, QWidget*& made) {
        made = new QWidget(this);
        auto* column = new QVBoxLayout(made);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(4);
        column->addWidget(sectionHeading(heading, made));
        auto* card = new SettingsCard(made);
        column->addWidget(card);
        layout->addWidget(made);
        return card;
    };

    SettingsCard* backups = group(L("backup.title", QStringLiteral("Backups")), m_backupsGroup);
    auto* automatic = new SwitchButton();
    automatic->setChecked(context.defaults.value(AutoBackup::enabledKey, true).toBool());
    connect(automatic, &SwitchButton::toggled, this,
            [&context](bool on) { context.defaults.setValue(AutoBackup::enabledKey, on); });
    backups->addRow(L("backup.auto.title", QStringLiteral("Back up automatically")),
                    L("backup.auto.note",
                      QStringLiteral("About once a day, and only when something changed. The "
                                     "last five are kept on this Mac. Wallpaper pictures are not "
                                     "part of it.")),
                    automatic);
    auto* now = button(L("backup.now", QStringLiteral("Back Up Now")), this);
    connect(now, &QPushButton::clicked, this, [this] {
        AutoBackup backup = m_actions.autoBackup();
        backup.runIfDue(m_actions.now(), AutoBackup::Force::yes);
        refresh();
    });
    backups->addRow(L("backup.now.title", QStringLiteral("Back up the current setup")), QString(),
                    now);
    m_list = new QWidget(this);
    m_listLayout = new QVBoxLayout(m_list);
    m_listLayout->setContentsMargins(0, 0, 0, 0);
    backups->addWide(m_list);

    SettingsCard* files = group(L("backup.files", QStringLiteral("Files")), m_filesGroup);
    auto* fileButtons = new QWidget();
    auto* fileRow = new QHBoxLayout(fileButtons);
    fileRow->setContentsMargins(0, 0, 0, 0);
    auto* exporting = button(L("backup.export", QStringLiteral("Export…")), fileButtons);
    auto* importing = button(L("backup.import", QStringLiteral("Import…")), fileButtons);
    fileRow->addWidget(exporting);
    fileRow->addWidget(importing);
    connect(exporting, &QPushButton::clicked, this, [this] { m_actions.exportLayout(window()); });
    connect(importing, &QPushButton::clicked, this, [this] { m_actions.importLayout(window()); });
    files->addRow(L("backup.file.title", QStringLiteral("Your whole setup in one file")),
                  L("backup.export.message",
                    QStringLiteral("Saves every widget, its settings and position, the theme and "
                                   "your preferences.")),
                  fileButtons);
    auto* boardButtons = new QWidget();
    auto* boardRow = new QHBoxLayout(boardButtons);
    boardRow->setContentsMargins(0, 0, 0, 0);
    auto* saving = button(L("share.save", QStringLiteral("Save Board…")), boardButtons);
    auto* opening = button(L("share.open", QStringLiteral("Open Board…")), boardButtons);
    boardRow->addWidget(saving);
    boardRow->addWidget(opening);
    connect(saving, &QPushButton::clicked, this, [this] { m_actions.saveBoard(window()); });
    connect(opening, &QPushButton::clicked, this, [this] { m_actions.openBoard(window()); });
    files->addRow(L("share.title", QStringLiteral("Share a board")),
                  L("share.save.message",
                    QStringLiteral("Saves the widgets, their arrangement and settings, and the "
                                   "look. Notes, folders, places and other personal content are "
                                   "left out.")),
                  boardButtons);
    refresh();
}

void LayoutFilesCard::refresh() {
    while (QLayoutItem* item = m_listLayout->takeAt(0)) {
        if (QWidget* row = item->widget()) {
            // A row's own button may be what asked for this.
            row->hide();
            row->deleteLater();
        }
        delete item;
    }
    m_entries = m_actions.autoBackup().entries();
    if (m_entries.isEmpty()) {
        m_listLayout->addWidget(
            caption(L("backup.none", QStringLiteral("No backups yet.")), m_list));
        return;
    }
    const QLocale locale;
    for (const AutoBackup::Entry& entry : std::as_const(m_entries)) {
        auto* row = new QWidget(m_list);
        auto* line = new QHBoxLayout(row);
        line->setContentsMargins(0, 2, 0, 2);
        auto* when =
            new QLabel(locale.toString(entry.date.toLocalTime(), QLocale::ShortFormat), row);
        auto* count = caption(
            L("backup.entry.widgets", QStringLiteral("%1 widgets")).arg(entry.widgets), row);
        auto* restore = button(L("backup.restore", QStringLiteral("Restore…")), row);
        line->addWidget(when);
        line->addWidget(count);
        line->addStretch();
        line->addWidget(restore);
        connect(restore, &QPushButton::clicked, this, [this, entry] {
            m_actions.restore(entry, window());
            refresh();
        });
        m_listLayout->addWidget(row);
    }
}

} // namespace tw
