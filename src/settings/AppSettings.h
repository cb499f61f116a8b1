// The application-wide preferences, each backed by its "tarnwick.…" key, plus the language and
// relaunch mechanics that must work before any window exists.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <chrono>
#include <optional>

namespace tw {

class Defaults;
class Relauncher;

class AppSettings final : public QObject {
    Q_OBJECT
public:
    // How much may move on the desktop; the order is the order of every list of modes.
    enum class EnergyMode { high, balanced, saver };
    Q_ENUM(EnergyMode)

private:
    Q_PROPERTY(EnergyMode energyMode READ energyMode WRITE setEnergyMode NOTIFY energyModeChanged)
    Q_PROPERTY(bool autoSaver READ autoSaver WRITE setAutoSaver NOTIFY autoSaverChanged)
    Q_PROPERTY(bool powerConstrained READ powerConstrained WRITE setPowerConstrained NOTIFY
                   powerConstrainedChanged)
    Q_PROPERTY(bool lockScreenEnabled READ lockScreenEnabled WRITE setLockScreenEnabled NOTIFY
                   lockScreenEnabledChanged)
    Q_PROPERTY(
        double lockScreenFPS READ lockScreenFPS WRITE setLockScreenFPS NOTIFY lockScreenFPSChanged)
    Q_PROPERTY(bool hasSeenLockScreenIntro READ hasSeenLockScreenIntro WRITE
                   setHasSeenLockScreenIntro NOTIFY hasSeenLockScreenIntroChanged)
    Q_PROPERTY(bool hasSeenGuide READ hasSeenGuide WRITE setHasSeenGuide NOTIFY hasSeenGuideChanged)
    Q_PROPERTY(bool hasSeenLiveWidgetsHint READ hasSeenLiveWidgetsHint WRITE
                   setHasSeenLiveWidgetsHint NOTIFY hasSeenLiveWidgetsHintChanged)
    Q_PROPERTY(bool hideDockIcon READ hideDockIcon WRITE setHideDockIcon NOTIFY hideDockIconChanged)
    Q_PROPERTY(bool moveNeedsShift READ moveNeedsShift WRITE setMoveNeedsShift NOTIFY
                   moveNeedsShiftChanged)
    Q_PROPERTY(bool hapticsEnabled READ hapticsEnabled WRITE setHapticsEnabled NOTIFY
                   hapticsEnabledChanged)
    Q_PROPERTY(bool openWindowAtLaunch READ openWindowAtLaunch WRITE setOpenWindowAtLaunch NOTIFY
                   openWindowAtLaunchChanged)
    Q_PROPERTY(QString appLanguage READ appLanguage WRITE setAppLanguage NOTIFY appLanguageChanged)
    Q_PROPERTY(bool appActive READ appActive WRITE setAppActive NOTIFY appActiveChanged)
    Q_PROPERTY(bool configWindowVisible READ configWindowVisible WRITE setConfigWindowVisible NOTIFY
                   configWindowVisibleChanged)
    Q_PROPERTY(QString languageAtLaunch READ languageAtLaunch CONSTANT)

public:
    static constexpr std::array<EnergyMode, 3> energyModes{EnergyMode::high, EnergyMode::balanced,
                                                           EnergyMode::saver};
    static constexpr std::array<double, 5> lockScreenFPSChoices{0, 8, 15, 30, 60};
    // The word of `appLanguage` that follows the system.
    static QString systemLanguage() { return QStringLiteral("system"); }

    // Reads every field from `defaults`, which must outlive this object. The value of
    // "tarnwick.appLanguage" now is frozen as `languageAtLaunch`: build this once, at start-up.
    explicit AppSettings(Defaults& defaults, QObject* parent = nullptr);

    EnergyMode energyMode() const { return m_energyMode; }
    bool autoSaver() const { return m_autoSaver; }
    bool powerConstrained() const { return m_powerConstrained; }
    bool lockScreenEnabled() const { return m_lockScreenEnabled; }
    double lockScreenFPS() const { return m_lockScreenFPS; }
    bool hasSeenLockScreenIntro() const { return m_hasSeenLockScreenIntro; }
    bool hasSeenGuide() const { return m_hasSeenGuide; }
    bool hasSeenLiveWidgetsHint() const { return m_hasSeenLiveWidgetsHint; }
    bool hideDockIcon() const { return m_hideDockIcon; }
    bool moveNeedsShift() const { return m_moveNeedsShift; }
    bool hapticsEnabled() const { return m_hapticsEnabled; }
    bool openWindowAtLaunch() const { return m_openWindowAtLaunch; }
    QString appLanguage() const { return m_appLanguage; }
    bool appActive() const { return m_appActive; }
    bool configWindowVisible() const { return m_configWindowVisible; }
    // What `appLanguage` was when the process started; a settings page offers a restart when the
    // two differ, since a language takes effect only after one.
    QString languageAtLaunch() const { return m_languageAtLaunch; }

