// What the program uses of the operating system, made in one place per system: callers ask for
// these and never name an implementation.
#pragma once

#include "platform/AppDirectory.h"
#include "platform/BluetoothSource.h"
#include "platform/CalendarStore.h"
#include "platform/Clipboard.h"
#include "platform/ColorSchemeWatcher.h"
#include "platform/DesktopPicture.h"
#include "platform/DesktopPictureSetter.h"
#include "platform/DesktopWindowing.h"
#include "platform/Displays.h"
#include "platform/ForegroundApplication.h"
#include "platform/Installation.h"
#include "platform/LocationSource.h"
#include "platform/LockScreenSurface.h"
#include "platform/LoginItem.h"
#include "platform/MachineIdentity.h"
#include "platform/MediaPlayers.h"
#include "platform/Notifications.h"
#include "platform/PointerPosition.h"
#include "platform/PowerSource.h"
#include "platform/ProcessUsage.h"
#include "platform/Relauncher.h"
#include "platform/SecretStore.h"
#include "platform/SensorSource.h"
#include "platform/SoundPlayer.h"
#include "platform/SymbolProvider.h"
#include "platform/SystemActions.h"
#include "platform/SystemSource.h"
#include "platform/Trash.h"
#include "platform/UserPresence.h"
#include "platform/VideoDevices.h"
#include "platform/Workspace.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tw {

class Clock;

struct PlatformServices {
    std::unique_ptr<Displays> displays;
    std::unique_ptr<DesktopWindowing> windowing;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<Notifications> notifications;
    std::unique_ptr<ColorSchemeWatcher> colorScheme;
    std::unique_ptr<SymbolProvider> symbols;
    std::unique_ptr<DesktopPicture> picture;
    std::unique_ptr<LockScreenSurface> lockScreen;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<ProcessUsage> usage;
    // The application in front, for smart layout rules.
    std::unique_ptr<ForegroundApplication> foreground;
    // The machine's readings.
    std::unique_ptr<SystemSource> system;
    std::unique_ptr<PowerSource> power;
    std::unique_ptr<SensorSource> sensors;
    std::unique_ptr<BluetoothSource> bluetooth;
    // Where the machine is; null where the system has no location service at all.
    std::unique_ptr<LocationSource> location;
    // The machine's name, the user and the boot time custom widgets show.
    std::unique_ptr<MachineIdentity> machine;
    // The sounds of timers; silent when $TKW_SILENT is "1" (pictures, automated runs).
    std::unique_ptr<SoundPlayer> sounds;
    // Where the pointer is, for tiles that look at it.
    std::unique_ptr<PointerPosition> pointer;
    // The desktop's clipboard, for the clipboard tile's history and copying notes.
    std::unique_ptr<Clipboard> clipboard;

    // The desktop host's services, every one set; needs the running QApplication.
    static PlatformServices make();
    // The sources of the machine's readings alone (system, power, sensors, Bluetooth), for
    // pictures drawn without the host; the rest stays unset.
    static PlatformServices makeReadingSources();
    // The symbols alone, for pictures drawn without the host; needs a QGuiApplication.
    static std::unique_ptr<SymbolProvider> makeSymbolProvider();
    static std::unique_ptr<Relauncher> makeRelauncher();
    // The session's media players, dated by `clock`, which must outlive them.
    static std::unique_ptr<MediaPlayers> makeMediaPlayers(const Clock& clock);
    // The person's trash, dating what goes in by `clock`, which must outlive it.
    static std::unique_ptr<Trash> makeTrash(const Clock& clock);
    // Whether the person is at the machine, dated by `clock`; `displays` going dark count as
    // away. Both must outlive it.
    static std::unique_ptr<UserPresence> makeUserPresence(const Clock& clock,
                                                          const Displays* displays);
    // The installed applications by the id `ForegroundApplication` gives.
    static std::unique_ptr<AppDirectory> makeAppDirectory();
    // The session's one-click actions (lock, displays off, screenshot, do-not-disturb).
    static std::unique_ptr<SystemActions> makeSystemActions();
    // This process's own cost alone, for pictures of the window drawn without the host.
    static std::unique_ptr<ProcessUsage> makeProcessUsage();
    // Puts pictures on the displays through the running desktop; reaches the display itself, so
    // it works under any Qt platform.
    static std::unique_ptr<DesktopPictureSetter> makeDesktopPictureSetter();
    // The lock screen surface alone, for the probe mode, which runs without the host.
    static std::unique_ptr<LockScreenSurface> makeLockScreenSurface();
    // The desktop's keychain; memory alone when $TKW_NO_KEYCHAIN is set (tests, kiosks).
    static std::unique_ptr<SecretStore> makeSecretStore();
    // The person's calendars and reminder lists where this system keeps them, with `folders`
    // the person added; `readOnlyFolders` hold copies of subscribed calendars.
    static std::unique_ptr<CalendarStore> makeCalendarStore(const QStringList& folders,
                                                            const QStringList& readOnlyFolders);
    // Why the host could not reach a display, as one sentence for a person; nullopt when it
    // can, or when the decision is better left to Qt. Asked before Qt starts, since Qt ends the
    // process with an abort when its platform cannot connect.
    static std::optional<QString> whyNoDisplay();
    // How this running copy was installed, read from the package manager's own records.
    static Installation installation();
    // The machine's video capture devices and this user's access to them.
    static std::unique_ptr<VideoDevices> makeVideoDevices();
    // Whether this process has the system administrator's rights, which the web engine's
    // sandbox refuses to run under.
    static bool isAdministrator();
    // Whether this run makes no sound at all: $TKW_SILENT is "1" (pictures, automated runs).
    static bool silent();

    // What the program tells a person about this system's side of it.
    struct Wording {
        // One sentence for a host started where no display is set.
        QString needsDisplay;
        // The lines of --help on the variables that choose the display and move the
        // preferences, aligned with the rest; and where the data files go by default.
        QString displayHelp;
        QString preferencesHelp;
        QString dataDirectoryDefault;
        // Why the pointer gives no touch feedback here; empty where it does.
        QString noHaptics;
        // Why there is no dock icon to hide here; empty where there is one.
        QString noDockIcon;
        // A string table of this system's own wording for texts whose English default names
        // another system; looked up after the language's table.
        QString stringTable;
    };
    static Wording wording();
};

} // namespace tw
