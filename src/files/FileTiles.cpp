#include "files/FileTiles.h"

#include <QStandardPaths>

namespace tw {

namespace {

QString desktopFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

} // namespace

FileTiles::FileTiles(const Services& services, std::unique_ptr<Trash> trash)
    : m_trash(std::move(trash))
    , m_photos({.grid = services.grid,
                .workspace = services.workspace,
                .clock = services.clock,
                .scheduler = services.scheduler,
                .runner = m_pictures,
                .chooseFolder = services.chooseFolder,
                .defaultFolder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                .pixelRatio = services.pixelRatio})
    , m_folders({.grid = services.grid,
                 .workspace = services.workspace,
                 .scheduler = services.scheduler,
                 .runner = m_files,
                 .chooseFolder = services.chooseFolder,
                 .defaultFolder = desktopFolder()})
    , m_dropZones({.grid = services.grid,
                   .workspace = services.workspace,
                   .clock = services.clock,
                   .scheduler = services.scheduler,
                   .runner = m_files,
                   .chooseFolder = services.chooseFolder,
                   .freeSpace = FileTransfer::diskFreeSpace,
                   .defaultFolder = desktopFolder()})
    , m_trashTiles(*m_trash, services.workspace, services.scheduler, m_trashWork) {}

void FileTiles::addTo(TileBehaviours& behaviours) {
    behaviours.add(QStringLiteral("photos"), &m_photos);
    behaviours.add(QStringLiteral("folder"), &m_folders);
    behaviours.add(QStringLiteral("dropzone"), &m_dropZones);
    behaviours.add(QStringLiteral("trash"), &m_trashTiles);
}

} // namespace tw