    void setEnergyMode(EnergyMode mode);
    void setAutoSaver(bool on);
    void setPowerConstrained(bool constrained);
    void setLockScreenEnabled(bool on);
    // Taken to the nearest of `lockScreenFPSChoices`.
    void setLockScreenFPS(double fps);
    void setHasSeenLockScreenIntro(bool seen);
    void setHasSeenGuide(bool seen);
    void setHasSeenLiveWidgetsHint(bool seen);
    void setHideDockIcon(bool hide);
    void setMoveNeedsShift(bool needed);
    void setHapticsEnabled(bool on);
    void setOpenWindowAtLaunch(bool open);
    // Stores the choice and applies it to "AppleLanguages"; it shows after a relaunch.
    void setAppLanguage(const QString& language);
    // Kept up to date by the application from its activation events.
    void setAppActive(bool active);
    // Records that the settings window is on screen.
    void setConfigWindowVisible(bool visible);

    // --- EnergyMode: raw values and the words people read.
    static QString rawValue(EnergyMode mode);
    // nullopt for anything but "high", "balanced" or "saver".
    static std::optional<EnergyMode> energyModeFromRawValue(QStringView raw);
    static QString title(EnergyMode mode);
    static QString subtitle(EnergyMode mode);
    // How often the desktop ticks in a mode.
    static std::chrono::milliseconds tickInterval(EnergyMode mode);

    // The mode in force: Energy Saver while power is short and `autoSaver` allows it, else the
    // chosen one.
    EnergyMode effectiveEnergyMode() const;

    // --- Readers for use before the object exists.
    static bool storedHideDockIcon(const Defaults& defaults);
    static bool storedMoveNeedsShift(const Defaults& defaults);
    // "system" when absent or empty.
    static QString storedLanguage(const Defaults& defaults);

    // --- Start-up and language.
    // Applies the stored language to "AppleLanguages", then installs the string table of the
    // language that results on the running QCoreApplication and makes its locale Qt's default.
    // Call once, after the QCoreApplication exists and before any text is looked up. Gives the
    // resolved language code ("en", "de", …).
    static QString applyLanguagePreferenceAtStartup(Defaults& defaults);
    // "system" removes "AppleLanguages"; any other code writes it as a one-element list.
    static void applyLanguagePreference(Defaults& defaults, const QString& language);
    // Whether this start is the first on a version other than the last one recorded; records
    // `currentVersion`. Sets "tarnwick.hasUpdated" when it says yes.
    static bool checkAndRecordUpdateLaunch(Defaults& defaults, const QString& currentVersion);
    // The version the last start recorded; empty when none did.
    static QString lastLaunchedVersion(const Defaults& defaults);
    // True if the defaults show an earlier run of the application.
    static bool isExistingInstall(const Defaults& defaults);
    // Whether any start before this one left its mark; false only on the very first start.
    static bool hasLaunchedBefore(const Defaults& defaults);

    // --- Relaunch.
    // Has `relauncher` start this executable again with the same arguments once this process is
    // gone; on success leaves the event loop at once. Gives false (and leaves the application
    // running) when the relauncher could not start. Call from the running event loop.
    static bool relaunch(Relauncher& relauncher);
    // The same with these arguments instead.
    static bool relaunch(Relauncher& relauncher, const QStringList& arguments);

Q_SIGNALS:
    void energyModeChanged();
    void autoSaverChanged();
    void powerConstrainedChanged();
    // After any of the three above, when the mode in force is another.
    void effectiveEnergyModeChanged();
    void lockScreenEnabledChanged();
    void lockScreenFPSChanged();
    void hasSeenLockScreenIntroChanged();
    void hasSeenGuideChanged();
    void hasSeenLiveWidgetsHintChanged();
    void hideDockIconChanged();
    void moveNeedsShiftChanged();
    void hapticsEnabledChanged();
    void openWindowAtLaunchChanged();
    void appLanguageChanged();
    void appActiveChanged();
    void configWindowVisibleChanged();

private:
    void storeBool(bool& field, bool value, const QString& key, void (AppSettings::*changed)());
    // Runs `change`, then tells whether the mode in force moved.
    template <typename Change>
    void changingEffectiveMode(Change change);

    Defaults& m_defaults;
    EnergyMode m_energyMode;
    bool m_autoSaver;
    bool m_powerConstrained = false;
    bool m_lockScreenEnabled;
    double m_lockScreenFPS;
    bool m_hasSeenLockScreenIntro;
    bool m_hasSeenGuide;
    bool m_hasSeenLiveWidgetsHint;
    bool m_hideDockIcon;
    bool m_moveNeedsShift;
    bool m_hapticsEnabled;
    bool m_openWindowAtLaunch;
    QString m_appLanguage;
    bool m_appActive = false;
    bool m_configWindowVisible = false;
    QString m_languageAtLaunch;
};

} // namespace tw
