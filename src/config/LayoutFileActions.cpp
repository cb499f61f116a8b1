#include "config/LayoutFileActions.h"

#include "backup/LayoutShare.h"
#include "config/BoardOfferDialog.h"
#include "config/ConfigContext.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"
#include "grid/GridStore.h"
#include "look/ThemeStore.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "text/L.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace tw {

Q_LOGGING_CATEGORY(lcLayoutFiles, "LayoutFiles")

namespace {

QString documentsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString withExtension(QString path, const QString& extension) {
    if (!path.endsWith(extension, Qt::CaseInsensitive)) {
        path += extension;
    }
    return path;
}

void tell(QWidget* parent, const QString& title, const QString& words) {
    QMessageBox::warning(parent, title, words);
}

// Asks before the desktop is replaced; true only for the button that goes ahead.
bool confirmed(QWidget* parent, const QString& title, const QString& words,
               const QString& goAhead) {
    QMessageBox confirm(QMessageBox::Question, title, words, QMessageBox::NoButton, parent);
    QPushButton* ok = confirm.addButton(goAhead, QMessageBox::AcceptRole);
    confirm.addButton(L("common.cancel", QStringLiteral("Cancel")), QMessageBox::RejectRole);
    confirm.exec();
    return confirm.clickedButton() == ok;
}

} // namespace

LayoutFileActions::LayoutFileActions(ConfigContext& context)
    : m_context(context) {}

LayoutBackup::Setup LayoutFileActions::setup() const {
    return {.directory = m_context.dataDirectory,
            .defaults = m_context.defaults,
            .appVersion = m_context.version};
}

AutoBackup LayoutFileActions::autoBackup() const {
    return AutoBackup(setup());
}

QDateTime LayoutFileActions::now() const {
    return m_context.clock ? m_context.clock->now() : QDateTime::currentDateTime();
}

bool LayoutFileActions::opens(const QString& path) {
    return path.endsWith(LayoutBackup::extension, Qt::CaseInsensitive) ||
           path.endsWith(Board::extension, Qt::CaseInsensitive);
}

void LayoutFileActions::openFile(const QString& path, QWidget* parent) {
    if (path.endsWith(Board::extension, Qt::CaseInsensitive)) {
        offerBoard(path, parent);
    } else if (path.endsWith(LayoutBackup::extension, Qt::CaseInsensitive)) {
        openLayout(path, parent);
    }
}

void LayoutFileActions::exportLayout(QWidget* parent) {
    QFileDialog dialog(parent);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setWindowTitle(L("backup.export.message",
                            QStringLiteral("Saves every widget, its settings and position, the "
                                           "theme and your preferences.")));
    dialog.setNameFilter(QStringLiteral("Tarnwick Layout (*.twklayout)"));
    dialog.setDefaultSuffix(LayoutBackup::extension.mid(1));
    dialog.setDirectory(documentsFolder());
    dialog.selectFile(LayoutBackup::proposedName(now()) + LayoutBackup::extension);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString path = withExtension(dialog.selectedFiles().first(), LayoutBackup::extension);
    const QByteArray bytes = LayoutBackup::encode(
        LayoutBackup::makeSnapshot(setup(), now(), LayoutBackup::Wallpapers::included));
    if (const AtomicFile::Result written = AtomicFile::write(path, bytes); !written) {
        qCWarning(lcLayoutFiles, "layout export failed: %s", qUtf8Printable(written.error));
        tell(parent, L("backup.export.failed", QStringLiteral("The layout could not be saved.")),
             written.error);
        return;
    }
    qCInfo(lcLayoutFiles, "layout exported to %s", qUtf8Printable(path));
}

void LayoutFileActions::importLayout(QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(
        parent,
        L("backup.import.message", QStringLiteral("Choose a saved layout. Your current setup is "
                                                  "kept as a backup first.")),
        documentsFolder(), QStringLiteral("Tarnwick Layout (*.twklayout)"));
    if (!path.isEmpty()) {
        openLayout(path, parent);
    }
}

std::optional<QString> LayoutFileActions::replaceSetup(const LayoutBackup::Snapshot& snapshot) {
    if (!LayoutBackup::backUpCurrentSetup(setup(), now())) {
        return L("backup.import.failed", QStringLiteral("The layout could not be loaded."));
    }
    if (const std::optional<QString> failed = LayoutBackup::apply(snapshot, setup())) {
        qCWarning(lcLayoutFiles, "layout not applied: %s", qUtf8Printable(*failed));
        return L("backup.import.failed", QStringLiteral("The layout could not be loaded."));
    }
    if (m_context.relaunch) {
        m_context.relaunch();
    }
    return std::nullopt;
}

bool LayoutFileActions::openLayout(const QString& path, QWidget* parent) {
    const QString failedTitle =
        L("backup.import.failed", QStringLiteral("The layout could not be loaded."));
    const LayoutBackup::Decoded decoded = LayoutBackup::read(path);
    if (const auto* error = std::get_if<LayoutBackup::BackupError>(&decoded)) {
        tell(parent, failedTitle, LayoutBackup::message(*error));
        return false;
    }
    if (!confirmed(parent, L("backup.import.confirm.title", QStringLiteral("Load this layout?")),
                   L("backup.import.confirm.body",
                     QStringLiteral("All widgets and settings are replaced with the ones in "
                                    "the file, then Tarnwick restarts. Your current setup is "
                                    "saved to a backup first.")),
                   L("backup.import.confirm.ok", QStringLiteral("Load and Restart")))) {
        return false;
    }
    qCInfo(lcLayoutFiles, "layout imported from %s, relaunching", qUtf8Printable(path));
    if (const std::optional<QString> failed =
            replaceSetup(std::get<LayoutBackup::Snapshot>(decoded))) {
        tell(parent, failedTitle, *failed);
        return false;
    }
    return true;
}

