#include "platform/PlatformServices.h"

#include "platform/linux/BluezBluetoothSource.h"
#include "platform/linux/CanberraSoundPlayer.h"
#include "platform/linux/DisplayProbe.h"
#include "platform/linux/FreedesktopNotifications.h"
#include "platform/linux/GeoClueLocationSource.h"
#include "platform/linux/HwmonSensorSource.h"
#include "platform/linux/KeychainSecretStore.h"
#include "platform/linux/LinuxDesktopPicture.h"
#include "platform/linux/LinuxLockScreenSurface.h"
#include "platform/linux/LinuxMachineIdentity.h"
#include "platform/linux/LinuxPictureSetter.h"
#include "platform/linux/LinuxSystemActions.h"
#include "platform/linux/LinuxSystemSource.h"
#include "platform/linux/LinuxUserPresence.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/MaterialSymbolProvider.h"
#include "platform/linux/MprisMediaPlayers.h"
#include "platform/linux/PackageInstallation.h"
#include "platform/linux/PortalColorScheme.h"
#include "platform/linux/ProcProcessUsage.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/QtDisplays.h"
#include "platform/linux/QtPointerPosition.h"
#include "platform/linux/ShellRelauncher.h"
#include "platform/linux/UPowerPowerSource.h"
#include "platform/linux/V4lVideoDevices.h"
#include "platform/linux/VdirCalendarStore.h"
#include "platform/linux/X11DesktopWindowing.h"
#include "platform/linux/X11ForegroundApplication.h"
#include "platform/linux/XdgAppDirectory.h"
#include "platform/linux/XdgAutostart.h"
#include "platform/linux/XdgTrash.h"
#include "platform/null/MemorySecretStore.h"
#include "platform/null/SilentSoundPlayer.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDir>
#include <QGuiApplication>
#include <QStandardPaths>

#include <unistd.h>

namespace tw {

PlatformServices PlatformServices::make() {
    PlatformServices services = makeReadingSources();
    services.displays = std::make_unique<QtDisplays>();
    services.windowing = X11DesktopWindowing::create();
    services.clipboard = std::make_unique<QtClipboard>();
    services.foreground = X11ForegroundApplication::create();
    services.workspace = std::make_unique<LinuxWorkspace>();
    services.notifications = std::make_unique<FreedesktopNotifications>();
    services.colorScheme = std::make_unique<PortalColorScheme>();
    services.symbols = makeSymbolProvider();
    services.picture = LinuxDesktopPicture::create();
    services.lockScreen = makeLockScreenSurface();
    services.loginItem = XdgAutostart::forThisProgram();
    services.usage = makeProcessUsage();
    services.location = GeoClueLocationSource::create();
    services.pointer = std::make_unique<QtPointerPosition>();
    if (silent()) {
        services.sounds = std::make_unique<SilentSoundPlayer>();
    } else {
        services.sounds = std::make_unique<CanberraSoundPlayer>();
    }
    return services;
}

PlatformServices PlatformServices::makeReadingSources() {
    PlatformServices services;
    services.power = UPowerPowerSource::create();
    services.system = std::make_unique<LinuxSystemSource>();
    services.bluetooth = BluezBluetoothSource::create();
    services.sensors = std::make_unique<HwmonSensorSource>();
    services.machine = std::make_unique<LinuxMachineIdentity>();
    return services;
}

std::unique_ptr<ProcessUsage> PlatformServices::makeProcessUsage() {
    return std::make_unique<ProcProcessUsage>();
}

std::unique_ptr<SymbolProvider> PlatformServices::makeSymbolProvider() {
    return std::make_unique<MaterialSymbolProvider>();
}

std::unique_ptr<LockScreenSurface> PlatformServices::makeLockScreenSurface() {
    return std::make_unique<LinuxLockScreenSurface>();
}

std::unique_ptr<SecretStore> PlatformServices::makeSecretStore() {
    if (qEnvironmentVariableIsSet("TKW_NO_KEYCHAIN")) {
        return std::make_unique<MemorySecretStore>();
    }
    return std::make_unique<KeychainSecretStore>();
}

std::unique_ptr<CalendarStore>
PlatformServices::makeCalendarStore(const QStringList& folders,
                                    const QStringList& readOnlyFolders) {
    const QString home = QDir::homePath();
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (dataHome.isEmpty()) {
        dataHome = home + QStringLiteral("/.local/share");
    }
    auto store = std::make_unique<VdirCalendarStore>(
        VdirCalendarStore::Folders{VdirCalendarStore::usualRoots(home, dataHome), readOnlyFolders});
    store->setOwnFolders(folders);
    return store;
}

Installation PlatformServices::installation() {
    return PackageInstallation::detect(QCoreApplication::applicationFilePath(),
                                       QStringLiteral("/var/lib/dpkg/info"),
                                       qEnvironmentVariable("FLATPAK_ID"));
}

std::unique_ptr<Relauncher> PlatformServices::makeRelauncher() {
    return std::make_unique<ShellRelauncher>();
}

std::unique_ptr<Trash> PlatformServices::makeTrash(const Clock& clock) {
    // The trashes of the freedesktop format, where file managers put what is deleted.
    return std::make_unique<XdgTrash>(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            QStringLiteral("/Trash"),
        clock, &XdgTrash::mountedDisks);
}

std::unique_ptr<MediaPlayers> PlatformServices::makeMediaPlayers(const Clock& clock) {
    return MprisMediaPlayers::create(clock);
}

std::unique_ptr<UserPresence> PlatformServices::makeUserPresence(const Clock& clock,
                                                                 const Displays* displays) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return std::make_unique<LinuxUserPresence>(
        LinuxUserPresence::Services{.x11 = x11 != nullptr ? x11->connection() : nullptr,
                                    .logind = QDBusConnection::systemBus(),
                                    .session = {},
                                    .clock = clock,
                                    .displays = displays});
}

