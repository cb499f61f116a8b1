#include "settings/AppSettings.h"

#include "platform/Defaults.h"
#include "platform/RawValues.h"
#include "platform/Relauncher.h"
#include "settings/Localization.h"
#include "settings/StoredValue.h"
#include "text/L.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cmath>

namespace tw {

Q_LOGGING_CATEGORY(lcSettings, "AppSettings")

namespace {

const QString kEnergyMode = QStringLiteral("tarnwick.energyMode");
const QString kAutoSaver = QStringLiteral("tarnwick.autoSaver");
const QString kLockScreenEnabled = QStringLiteral("tarnwick.lockScreenEnabled");
const QString kLockScreenFPS = QStringLiteral("tarnwick.lockScreenFPS");
const QString kLockScreenAnimated = QStringLiteral("tarnwick.lockScreenAnimated");
const QString kHasSeenLockScreenIntro = QStringLiteral("tarnwick.hasSeenLockScreenIntro");
const QString kHasSeenGuide = QStringLiteral("tarnwick.hasSeenGuide");
const QString kHasSeenGuideV225 = QStringLiteral("tarnwick.hasSeenGuide.v225");
const QString kHasSeenLiveWidgetsHint = QStringLiteral("tarnwick.hasSeenLiveWidgetsHint");
const QString kHideDockIcon = QStringLiteral("tarnwick.hideDockIcon");
const QString kMoveNeedsShift = QStringLiteral("tarnwick.moveNeedsShift");
const QString kHaptics = QStringLiteral("tarnwick.haptics");
const QString kOpenWindowAtLaunch = QStringLiteral("tarnwick.openWindowAtLaunch");
const QString kAppLanguage = QStringLiteral("tarnwick.appLanguage");
const QString kLastLaunchedVersion = QStringLiteral("tarnwick.lastLaunchedVersion");
const QString kHasUpdated = QStringLiteral("tarnwick.hasUpdated");
const QString kRetiredGrid = QStringLiteral("tarnwick.grid");

constexpr RawValues<AppSettings::EnergyMode, 3> kEnergyModes{{"high", "balanced", "saver"}};

bool readBool(const Defaults& defaults, const QString& key, bool fallback) {
    return StoredValue::boolean(defaults.value(key)).value_or(fallback);
}

double nearestFPSChoice(double fps) {
    double best = AppSettings::lockScreenFPSChoices.front();
    for (const double choice : AppSettings::lockScreenFPSChoices) {
        if (std::abs(choice - fps) < std::abs(best - fps)) {
            best = choice;
        }
    }
    return best;
}

double readLockScreenFPS(const Defaults& defaults) {
    if (defaults.contains(kLockScreenFPS)) {
        if (const auto fps = StoredValue::number(defaults.value(kLockScreenFPS))) {
            return nearestFPSChoice(*fps);
        }
    }
    // The retired switch said only whether the lock screen moved at all; moving meant 8 frames.
    return readBool(defaults, kLockScreenAnimated, true) ? 8.0 : 0.0;
}

bool readHasSeenGuide(const Defaults& defaults) {
    if (const auto seen = StoredValue::boolean(defaults.value(kHasSeenGuideV225))) {
        return *seen;
    }
    return readBool(defaults, kHasSeenGuide, false);
}

} // namespace

AppSettings::AppSettings(Defaults& defaults, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_energyMode(
          energyModeFromRawValue(StoredValue::word(defaults.value(kEnergyMode)).value_or(QString()))
              .value_or(EnergyMode::balanced))
    , m_autoSaver(readBool(defaults, kAutoSaver, true))
    , m_lockScreenEnabled(readBool(defaults, kLockScreenEnabled, true))
    , m_lockScreenFPS(readLockScreenFPS(defaults))
    , m_hasSeenLockScreenIntro(readBool(defaults, kHasSeenLockScreenIntro, false))
    , m_hasSeenGuide(readHasSeenGuide(defaults))
    , m_hasSeenLiveWidgetsHint(readBool(defaults, kHasSeenLiveWidgetsHint, false))
    , m_hideDockIcon(storedHideDockIcon(defaults))
    , m_moveNeedsShift(storedMoveNeedsShift(defaults))
    , m_hapticsEnabled(readBool(defaults, kHaptics, true))
    , m_openWindowAtLaunch(readBool(defaults, kOpenWindowAtLaunch, true))
    , m_appLanguage(storedLanguage(defaults))
    , m_languageAtLaunch(m_appLanguage) {}

void AppSettings::storeBool(bool& field, bool value, const QString& key,
                            void (AppSettings::*changed)()) {
    if (field == value) {
        return;
    }
    field = value;
    m_defaults.setValue(key, value);
    Q_EMIT(this->*changed)();
}

template <typename Change>
void AppSettings::changingEffectiveMode(Change change) {
    const EnergyMode before = effectiveEnergyMode();
    change();
    if (effectiveEnergyMode() != before) {
        Q_EMIT effectiveEnergyModeChanged();
    }
}

AppSettings::EnergyMode AppSettings::effectiveEnergyMode() const {
    return m_autoSaver && m_powerConstrained ? EnergyMode::saver : m_energyMode;
}

void AppSettings::setEnergyMode(EnergyMode mode) {
    if (m_energyMode == mode) {
        return;
    }
    changingEffectiveMode([&] {
        m_energyMode = mode;
        m_defaults.setValue(kEnergyMode, rawValue(mode));
        Q_EMIT energyModeChanged();
    });
}

void AppSettings::setAutoSaver(bool on) {
    changingEffectiveMode(
        [&] { storeBool(m_autoSaver, on, kAutoSaver, &AppSettings::autoSaverChanged); });
}

void AppSettings::setPowerConstrained(bool constrained) {
    if (m_powerConstrained == constrained) {
        return;
    }
    changingEffectiveMode([&] {
        m_powerConstrained = constrained;
        Q_EMIT powerConstrainedChanged();
    });
}

void AppSettings::setLockScreenEnabled(bool on) {
    storeBool(m_lockScreenEnabled, on, kLockScreenEnabled, &AppSettings::lockScreenEnabledChanged);
}

void AppSettings::setLockScreenFPS(double fps) {
    if (!std::isfinite(fps)) {
        return;
    }
    const double choice = nearestFPSChoice(fps);
    if (m_lockScreenFPS == choice) {
        return;
    }
    m_lockScreenFPS = choice;
    m_defaults.setValue(kLockScreenFPS, choice);
    Q_EMIT lockScreenFPSChanged();
}

void AppSettings::setHasSeenLockScreenIntro(bool seen) {
    storeBool(m_hasSeenLockScreenIntro, seen, kHasSeenLockScreenIntro,
              &AppSettings::hasSeenLockScreenIntroChanged);
}

void AppSettings::setHasSeenGuide(bool seen) {
    if (m_hasSeenGuide == seen) {
        return;
    }
    m_hasSeenGuide = seen;
    m_defaults.setValue(kHasSeenGuide, seen);
    // The versioned predecessor wins when read; once the current key holds the answer, the
    // predecessor has nothing more to say.
    m_defaults.remove(kHasSeenGuideV225);
    Q_EMIT hasSeenGuideChanged();
}

void AppSettings::setHasSeenLiveWidgetsHint(bool seen) {
    storeBool(m_hasSeenLiveWidgetsHint, seen, kHasSeenLiveWidgetsHint,
              &AppSettings::hasSeenLiveWidgetsHintChanged);
}

void AppSettings::setHideDockIcon(bool hide) {
    storeBool(m_hideDockIcon, hide, kHideDockIcon, &AppSettings::hideDockIconChanged);
}

void AppSettings::setMoveNeedsShift(bool needed) {
    storeBool(m_moveNeedsShift, needed, kMoveNeedsShift, &AppSettings::moveNeedsShiftChanged);
}

void AppSettings::setHapticsEnabled(bool on) {
    storeBool(m_hapticsEnabled, on, kHaptics, &AppSettings::hapticsEnabledChanged);
}

void AppSettings::setOpenWindowAtLaunch(bool open) {
    storeBool(m_openWindowAtLaunch, open, kOpenWindowAtLaunch,
              &AppSettings::openWindowAtLaunchChanged);
}

void AppSettings::setAppLanguage(const QString& language) {
    const QString chosen = Localization::isSupported(language) ? language : systemLanguage();
    if (m_appLanguage == chosen) {
        return;
    }
    m_appLanguage = chosen;
    m_defaults.setValue(kAppLanguage, chosen);
    applyLanguagePreference(m_defaults, chosen);
    Q_EMIT appLanguageChanged();
}

void AppSettings::setAppActive(bool active) {
    if (m_appActive != active) {
        m_appActive = active;
        Q_EMIT appActiveChanged();
    }
}

void AppSettings::setConfigWindowVisible(bool visible) {
    if (m_configWindowVisible != visible) {
        m_configWindowVisible = visible;
        Q_EMIT configWindowVisibleChanged();
    }
}

QString AppSettings::rawValue(EnergyMode mode) {
    return kEnergyModes.of(mode);
}

std::optional<AppSettings::EnergyMode> AppSettings::energyModeFromRawValue(QStringView raw) {
    return kEnergyModes.parse(raw);
}

QString AppSettings::title(EnergyMode mode) {
    switch (mode) {
    case EnergyMode::high:
        return L("energy.high.title", QStringLiteral("High"));
    case EnergyMode::balanced:
        return L("energy.balanced.title", QStringLiteral("Balanced"));
    case EnergyMode::saver:
        return L("energy.saver.title", QStringLiteral("Energy Saver"));
    }
    Q_UNREACHABLE();
}

std::chrono::milliseconds AppSettings::tickInterval(EnergyMode mode) {
    return std::chrono::milliseconds(mode == EnergyMode::saver ? 2000 : 1000);
}

QString AppSettings::subtitle(EnergyMode mode) {
    switch (mode) {
    case EnergyMode::high:
        return L("energy.high.sub", QStringLiteral("Everything animates, full frame rate"));
    case EnergyMode::balanced:
        return L("energy.balanced.sub", QStringLiteral("Widgets animate while you hover them"));
    case EnergyMode::saver:
        return L("energy.saver.sub", QStringLiteral("Still frames with minimal refreshes"));
    }
    Q_UNREACHABLE();
}

bool AppSettings::storedHideDockIcon(const Defaults& defaults) {
    return readBool(defaults, kHideDockIcon, false);
}

bool AppSettings::storedMoveNeedsShift(const Defaults& defaults) {
    return readBool(defaults, kMoveNeedsShift, false);
}

QString AppSettings::storedLanguage(const Defaults& defaults) {
    const QString stored =
        StoredValue::word(defaults.value(kAppLanguage)).value_or(systemLanguage());
    return Localization::isSupported(stored) ? stored : systemLanguage();
}

QString AppSettings::applyLanguagePreferenceAtStartup(Defaults& defaults) {
    applyLanguagePreference(defaults, storedLanguage(defaults));
    const Localization::Resolved resolved = Localization::resolve(defaults);
    Localization::install(resolved);
    return resolved.language;
}

void AppSettings::applyLanguagePreference(Defaults& defaults, const QString& language) {
    if (language == systemLanguage()) {
        defaults.remove(Localization::appleLanguagesKey());
    } else {
        defaults.setValue(Localization::appleLanguagesKey(), QStringList{language});
    }
    defaults.sync();
}

bool AppSettings::checkAndRecordUpdateLaunch(Defaults& defaults, const QString& currentVersion) {
    const std::optional<QString> last = StoredValue::word(defaults.value(kLastLaunchedVersion));
    defaults.setValue(kLastLaunchedVersion, currentVersion);
    bool updated = false;
    if (last) {
        updated = *last != currentVersion;
    } else {
        // Versions were not recorded at first; these keys betray an install from that time.
        updated = defaults.contains(kEnergyMode) || defaults.contains(kRetiredGrid) ||
                  defaults.contains(kHasSeenGuide);
    }
    if (updated) {
        defaults.setValue(kHasUpdated, true);
    }
    defaults.sync();
    return updated;
}

QString AppSettings::lastLaunchedVersion(const Defaults& defaults) {
    return StoredValue::word(defaults.value(kLastLaunchedVersion)).value_or(QString());
}

bool AppSettings::hasLaunchedBefore(const Defaults& defaults) {
    return defaults.contains(kLastLaunchedVersion) || isExistingInstall(defaults);
}

bool AppSettings::isExistingInstall(const Defaults& defaults) {
    return defaults.contains(kEnergyMode) || defaults.contains(kHasSeenGuideV225) ||
           defaults.contains(kHasSeenGuide);
}

bool AppSettings::relaunch(Relauncher& relauncher) {
    return relaunch(relauncher, QCoreApplication::arguments().mid(1));
}

bool AppSettings::relaunch(Relauncher& relauncher, const QStringList& arguments) {
    if (!QCoreApplication::instance()) {
        qCWarning(lcSettings) << "Relaunch failed: no running application";
        return false;
    }
    if (!relauncher.startAfterExit(QCoreApplication::applicationPid(),
                                   QCoreApplication::applicationFilePath(), arguments)) {
        qCWarning(lcSettings) << "Relaunch failed: nothing could wait for this process to end";
        return false;
    }
    // exit() rather than quit(): a window that refuses to close must not keep this process
    // alive while the relauncher waits for it to end.
    QCoreApplication::exit(0);
    return true;
}

} // namespace tw