bool LayoutFileActions::restore(const AutoBackup::Entry& entry, QWidget* parent) {
    if (!confirmed(parent, L("backup.restore.title", QStringLiteral("Restore this backup?")),
                   L("backup.restore.body",
                     QStringLiteral("Your widgets and settings are replaced by the ones from "
                                    "this backup, then Tarnwick restarts. The current setup "
                                    "is saved first.")),
                   L("backup.restore.ok", QStringLiteral("Restore and Restart")))) {
        return false;
    }
    AutoBackup backup = autoBackup();
    if (const std::optional<QString> failed = backup.restore(entry, now())) {
        tell(parent, L("backup.import.failed", QStringLiteral("The layout could not be loaded.")),
             *failed);
        return false;
    }
    if (m_context.relaunch) {
        m_context.relaunch();
    }
    return true;
}

void LayoutFileActions::saveBoard(QWidget* parent) {
    const QString failedTitle =
        L("share.save.failed", QStringLiteral("The board could not be saved."));
    if (!m_context.grid) {
        return;
    }
    const QRectF screen = m_context.desktopFrame ? m_context.desktopFrame() : QRectF();
    const Board::Decoded probe =
        LayoutShare::makeBoard({}, m_context.grid->layout().instances, screen,
                               LayoutShare::lookOf(m_context.theme), m_context.version, now());
    if (const auto* error = std::get_if<Board::Error>(&probe)) {
        tell(parent, failedTitle, Board::message(*error));
        return;
    }
    QFileDialog dialog(parent);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setWindowTitle(
        L("share.save.message", QStringLiteral("Saves the widgets, their arrangement and settings, "
                                               "and the look. Notes, folders, places and other "
                                               "personal content are left out.")));
    dialog.setNameFilter(QStringLiteral("Tarnwick Board (*.twkboard)"));
    dialog.setDefaultSuffix(Board::extension.mid(1));
    dialog.setDirectory(documentsFolder());
    dialog.selectFile(QStringLiteral("Tarnwick Board") + Board::extension);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString path = withExtension(dialog.selectedFiles().first(), Board::extension);
    Board board = std::get<Board>(probe);
    board.name = QFileInfo(path).completeBaseName();
    if (const AtomicFile::Result written = AtomicFile::write(path, board.encode()); !written) {
        tell(parent, failedTitle, written.error);
    }
}

void LayoutFileActions::openBoard(QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(
        parent, L("share.open.message", QStringLiteral("Choose a board somebody shared with you.")),
        documentsFolder(), QStringLiteral("Tarnwick Board (*.twkboard)"));
    if (!path.isEmpty()) {
        offerBoard(path, parent);
    }
}

QImage LayoutFileActions::backdrop() {
    const Wallpaper* lagoon = Wallpaper::find(QStringLiteral("lagoon"));
    return lagoon ? WallpaperRenderer::render(*lagoon, QSize(1280, 800)) : QImage();
}

void LayoutFileActions::offerBoard(const QString& path, QWidget* parent) {
    const Board::Decoded decoded = Board::read(path);
    if (const auto* error = std::get_if<Board::Error>(&decoded)) {
        tell(parent, L("share.open.failed", QStringLiteral("The board could not be opened.")),
             Board::message(*error));
        return;
    }
    if (!m_context.grid || !m_context.registry) {
        return;
    }
    const Board& board = std::get<Board>(decoded);
    const BoardPicture::PaintTile paintTile =
        m_context.paintTile ? BoardPicture::PaintTile(m_context.paintTile)
                            : [](QPainter&, const QRectF&, const WidgetInstance&) {};
    BoardOfferDialog offer(board, paintTile, backdrop(), parent);
    offer.exec();
    if (offer.choice() == BoardOfferDialog::Choice::cancel) {
        return;
    }
    const bool replacing = offer.choice() == BoardOfferDialog::Choice::replace;
    if (replacing && !LayoutBackup::backUpCurrentSetup(setup(), now())) {
        tell(parent, L("share.open.failed", QStringLiteral("The board could not be opened.")),
             L("backup.error.unreadable", QStringLiteral("The file could not be read.")));
        return;
    }
    const QRectF screen = m_context.desktopFrame ? m_context.desktopFrame() : QRectF();
    const LayoutShare::ImportResult result = LayoutShare::importBoard(
        board, *m_context.grid, *m_context.registry, &m_context.theme,
        replacing ? GridStore::Replacing::yes : GridStore::Replacing::no,
        replacing ? LayoutShare::ApplyLook::yes : LayoutShare::ApplyLook::no, screen);
    QMessageBox::information(parent, LayoutShare::doneTitle(), LayoutShare::summary(result));
}

} // namespace tw
