#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedMachine.h"
#include "config/AppearancePage.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/SwitchButton.h"
#include "look/ThemeStore.h"
#include "platform/SettingsDefaults.h"
#include "platform/null/MemoryDefaults.h"
#include "readings/AppEnergyMeter.h"
#include "readings/PowerWatcher.h"
#include "settings/AppSettings.h"

#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

// The window's pages over real preferences in a temporary file.
struct Rig {
    QTemporaryDir dir;
    SettingsDefaults defaults{dir.filePath(QStringLiteral("prefs.ini"))};
    ManualClock clock;
    AppSettings settings{defaults};
    ThemeStore theme{defaults, clock, dir.filePath(QStringLiteral("theme.json"))};
    int undos = 0;
    int redos = 0;
    ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
    ConfigRoot root{
        (
            context.undo = [this] { ++undos; }, context.redo = [this] { ++redos; }, context),
        ColorScheme::Dark};

    QString stored(const QString& key) {
        defaults.sync();
        return QSettings(dir.filePath(QStringLiteral("prefs.ini")), QSettings::IniFormat)
            .value(key)
            .toString();
    }
    SwitchButton* switchNamed(QWidget* page, const QString& name) {
        for (auto* s : page->findChildren<SwitchButton*>()) {
            if (s->accessibleName() == name) {
                return s;
            }
        }
        return nullptr;
    }
};

} // namespace

