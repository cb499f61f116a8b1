// The file kinds' behaviours and the threads they work on, made together for the desktop:
// photos, folder, drop zone and trash.
#pragma once

#include "files/DropZoneBehaviour.h"
#include "files/FolderBehaviour.h"
#include "files/PhotosBehaviour.h"
#include "files/TrashBehaviour.h"
#include "readings/PoolSampleRunner.h"

#include <memory>

namespace tw {

class TileBehaviours;

class FileTiles {
public:
    struct Services {
        GridStore& grid;
        Workspace& workspace;
        const Clock& clock;
        Scheduler& scheduler;
        FolderChooser chooseFolder;
        qreal pixelRatio = 1;
    };

    FileTiles(const Services& services, std::unique_ptr<Trash> trash);
    Q_DISABLE_COPY_MOVE(FileTiles)

    void addTo(TileBehaviours& behaviours);

private:
    std::unique_ptr<Trash> m_trash;
    // Decoding pictures never waits behind a folder being listed or a trash being emptied.
    PoolSampleRunner m_pictures;
    PoolSampleRunner m_files;
    PoolSampleRunner m_trashWork;
    PhotosBehaviour m_photos;
    FolderBehaviour m_folders;
    DropZoneBehaviour m_dropZones;
    TrashBehaviour m_trashTiles;
};

} // namespace tw
