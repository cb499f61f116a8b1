// The person's ways to the layout file, the backups and boards: the panels that choose a file,
// the confirmations, and a backup before anything replaces the desktop.
#pragma once

#include "backup/AutoBackup.h"
#include "backup/Board.h"
#include "backup/LayoutBackup.h"

#include <QDateTime>
#include <QImage>
#include <QString>

class QWidget;

namespace tw {

struct ConfigContext;

class LayoutFileActions {
public:
    explicit LayoutFileActions(ConfigContext& context);

    LayoutBackup::Setup setup() const;
    AutoBackup autoBackup() const;
    QDateTime now() const;

    // Files this program opens besides its widget files.
    static bool opens(const QString& path);
    // A layout file or a board, by its extension.
    void openFile(const QString& path, QWidget* parent);

    void exportLayout(QWidget* parent);
    void importLayout(QWidget* parent);
    // Asks, backs the current setup up, applies the file and restarts; false when nothing changed.
    bool openLayout(const QString& path, QWidget* parent);
    bool restore(const AutoBackup::Entry& entry, QWidget* parent);

    void saveBoard(QWidget* parent);
    void openBoard(QWidget* parent);
    // The board's picture and the choice; a replacement backs the setup up first, and both can
    // be undone as one change of the desktop.
    void offerBoard(const QString& path, QWidget* parent);
    // What a board's picture stands on.
    static QImage backdrop();

private:
    // Backs up, applies and restarts; the words for a person when it failed.
    std::optional<QString> replaceSetup(const LayoutBackup::Snapshot& snapshot);

    ConfigContext& m_context;
};

} // namespace tw
