// The layout file, the backups and boards in the "Layouts" section: the backups by date with a
// way back to each, the layout file out and in, a board saved and opened.
#pragma once

#include "backup/AutoBackup.h"
#include "config/LayoutFileActions.h"

#include <QWidget>

class QVBoxLayout;

namespace tw {

class SettingsCard;

class LayoutFilesCard final : public QWidget {
    Q_OBJECT
public:
    explicit LayoutFilesCard(ConfigContext& context, QWidget* parent = nullptr);

    // Lists the backups again, newest first.
    void refresh();
    // The backups as listed.
    const QList<AutoBackup::Entry>& entries() const { return m_entries; }
    // The two groups under their headings, for a page to scroll to.
    QWidget* backupsGroup() const { return m_backupsGroup; }
    QWidget* filesGroup() const { return m_filesGroup; }

private:
    LayoutFileActions m_actions;
    QList<AutoBackup::Entry> m_entries;
    QWidget* m_backupsGroup = nullptr;
    QWidget* m_filesGroup = nullptr;
    QWidget* m_list;
    QVBoxLayout* m_listLayout;
};

} // namespace tw