class tst_ConfigRoot : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void routing_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("page");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("shown");
        QTest::newRow("gallery") << ""
                                 << "" << 0 << "";
        QTest::newRow("general") << "general"
                                 << "" << 1 << "";
        QTest::newRow("glass") << "appearance"
                               << "look" << 2 << "look";
        QTest::newRow("lock") << "appearance"
                              << "lock" << 2 << "lock";
        QTest::newRow("language") << "general"
                                  << "language" << 1 << "language";
        QTest::newRow("layout file") << "layouts"
                                     << "files" << 3 << "files";
        QTest::newRow("about") << "about"
                               << "licences" << 5 << "licences";
    }
    void routing() {
        QFETCH(QString, section);
        QFETCH(QString, page);
        QFETCH(int, row);
        QFETCH(QString, shown);
        Rig rig;
        rig.root.resize(980, 680);
        rig.root.show();
        rig.root.select(ConfigSelection::resolve(section, page, nullptr));
        QCOMPARE(rig.root.findChild<QListWidget*>()->currentRow(), row);
        QCOMPARE(rig.root.selection().page, shown);
        QCOMPARE(rig.root.findChild<QStackedWidget*>()->currentWidget(),
                 rig.root.page(sectionOf(section)));
    }

    // What a person changes lands in the preferences file; with the file read-only nothing
    // changes, the control goes back and the page says why.
    void changesReachThePreferences() {
        Rig rig;
        auto* general = rig.root.page(ConfigSection::general);
        SwitchButton* shift = rig.switchNamed(general, QStringLiteral("Hold Shift to move tiles"));
        QVERIFY(shift);
        shift->click();
        QCOMPARE(rig.stored(QStringLiteral("tarnwick.moveNeedsShift")), QStringLiteral("true"));
        const auto radios = general->findChildren<QRadioButton*>();
        radios.at(2)->click(); // saver
        QCOMPARE(rig.stored(QStringLiteral("tarnwick.energyMode")), QStringLiteral("saver"));

        auto* appearance = static_cast<AppearancePage*>(rig.root.page(ConfigSection::appearance));
        QVERIFY(appearance->chooseTheme(QStringLiteral("forest")));
        QCOMPARE(rig.theme.current().id, QStringLiteral("forest"));
        QVERIFY(!appearance->chooseTheme(QStringLiteral("no-such-theme")));
        // No desktop picture: "Match my wallpaper" chooses nothing.
        QVERIFY(!appearance->chooseTheme(QStringLiteral("wallpaper")));
        QCOMPARE(rig.theme.current().id, QStringLiteral("forest"));
    }

    void aReadOnlyStoreKeepsTheOldValue() {
        ManualClock clock;
        MemoryDefaults defaults;
        AppSettings settings(defaults);
        ThemeStore theme(defaults, clock, QString());
        ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
        ConfigRoot root(context, ColorScheme::Light);
        defaults.setWritable(false);
        auto* general = qobject_cast<SettingsPage*>(root.page(ConfigSection::general));
        SwitchButton* shift = nullptr;
        for (auto* s : general->findChildren<SwitchButton*>()) {
            if (s->accessibleName() == QStringLiteral("Hold Shift to move tiles")) {
                shift = s;
            }
        }
        shift->click();
        QVERIFY(!shift->isChecked());
        QVERIFY(!settings.moveNeedsShift());
        QVERIFY(general->report().startsWith(QStringLiteral("Not saved")));
        auto* appearance = static_cast<AppearancePage*>(root.page(ConfigSection::appearance));
        QVERIFY(!appearance->chooseTheme(QStringLiteral("forest")));
        QCOMPARE(theme.current().id, Theme::defaultTheme().id);
        // Writable again: the next change is kept and the report goes.
        defaults.setWritable(true);
        shift->click();
        QVERIFY(settings.moveNeedsShift());
        QVERIFY(general->report().isEmpty());
    }

    // The energy card says why Energy Saver is on while power forces it; About shows the closed
    // average once a long enough stretch has passed.
    void energyNotes() {
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        MemoryDefaults defaults;
        AppSettings settings(defaults);
        ThemeStore theme(defaults, clock, QString());
        ScriptedPower power;
        power.state = ScriptedPower::onBattery(15);
        PowerWatcher watcher(power);
        watcher.onChange = [&settings](bool constrained) {
            settings.setPowerConstrained(constrained);
        };
        watcher.start();
        ScriptedUsage usage;
        AppEnergyMeter meter(usage, clock, scheduler);
        ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
        context.power = &watcher;
        context.energy = &meter;
        ConfigRoot root(context, ColorScheme::Light);
        QWidget* general = root.page(ConfigSection::general);
        auto* forced = general->findChild<QLabel*>(QStringLiteral("forcedNote"));
        QVERIFY(forced);
        const auto shown = [general, forced] {
            return forced->isVisibleTo(general) ? forced->text() : QString();
        };
        QCOMPARE(shown(), QStringLiteral("Battery at 15 %: Energy Saver is on for now."));
        power.announce(ScriptedPower::onBattery(12));
        QCOMPARE(shown(), QStringLiteral("Battery at 12 %: Energy Saver is on for now."));
        power.announce(ScriptedPower::onBattery(60), true);
        QCOMPARE(shown(), QStringLiteral("Low Power Mode is on: Energy Saver is on for now."));
        settings.setAutoSaver(false);
        QCOMPARE(shown(), QString());
        settings.setAutoSaver(true);
        power.announce(ScriptedPower::onBattery(60));
        QCOMPARE(shown(), QString());

        QWidget* about = root.page(ConfigSection::about);
        const auto says = [about](const QString& text) {
            for (const QLabel* label : about->findChildren<QLabel*>()) {
                if (label->text() == text) {
                    return true;
                }
            }
            return false;
        };
        QVERIFY(says(QStringLiteral("Close this window for a while and open it again to see it.")));
        scheduler.advance(std::chrono::minutes(3));
        usage.processor += std::chrono::milliseconds(1800);
        meter.windowOpened(clock.uptime());
        QVERIFY(says(QStringLiteral("Average over the last 3 minutes.")));
        QVERIFY(says(QStringLiteral("1 %")));
    }

    void keys() {
        Rig rig;
        rig.root.show();
        QVERIFY(QTest::qWaitForWindowActive(&rig.root));
        QTest::keyClick(&rig.root, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(&rig.root, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(rig.undos, 1);
        QCOMPARE(rig.redos, 1);
        rig.root.select({.section = ConfigSection::about, .page = {}});
        QTest::keyClick(&rig.root, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(rig.root.selection().section, std::nullopt);
        QTest::keyClick(&rig.root, Qt::Key_Escape);
        QVERIFY(!rig.root.isVisible());
    }

private:
    static std::optional<ConfigSection> sectionOf(const QString& raw) {
        return configSectionFromRawValue(raw);
    }
};

QTEST_MAIN(tst_ConfigRoot)
#include "tst_configroot.moc"