std::unique_ptr<AppDirectory> PlatformServices::makeAppDirectory() {
    return std::make_unique<XdgAppDirectory>(XdgAppDirectory::forSession());
}

std::unique_ptr<SystemActions> PlatformServices::makeSystemActions() {
    return std::make_unique<LinuxSystemActions>(LinuxSystemActions::currentSession());
}

std::unique_ptr<DesktopPictureSetter> PlatformServices::makeDesktopPictureSetter() {
    return std::make_unique<LinuxPictureSetter>(
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts));
}

std::unique_ptr<VideoDevices> PlatformServices::makeVideoDevices() {
    return std::make_unique<V4lVideoDevices>();
}

bool PlatformServices::isAdministrator() {
    return ::geteuid() == 0;
}

bool PlatformServices::silent() {
    return qEnvironmentVariable("TKW_SILENT") == QLatin1String("1");
}

std::optional<QString> PlatformServices::whyNoDisplay() {
    return DisplayProbe::whyNoDisplay();
}

PlatformServices::Wording PlatformServices::wording() {
    return {
        .needsDisplay = DisplayProbe::needsDisplay(),
        .displayHelp =
            QStringLiteral("  DISPLAY, WAYLAND_DISPLAY     the display the desktop host runs on\n"),
        .preferencesHelp = QStringLiteral("  XDG_CONFIG_HOME              preferences live in its "
                                          "Tarnwick/ (default: ~/.config)\n"),
        .dataDirectoryDefault = QStringLiteral("~/.local/share/Tarnwick"),
        .noHaptics = QStringLiteral("Linux desktops give programs no way to make the touchpad "
                                    "pulse, so this has no effect here."),
        .noDockIcon = QStringLiteral("Linux desktops show Tarnwick in the task bar only while "
                                     "this window is open, so there is no icon to hide."),
        .stringTable = QStringLiteral(":/platform/strings.json"),
    };
}

} // namespace tw
