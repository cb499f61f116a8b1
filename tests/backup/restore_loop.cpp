// Restores two setups in turn, each after a backup of the current one, as an import does, until
// it is killed. Says "ready" as it begins; the directory must hold a whole setup already.
#include "RestoreStates.h"
#include "platform/SettingsDefaults.h"

#include <QCoreApplication>
#include <QDateTime>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: restore_loop DIRECTORY PREFERENCES.ini\n");
        return 2;
    }
    const QString directory = QString::fromLocal8Bit(argv[1]);
    tw::SettingsDefaults defaults(QString::fromLocal8Bit(argv[2]));
    const tw::LayoutBackup::Setup setup{
        .directory = directory, .defaults = defaults, .appVersion = QStringLiteral("0.1.0")};
    std::printf("ready\n");
    std::fflush(stdout);
    for (long round = 0;; ++round) {
        tw::LayoutBackup::backUpCurrentSetup(setup, QDateTime::currentDateTime());
        if (const auto failed = tw::LayoutBackup::apply(
                tw::test::restoreState(round % 2 == 0 ? 'A' : 'B'), setup)) {
            std::fprintf(stderr, "restore failed: %s\n", qPrintable(*failed));
            return 1;
        }
    }
}
