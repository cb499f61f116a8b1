#include "config/GeneralPage.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "config/SwitchButton.h"
#include "notices/NoticeService.h"
#include "platform/LoginItem.h"
#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"
#include "settings/Localization.h"
#include "text/L.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tw {

namespace {

struct EnergyLines {
    AppSettings::EnergyMode mode;
    QStringList lines;
};

QList<EnergyLines> energyLines() {
    return {
        {AppSettings::EnergyMode::high,
         {L("energy.high.e1", QStringLiteral("Weather scenes, glass and live widgets animate all "
                                             "the time at full frame rate.")),
          L("energy.high.e2", QStringLiteral("Best on a Mac that is plugged in."))}},
        {AppSettings::EnergyMode::balanced,
         {L("energy.balanced.e1",
            QStringLiteral("Clocks and system readings update every second.")),
          L("energy.balanced.e2", QStringLiteral("A widget’s scene animates only while you hover "
                                                 "it, and stops when a window covers it.")),
          L("energy.balanced.e3", QStringLiteral("A good choice for everyday use: near-zero "
                                                 "power when you are not looking."))}},
        {AppSettings::EnergyMode::saver,
         {L("energy.saver.e1", QStringLiteral("Widgets refresh every two seconds.")),
          L("energy.saver.e2",
            QStringLiteral("Scenes and animations show a still frame instead of moving.")),
          L("energy.saver.e3", QStringLiteral("The lowest power use, ideal on battery."))}},
    };
}

} // namespace

GeneralPage::GeneralPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.general", QStringLiteral("General")), parent)
    , m_context(context) {
    addStartup();
    addEnergy();
    addInteraction();
    addLanguage();
}

QWidget* GeneralPage::boundSwitch(bool value, const QString& what,
                                  std::function<void(bool)> store) {
    auto* toggle = new SwitchButton();
    toggle->setChecked(value);
    connect(toggle, &SwitchButton::toggled, this, [this, toggle, what, store](bool on) {
        if (!m_context.canSave()) {
            reportNotSaved(what);
            const QSignalBlocker blocker(toggle);
            toggle->setChecked(!on);
            return;
        }
        clearReport();
        store(on);
    });
    return toggle;
}

void GeneralPage::addStartup() {
    SettingsCard* card =
        addGroup(QStringLiteral("startup"), L("general.startup", QStringLiteral("Startup")));
    if (LoginItem* login = m_context.loginItem) {
        const QString title = L("general.loginItem", QStringLiteral("Open at login"));
        auto* toggle = new SwitchButton();
        toggle->setChecked(login->isEnabled());
        connect(toggle, &SwitchButton::toggled, this, [this, toggle, login, title](bool on) {
            if (!login->setEnabled(on)) {
                reportNotSaved(title);
                const QSignalBlocker blocker(toggle);
                toggle->setChecked(login->isEnabled());
                return;
            }
            clearReport();
        });
        card->addRow(
            title,
            L("general.loginItem.note", QStringLiteral("Adds Tarnwick to your login items.")),
            toggle);
    }
    AppSettings& settings = m_context.settings;
    const QString window = L("general.openWindow", QStringLiteral("Open this window at launch"));
    card->addRow(window,
                 L("general.openWindow.note",
                   QStringLiteral("When you start Tarnwick yourself. A start at login stays "
                                  "quiet and shows only your widgets.")),
                 boundSwitch(settings.openWindowAtLaunch(), window,
                             [&settings](bool on) { settings.setOpenWindowAtLaunch(on); }));
    const QString dock = L("general.hideDock", QStringLiteral("Hide the Dock icon"));
    QWidget* hide = boundSwitch(settings.hideDockIcon(), dock,
                                [&settings](bool on) { settings.setHideDockIcon(on); });
    hide->setEnabled(m_context.dockIconUnavailable.isEmpty());
    card->addRow(dock,
                 m_context.dockIconUnavailable.isEmpty()
                     ? L("general.hideDock.note",
                         QStringLiteral("Tarnwick stays in the menu bar and on your desktop."))
                     : m_context.dockIconUnavailable,
                 hide);
    if (NoticeService* notices = m_context.notices) {
        const QString title = L("general.notices.toggle", QStringLiteral("News and tips"));
        card->addRow(title,
                     L("general.notices.sub",
                       QStringLiteral("Now and then a short note about new widgets and tips. "
                                      "Tarnwick fetches it as a plain file and sends nothing "
                                      "about you.")),
                     boundSwitch(notices->isEnabled(), title,
                                 [notices](bool on) { notices->setEnabled(on); }));
    }
}

void GeneralPage::addEnergy() {
    SettingsCard* card =
        addGroup(QStringLiteral("energy"), L("general.performance", QStringLiteral("Energy")));
    card->addWide(caption(L("general.performance.lede",
                            QStringLiteral("How much your widgets move, and how often they "
                                           "refresh. It changes how much power Tarnwick uses, "
                                           "never what the widgets show."))));
    AppSettings& settings = m_context.settings;
    auto* group = new QButtonGroup(this);
    for (const EnergyLines& entry : energyLines()) {
        auto* choice = new QWidget();
        auto* layout = new QVBoxLayout(choice);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(3);
        auto* radio = new QRadioButton(AppSettings::title(entry.mode), choice);
        radio->setChecked(settings.energyMode() == entry.mode);
        QFont bold = radio->font();
        bold.setWeight(QFont::DemiBold);
        radio->setFont(bold);
        group->addButton(radio, static_cast<int>(entry.mode));
        layout->addWidget(radio);
        auto* lines =
            caption(QStringLiteral("%1\n• %2")
                        .arg(AppSettings::subtitle(entry.mode), entry.lines.join(u"\n• ")),
                    choice);
        lines->setContentsMargins(24, 0, 0, 0);
        layout->addWidget(lines);
        card->addWide(choice);
    }
    connect(group, &QButtonGroup::idToggled, this, [this, group, &settings](int id, bool on) {
        if (!on) {
            return;
        }
        if (!m_context.canSave()) {
            reportNotSaved(L("general.performance", QStringLiteral("Energy")));
            const QSignalBlocker blocker(group);
            group->button(static_cast<int>(settings.energyMode()))->setChecked(true);
            return;
        }
        clearReport();
        settings.setEnergyMode(static_cast<AppSettings::EnergyMode>(id));
    });
    const QString autoSaver = L("general.autosaver", QStringLiteral("Switch to Energy Saver "
                                                                    "automatically when power "
                                                                    "is short"));
    QWidget* row = card->addRow(
        autoSaver,
        L("general.autosaver.note",
          QStringLiteral("In Low Power Mode, or on the battery at 20 % or less. It goes "
                         "back by itself when power is fine again.")),
        boundSwitch(settings.autoSaver(), autoSaver,
                    [&settings](bool on) { settings.setAutoSaver(on); }));
    // Why the chosen mode is not the one in force, in the row's own words, not as a caption.
    auto* forced = new QLabel();
    forced->setObjectName(QStringLiteral("forcedNote"));
    forced->setWordWrap(true);
    card->addLine(row, forced);
    const PowerWatcher* power = m_context.power;
    const auto showForced = [forced, power, &settings] {
        const auto reason = power != nullptr ? power->reason() : std::nullopt;
        forced->setVisible(settings.autoSaver() && settings.powerConstrained() && reason);
        if (!reason) {
            return;
        }
        forced->setText(reason->kind == PowerWatcher::Reason::Kind::lowPowerMode
                            ? L("general.autosaver.lowpower",
                                QStringLiteral("Low Power Mode is on: Energy Saver is on for now."))
                            : L("general.autosaver.battery",
                                QStringLiteral("Battery at %1 %: Energy Saver is on for now."))
                                  .arg(reason->percent));
    };
    for (auto signal : {&AppSettings::autoSaverChanged, &AppSettings::powerConstrainedChanged}) {
        connect(&settings, signal, forced, showForced);
    }
    if (power != nullptr) {
        connect(power, &PowerWatcher::reasonChanged, forced, showForced);
    }
    showForced();
}

void GeneralPage::addInteraction() {
    SettingsCard* card = addGroup(QStringLiteral("interaction"),
                                  L("general.interaction", QStringLiteral("Moving tiles")));
    AppSettings& settings = m_context.settings;
    const QString shift = L("general.moveNeedsShift", QStringLiteral("Hold Shift to move tiles"));
    card->addRow(shift,
                 L("general.moveNeedsShift.note",
                   QStringLiteral("Tiles stay put under a stray drag; a click still works.")),
                 boundSwitch(settings.moveNeedsShift(), shift,
                             [&settings](bool on) { settings.setMoveNeedsShift(on); }));
    const QString haptics = L("general.haptics", QStringLiteral("Feel tiles snap into place"));
    QWidget* toggle = boundSwitch(settings.hapticsEnabled(), haptics,
                                  [&settings](bool on) { settings.setHapticsEnabled(on); });
    toggle->setEnabled(m_context.hapticsUnavailable.isEmpty());
    card->addRow(haptics,
                 m_context.hapticsUnavailable.isEmpty()
                     ? L("general.haptics.note",
                         QStringLiteral("A light pulse of the trackpad as a tile aligns."))
                     : m_context.hapticsUnavailable,
                 toggle);
}

void GeneralPage::addLanguage() {
    SettingsCard* card =
        addGroup(QStringLiteral("language"), L("general.language", QStringLiteral("Language")));
    AppSettings& settings = m_context.settings;
    auto* box = new QComboBox();
    box->addItem(Localization::languageName(AppSettings::systemLanguage()),
                 AppSettings::systemLanguage());
    for (const QString& code : Localization::supportedLanguages()) {
        box->addItem(Localization::languageName(code), code);
    }
    box->setCurrentIndex(std::max(0, box->findData(settings.appLanguage())));
    auto* restartRow = new QWidget();
    auto* restartLayout = new QHBoxLayout(restartRow);
    restartLayout->setContentsMargins(0, 0, 0, 0);
    auto* note = caption(L("general.language.restart",
                           QStringLiteral("The new language shows after Tarnwick restarts.")),
                         restartRow);
    auto* restart = new QPushButton(L("general.language.restartNow", QStringLiteral("Restart Now")),
                                    restartRow);
    restart->setObjectName(QStringLiteral("primary"));
    restartLayout->addWidget(note, 1);
    restartLayout->addWidget(restart);
    const auto showRestart = [restartRow, &settings] {
        restartRow->setVisible(settings.appLanguage() != settings.languageAtLaunch());
    };
    connect(box, &QComboBox::currentIndexChanged, this, [this, box, &settings, showRestart] {
        const QString language = box->currentData().toString();
        if (!m_context.canSave()) {
            reportNotSaved(L("general.language", QStringLiteral("Language")));
            const QSignalBlocker blocker(box);
            box->setCurrentIndex(std::max(0, box->findData(settings.appLanguage())));
            return;
        }
        clearReport();
        settings.setAppLanguage(language);
        showRestart();
    });
    connect(restart, &QPushButton::clicked, this, [this] {
        if (m_context.relaunch) {
            m_context.relaunch();
        }
    });
    card->addRow(L("general.language.app", QStringLiteral("Language of Tarnwick")), QString(), box);
    card->addWide(restartRow);
    showRestart();
}

} // namespace tw
